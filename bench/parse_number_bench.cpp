// Parsing of number texts beside strtol, strtod and std::from_chars. One pass walks a line of random numbers, so
// that branches are as predictable as they are in real files; the reported rate is numbers per second.

#include <benchmark/benchmark.h>
#include <cadgeom/util/parse_number.h>

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

namespace {

constexpr int kNumberCount = 1000;

/// A line of numbers in [-1000, 1000] with the given number of fraction digits, separated by single blanks.
std::string FloatingPointLine(int fractionDigits)
{
    std::mt19937_64 random(20240611);
    std::uniform_real_distribution<double> coordinate(-1000.0, 1000.0);
    std::string line;
    char text[64];
    for (int i = 0; i < kNumberCount; ++i) {
        std::snprintf(text, sizeof text, " %.*f", fractionDigits, coordinate(random));
        line += text;
    }
    return line;
}

/// The same numbers as a computer prints them: mantissa of 17 digits and an exponent.
std::string ScientificLine()
{
    std::mt19937_64 random(20240611);
    std::uniform_real_distribution<double> coordinate(-1000.0, 1000.0);
    std::string line;
    char text[64];
    for (int i = 0; i < kNumberCount; ++i) {
        std::snprintf(text, sizeof text, " %.16e", coordinate(random));
        line += text;
    }
    return line;
}

std::string IntegerLine()
{
    std::mt19937_64 random(20240611);
    std::uniform_int_distribution<int> digits(0, 30);
    std::string line;
    for (int i = 0; i < kNumberCount; ++i) {
        line += ' ' + std::to_string(static_cast<std::int32_t>(random()) >> digits(random));
    }
    return line;
}

std::string LineOfKind(std::int64_t kind)
{
    constexpr int kScientific = 100;
    return kind == kScientific ? ScientificLine() : FloatingPointLine(static_cast<int>(kind));
}

struct CadgeomReader {
    const char* operator()(const char* text, const char*, double& value) const
    {
        return text + ParseFloatingPointFastA(text, value);
    }
    const char* operator()(const char* text, const char*, long& value) const
    {
        return text + ParseLongFastA(text, value);
    }
};

struct CadgeomWideReader {
    const wchar_t* operator()(const wchar_t* text, const wchar_t*, double& value) const
    {
        return text + ParseFloatingPointFastT(text, value);
    }
    const wchar_t* operator()(const wchar_t* text, const wchar_t*, long& value) const
    {
        return text + ParseLongFastT(text, value);
    }
};

struct CLibraryReader {
    const char* operator()(const char* text, const char*, double& value) const
    {
        char* end = nullptr;
        value = std::strtod(text, &end);
        return end;
    }
    const char* operator()(const char* text, const char*, long& value) const
    {
        char* end = nullptr;
        value = std::strtol(text, &end, 10);
        return end;
    }
};

struct FromCharsReader {
    template <class Number>
    const char* operator()(const char* text, const char* end, Number& value) const
    {
        return std::from_chars(text + (*text == ' '), end, value).ptr;
    }
};

template <class Number, class Reader, class Char>
void Walk(benchmark::State& state, const std::basic_string<Char>& line, const Reader& read)
{
    const Char* const end = line.data() + line.size();
    for (auto _ : state) {
        Number sum = 0;
        for (const Char* text = line.data(); text < end;) {
            Number value = 0;
            text = read(text, end, value);
            sum += value;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * kNumberCount);
}

template <class Reader>
void ReadFloatingPoint(benchmark::State& state)
{
    Walk<double>(state, LineOfKind(state.range(0)), Reader());
}

void ReadFloatingPointWide(benchmark::State& state)
{
    const std::string line = LineOfKind(state.range(0));
    Walk<double>(state, std::wstring(line.begin(), line.end()), CadgeomWideReader());
}

template <class Reader>
void ReadInteger(benchmark::State& state)
{
    Walk<long>(state, IntegerLine(), Reader());
}

void ReadIntegerWide(benchmark::State& state)
{
    const std::string line = IntegerLine();
    Walk<long>(state, std::wstring(line.begin(), line.end()), CadgeomWideReader());
}

/// Fraction digits of each line; 100 stands for the scientific line.
void Kinds(benchmark::internal::Benchmark* bench)
{
    bench->ArgName("fraction")->Arg(3)->Arg(6)->Arg(12)->Arg(17)->Arg(100);
}

} // namespace

BENCHMARK(ReadFloatingPoint<CadgeomReader>)->Apply(Kinds);
BENCHMARK(ReadFloatingPoint<CLibraryReader>)->Apply(Kinds);
BENCHMARK(ReadFloatingPoint<FromCharsReader>)->Apply(Kinds);
BENCHMARK(ReadFloatingPointWide)->Apply(Kinds);
BENCHMARK(ReadInteger<CadgeomReader>);
BENCHMARK(ReadInteger<CLibraryReader>);
BENCHMARK(ReadInteger<FromCharsReader>);
BENCHMARK(ReadIntegerWide);
