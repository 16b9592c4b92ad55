// Inverse, determinant, solution and product of dense matrices, with Eigen beside them where it is installed.

#include <cadgeom/linalg/dynamic_matrix.h>

#include <benchmark/benchmark.h>

#include <random>

#if __has_include(<Eigen/Dense>)
#include <Eigen/Dense>
#define CADGEOM_BENCH_EIGEN
#elif __has_include(<eigen3/Eigen/Dense>)
#include <eigen3/Eigen/Dense>
#define CADGEOM_BENCH_EIGEN
#endif

namespace {

CMatrix RandomMatrix(int n)
{
    std::mt19937 random(42);
    std::uniform_real_distribution<double> element(-1.0, 1.0);
    CMatrix matrix(n, n);
    for (int i = 0; i < n * n; ++i) {
        matrix(i / n, i % n) = element(random);
    }
    return matrix;
}

CVector Ones(int n)
{
    CVector vector(n);
    for (int i = 0; i < n; ++i) {
        vector[i] = 1.0;
    }
    return vector;
}

void Inverse(benchmark::State& state)
{
    const CMatrix matrix = RandomMatrix(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        CMatrix inverse = matrix.GetInverse();
        benchmark::DoNotOptimize(inverse.GetData());
    }
}
BENCHMARK(Inverse)->Arg(2)->Arg(3)->Arg(4)->Arg(6)->Arg(10)->Arg(30)->Arg(100);

void Determinant(benchmark::State& state)
{
    const CMatrix matrix = RandomMatrix(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(matrix.GetDeterminant());
    }
}
BENCHMARK(Determinant)->Arg(3)->Arg(4)->Arg(10)->Arg(100);

void SingularDeterminant(benchmark::State& state)
{
    const int n = static_cast<int>(state.range(0));
    CMatrix matrix = RandomMatrix(n);
    matrix.SetRow(1, matrix.GetRow(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(matrix.GetDeterminant());
    }
}
BENCHMARK(SingularDeterminant)->Arg(4)->Arg(8)->Arg(12)->Arg(20);

void Solve(benchmark::State& state)
{
    const int n = static_cast<int>(state.range(0));
    const CMatrix matrix = RandomMatrix(n);
    const CVector b = Ones(n);
    CVector x(n);
    for (auto _ : state) {
        benchmark::DoNotOptimize(matrix.SolveLinearSystem(b, x));
    }
}
BENCHMARK(Solve)->Arg(2)->Arg(3)->Arg(4)->Arg(10)->Arg(100);

void SolveHomogeneous(benchmark::State& state)
{
    CMatrix matrix = RandomMatrix(3);
    matrix.SetRow(2, matrix.GetRow(0) + matrix.GetRow(1));
    CVector x(3);
    for (auto _ : state) {
        benchmark::DoNotOptimize(matrix.SolveLinearSystem(x));
    }
}
BENCHMARK(SolveHomogeneous);

void Product(benchmark::State& state)
{
    const CMatrix matrix = RandomMatrix(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        CMatrix product = matrix * matrix;
        benchmark::DoNotOptimize(product.GetData());
    }
}
BENCHMARK(Product)->Arg(3)->Arg(4)->Arg(10)->Arg(100);

#if defined(CADGEOM_BENCH_EIGEN)
using EigenMatrix = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;

EigenMatrix RandomEigenMatrix(int n)
{
    return Eigen::Map<const EigenMatrix>(RandomMatrix(n).GetData(), n, n);
}

void EigenInverse(benchmark::State& state)
{
    const EigenMatrix matrix = RandomEigenMatrix(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        EigenMatrix inverse = matrix.inverse();
        benchmark::DoNotOptimize(inverse.data());
    }
}
BENCHMARK(EigenInverse)->Arg(2)->Arg(3)->Arg(4)->Arg(6)->Arg(10)->Arg(30)->Arg(100);

void EigenSolve(benchmark::State& state)
{
    const int n = static_cast<int>(state.range(0));
    const EigenMatrix matrix = RandomEigenMatrix(n);
    const Eigen::VectorXd b = Eigen::VectorXd::Ones(n);
    for (auto _ : state) {
        Eigen::VectorXd x = matrix.partialPivLu().solve(b);
        benchmark::DoNotOptimize(x.data());
    }
}
BENCHMARK(EigenSolve)->Arg(2)->Arg(3)->Arg(4)->Arg(10)->Arg(100);

void EigenProduct(benchmark::State& state)
{
    const EigenMatrix matrix = RandomEigenMatrix(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        EigenMatrix product = matrix * matrix;
        benchmark::DoNotOptimize(product.data());
    }
}
BENCHMARK(EigenProduct)->Arg(3)->Arg(4)->Arg(10)->Arg(100);
#endif

} // namespace
