// The families of root finders, and Sturm counting.

#include <cadgeom/roots/polynomial_roots.h>

#include <benchmark/benchmark.h>

#include <vector>

namespace {

/// Roots at 1, 2, ... degree, scaled into 0 ... 1.
Polynomial1 EquallySpacedRoots(int degree)
{
    std::vector<double> product{1.0};
    for (int i = 1; i <= degree; ++i) {
        const double root = static_cast<double>(i) / degree;
        product.push_back(0.0);
        for (std::size_t j = product.size(); j-- > 0;) {
            product[j] = (j > 0 ? product[j - 1] : 0.0) - root * product[j];
        }
    }
    return Polynomial1(degree, product.data());
}

void ClosedFormCubic(benchmark::State& state)
{
    PolynomialRoots roots(1e-9);
    for (auto _ : state) {
        benchmark::DoNotOptimize(roots.FindA(-6.0, 11.0, -6.0, 1.0));
    }
}
BENCHMARK(ClosedFormCubic);

void ClosedFormQuartic(benchmark::State& state)
{
    PolynomialRoots roots(1e-9);
    for (auto _ : state) {
        benchmark::DoNotOptimize(roots.FindA(24.0, -50.0, 35.0, -10.0, 1.0));
    }
}
BENCHMARK(ClosedFormQuartic);

void CompanionCubic(benchmark::State& state)
{
    PolynomialRoots roots(1.1920928955078125e-7);
    for (auto _ : state) {
        benchmark::DoNotOptimize(roots.FindE(-6.0, 11.0, -6.0, 1.0, true));
    }
}
BENCHMARK(CompanionCubic);

void CompanionQuartic(benchmark::State& state)
{
    PolynomialRoots roots(1.1920928955078125e-7);
    for (auto _ : state) {
        benchmark::DoNotOptimize(roots.FindE(24.0, -50.0, 35.0, -10.0, 1.0, true));
    }
}
BENCHMARK(CompanionQuartic);

void Bisection(benchmark::State& state)
{
    const Polynomial1 polynomial = EquallySpacedRoots(static_cast<int>(state.range(0)));
    PolynomialRoots roots(1e-9);
    for (auto _ : state) {
        benchmark::DoNotOptimize(roots.FindB(polynomial, -0.5, 1.5, 12));
    }
}
BENCHMARK(Bisection)->Arg(3)->Arg(5)->Arg(10)->Arg(20);

void RootCount(benchmark::State& state)
{
    const Polynomial1 polynomial = EquallySpacedRoots(static_cast<int>(state.range(0)));
    const PolynomialRoots roots(1e-9);
    for (auto _ : state) {
        benchmark::DoNotOptimize(roots.GetRootCount(polynomial, -1.0, 2.0));
    }
}
BENCHMARK(RootCount)->Arg(3)->Arg(10);

} // namespace
