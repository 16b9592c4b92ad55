#include <cadgeom/util/parse_number.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#if defined(__linux__)
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace {

constexpr double kInfinity = HUGE_VAL;
constexpr double kUnitRoundoff = 0x1p-53;
constexpr long kUnwrittenLong = 987654321;
constexpr double kUnwrittenDouble = 9.87e21;

template <class Value>
struct Parsed {
    int count;
    Value value;
};

template <class Value>
bool operator==(const Parsed<Value>& a, const Parsed<Value>& b)
{
    return a.count == b.count && a.value == b.value;
}

bool operator==(const Parsed<double>& a, const Parsed<double>& b)
{
    const bool areBothNan = std::isnan(a.value) && std::isnan(b.value);
    const bool areSame = a.value == b.value && std::signbit(a.value) == std::signbit(b.value);
    return a.count == b.count && (areBothNan || areSame);
}

template <class Value>
std::ostream& operator<<(std::ostream& out, const Parsed<Value>& parsed)
{
    out.precision(17);
    return out << parsed.value << " after " << parsed.count << " characters";
}

Parsed<long> ParseLong(const char* text)
{
    Parsed<long> parsed{-1, kUnwrittenLong};
    parsed.count = ParseLongFastA(text, parsed.value);
    return parsed;
}

Parsed<long> ParseLong(const wchar_t* text)
{
    Parsed<long> parsed{-1, kUnwrittenLong};
    parsed.count = ParseLongFastT(text, parsed.value);
    return parsed;
}

Parsed<double> ParseDouble(const char* text)
{
    Parsed<double> parsed{-1, kUnwrittenDouble};
    parsed.count = ParseFloatingPointFastA(text, parsed.value);
    return parsed;
}

Parsed<double> ParseDouble(const wchar_t* text)
{
    Parsed<double> parsed{-1, kUnwrittenDouble};
    parsed.count = ParseFloatingPointFastT(text, parsed.value);
    return parsed;
}

/// The text in the other width; characters keep their code.
template <class Char>
std::basic_string<Char> Widen(const std::string& text)
{
    std::basic_string<Char> wide;
    for (const char c : text) {
        wide += static_cast<Char>(static_cast<unsigned char>(c));
    }
    return wide;
}

/// Runs the narrow or the wide form on a narrow text.
template <class Char>
class ParseNumber : public testing::Test {
protected:
    static Parsed<long> Long(const std::string& text) { return ParseLong(Widen<Char>(text).c_str()); }
    static Parsed<double> Double(const std::string& text) { return ParseDouble(Widen<Char>(text).c_str()); }
};

struct FormNames {
    template <class Char>
    static std::string GetName(int)
    {
        return sizeof(Char) == 1 ? "Narrow" : "Wide";
    }
};

using Characters = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(ParseNumber, Characters, FormNames);

// A second way to the same numbers, as slow and plain as can be: it looks at one character at a time of a text that
// it copies, gathers digits in 64 bits and asks the C library for its powers of ten.

enum class Kind {
    blank,
    digit,
    plus,
    minus,
    point,
    exponent,
    other
};

template <class Char>
Kind KindOf(Char c)
{
    static const std::string kBlanks = " \t\n\v\f\r";
    static const std::string kDigits = "0123456789";
    static const std::string kExponents = "EeDd";
    if (c <= 0 || c > 127) {
        return Kind::other;
    }
    const auto narrow = static_cast<char>(c);
    if (kBlanks.find(narrow) != std::string::npos) {
        return Kind::blank;
    }
    if (kDigits.find(narrow) != std::string::npos) {
        return Kind::digit;
    }
    if (kExponents.find(narrow) != std::string::npos) {
        return Kind::exponent;
    }
    return narrow == '+' ? Kind::plus : narrow == '-' ? Kind::minus : narrow == '.' ? Kind::point : Kind::other;
}

double PlainPowerOfTen(long long exponent)
{
    if (exponent > -20 && exponent < 20) {
        return std::strtod(("1e" + std::to_string(exponent)).c_str(), nullptr);
    }
    return std::pow(10.0, static_cast<double>(exponent));
}

template <class Char>
class PlainReader {
public:
    explicit PlainReader(const std::basic_string<Char>& text) : m_text(text) {}

    int Position() const { return static_cast<int>(m_position); }
    bool Sees(Kind kind) const { return m_position < m_text.size() && KindOf(m_text[m_position]) == kind; }
    bool Accepts(Kind kind)
    {
        const bool accepts = Sees(kind);
        m_position += accepts ? 1 : 0;
        return accepts;
    }
    /// Takes an optional sign; true for a minus.
    bool AcceptsSign()
    {
        const bool isNegative = Sees(Kind::minus);
        m_position += isNegative || Sees(Kind::plus) ? 1 : 0;
        return isNegative;
    }
    void SkipBlanks()
    {
        while (Accepts(Kind::blank)) {
        }
    }
    std::vector<int> Digits()
    {
        std::vector<int> digits;
        while (Sees(Kind::digit)) {
            digits.push_back(static_cast<int>(m_text[m_position++] - '0'));
        }
        return digits;
    }

private:
    std::basic_string<Char> m_text;
    std::size_t m_position = 0;
};

long long Wrapped32(const std::vector<int>& digits)
{
    long long value = 0;
    for (const int digit : digits) {
        value = (value * 10 + digit) % (1LL << 32);
    }
    return value >= (1LL << 31) ? value - (1LL << 32) : value;
}

template <class Char>
Parsed<long> PlainParseLong(const std::basic_string<Char>& text)
{
    PlainReader<Char> reader(text);
    reader.SkipBlanks();
    const bool isNegative = reader.AcceptsSign();
    const std::vector<int> digits = reader.Digits();
    if (digits.empty()) {
        return {0, 0};
    }
    const long long value = Wrapped32(digits);
    const bool canNegate = value != -(1LL << 31);
    return {reader.Position(), static_cast<long>(isNegative && canNegate ? -value : value)};
}

double PlainIntegerPart(const std::vector<int>& digits)
{
    double value = 0;
    long long exact = 0;
    bool isExact = true;
    for (const int digit : digits) {
        if (isExact && exact > 429496728) {
            value = static_cast<double>(exact);
            isExact = false;
        }
        if (isExact) {
            exact = exact * 10 + digit;
        } else {
            value = value * 10 + digit;
        }
    }
    return isExact ? static_cast<double>(exact) : value;
}

double PlainAddFraction(double value, const std::vector<int>& digits)
{
    long long chunk = 0;
    long long consumed = 0;
    for (const int digit : digits) {
        if (chunk > 429496728) {
            value = value + static_cast<double>(chunk) * PlainPowerOfTen(-consumed);
            chunk = digit;
        } else {
            chunk = chunk * 10 + digit;
        }
        ++consumed;
    }
    return digits.empty() ? value : value + static_cast<double>(chunk) * PlainPowerOfTen(-consumed);
}

template <class Char>
Parsed<double> PlainParseDouble(const std::basic_string<Char>& text)
{
    PlainReader<Char> reader(text);
    reader.SkipBlanks();
    const bool isNegative = reader.AcceptsSign();
    const std::vector<int> integerDigits = reader.Digits();
    double value = PlainIntegerPart(integerDigits);
    std::vector<int> fractionDigits;
    if (reader.Accepts(Kind::point)) {
        fractionDigits = reader.Digits();
        value = PlainAddFraction(value, fractionDigits);
    }
    if (integerDigits.empty() && fractionDigits.empty()) {
        return {0, 0};
    }
    if (reader.Accepts(Kind::exponent)) {
        const bool isExponentNegative = reader.AcceptsSign();
        const long long exponent = Wrapped32(reader.Digits());
        value = value * PlainPowerOfTen(isExponentNegative ? -exponent : exponent);
    }
    return {reader.Position(), isNegative ? -value : value};
}

/// Random texts: mostly numbers of all shapes, some damaged by characters that look similar to those of a number.
template <class Char>
class RandomTexts {
public:
    explicit RandomTexts(std::uint32_t seed) : m_random(seed) {}

    std::basic_string<Char> Number()
    {
        std::basic_string<Char> text = Widen<Char>(Pick({"", "", "", " ", "\t\n\v\f\r ", "   "}));
        Append(text, Pick({"", "", "-", "+"}));
        AppendDigits(text);
        if (OneIn(2)) {
            Append(text, ".");
            AppendDigits(text);
        }
        if (OneIn(2)) {
            Append(text, Pick({"e", "E", "d", "D"}) + Pick({"", "-", "+"}));
            AppendExponent(text);
        }
        while (OneIn(4)) {
            Damage(text);
        }
        return text;
    }

    /// A character that ends any number.
    Char Terminator() { return static_cast<Char>("\0,;xF/:@"[Below(8)]); }

private:
    int Below(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(m_random); }
    bool OneIn(int count) { return Below(count) == 0; }
    std::string Pick(const std::vector<std::string>& choices)
    {
        return choices[static_cast<std::size_t>(Below(static_cast<int>(choices.size())))];
    }
    void Append(std::basic_string<Char>& text, const std::string& tail) { text += Widen<Char>(tail); }

    void AppendDigits(std::basic_string<Char>& text)
    {
        if (OneIn(4)) {
            text.append(static_cast<std::size_t>(Below(OneIn(10) ? 340 : 12)), Char('0'));
        }
        if (OneIn(8)) {
            Append(text, Pick({"429496728", "429496729", "4294967289", "4294967290", "4294967295", "2147483648"}));
        }
        const int count = Below(OneIn(50) ? 400 : OneIn(3) ? 40 : 11);
        for (int i = 0; i < count; ++i) {
            text += static_cast<Char>('0' + Below(10));
        }
    }

    void AppendExponent(std::basic_string<Char>& text)
    {
        switch (Below(4)) {
        case 0:
            Append(text, std::to_string(Below(25)));
            break;
        case 1:
            Append(text, std::to_string(Below(400)));
            break;
        case 2:
            Append(text,
                   Pick({"", "019", "020", "2147483647", "2147483648", "4294967295", "4294967296", "4294967316"}));
            break;
        default:
            AppendDigits(text);
        }
    }

    void Damage(std::basic_string<Char>& text)
    {
        static const std::vector<std::uint32_t> kStrange = {
            '/',  ':',  ' ',   '\b',  0x0E,   0x1F,   '-',    '+',    '.',    ',',     'E',        'C',     'F',
            'c',  'f',  0x04,  0x24,  0x64,   0x80,   0x85,   0xA0,   0xB0,   0xC4,    0xC5,       0xE4,    0xE5,
            0xFF, 0x10, 0x130, 0x160, 0x0660, 0x0966, 0x2003, 0x3000, 0xFF10, 0x10030, 0x80000030, 0x10044U};
        const std::size_t position = static_cast<std::size_t>(Below(static_cast<int>(text.size()) + 1));
        const std::uint32_t code = kStrange[static_cast<std::size_t>(Below(static_cast<int>(kStrange.size())))];
        text.insert(position, 1, static_cast<Char>(code));
    }

    std::mt19937 m_random;
};

/// Copies a text into memory of exactly its size, so that a sanitizer sees any look beyond its last character.
template <class Char>
std::unique_ptr<Char[]> ExactCopy(const std::basic_string<Char>& text)
{
    std::unique_ptr<Char[]> copy(new Char[text.size()]);
    std::copy(text.begin(), text.end(), copy.get());
    return copy;
}

std::string ReadTestData(const std::string& name)
{
    const std::string path = std::string(CADGEOM_TEST_DATA_DIR) + "/numbers/" + name;
    std::ifstream file(path);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// How far, relative to the number, the operations can lead away from it, in the first order: an integer digit after
/// the ninth rounds twice; a power of ten is off by two units of roundoff at most and its product rounds once, for the
/// fraction and for the exponent alike; each chunk of the fraction rounds the sum; the compared number is rounded too.
double RelativeErrorBound(const std::string& text)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const auto point = std::find(text.begin(), text.end(), '.');
    const auto exponent = std::find_if(text.begin(), text.end(), [](char c) { return c == 'e' || c == 'E'; });
    const auto integerDigits = std::count_if(text.begin(), std::min(point, exponent), isDigit);
    const auto fractionDigits = std::count_if(std::min(point, exponent), exponent, isDigit);
    const auto integerSteps = std::max<std::ptrdiff_t>(integerDigits - 9, 0);
    const auto chunks = (fractionDigits + 8) / 9;
    const std::ptrdiff_t roundings = 2 * integerSteps + 3 + chunks + 1 + (exponent != text.end() ? 3 : 0);
    return static_cast<double>(roundings) * kUnitRoundoff;
}

} // namespace

TYPED_TEST(ParseNumber, ReadsIntegersUpToTheFirstOtherCharacter)
{
    EXPECT_EQ(this->Long("0"), (Parsed<long>{1, 0}));
    EXPECT_EQ(this->Long("  -42,"), (Parsed<long>{5, -42}));
    EXPECT_EQ(this->Long("+17 18"), (Parsed<long>{3, 17}));
    EXPECT_EQ(this->Long("007."), (Parsed<long>{3, 7}));
    EXPECT_EQ(this->Long("9876543210/"), (Parsed<long>{10, 1286608618}));
    EXPECT_EQ(this->Long("12:"), (Parsed<long>{2, 12}));
    EXPECT_EQ(this->Long("5e3"), (Parsed<long>{1, 5}));
    EXPECT_EQ(this->Long("-0"), (Parsed<long>{2, 0}));
}

TYPED_TEST(ParseNumber, WrapsIntegersAtThirtyTwoBits)
{
    EXPECT_EQ(this->Long("2147483647"), (Parsed<long>{10, 2147483647}));
    EXPECT_EQ(this->Long("2147483648"), (Parsed<long>{10, -2147483647 - 1}));
    EXPECT_EQ(this->Long("-2147483648"), (Parsed<long>{11, -2147483647 - 1}));
    EXPECT_EQ(this->Long("-2147483649"), (Parsed<long>{11, 2147483647}));
    EXPECT_EQ(this->Long("4294967295"), (Parsed<long>{10, -1}));
    EXPECT_EQ(this->Long("4294967296"), (Parsed<long>{10, 0}));
    EXPECT_EQ(this->Long("4294967297"), (Parsed<long>{10, 1}));
    EXPECT_EQ(this->Long("18446744073709551621"), (Parsed<long>{20, 5}));
}

TYPED_TEST(ParseNumber, WritesZeroWhenNoIntegerStartsHere)
{
    for (const char* text : {"", " ", "+", "-", "+x", "--1", "+-1", "- 1", "x1", ".5", "e1", "\n-\n"}) {
        EXPECT_EQ(this->Long(text), (Parsed<long>{0, 0})) << text;
    }
}

TYPED_TEST(ParseNumber, ReadsFloatingPointNumbers)
{
    EXPECT_EQ(this->Double("0"), (Parsed<double>{1, 0}));
    EXPECT_EQ(this->Double(" 1.5e3 "), (Parsed<double>{6, 1500}));
    EXPECT_EQ(this->Double("2D-2"), (Parsed<double>{4, 0.02}));
    EXPECT_EQ(this->Double(".5"), (Parsed<double>{2, 0.5}));
    EXPECT_EQ(this->Double("5."), (Parsed<double>{2, 5}));
    EXPECT_EQ(this->Double("+.25"), (Parsed<double>{4, 0.25}));
    EXPECT_EQ(this->Double("-12.75;"), (Parsed<double>{6, -12.75}));
    EXPECT_EQ(this->Double("1.2.3"), (Parsed<double>{3, 1 + 2 * 0.1}));
    EXPECT_EQ(this->Double("1,5"), (Parsed<double>{1, 1}));
}

TYPED_TEST(ParseNumber, KeepsTheSignOfZero)
{
    EXPECT_EQ(this->Double("-0"), (Parsed<double>{2, -0.0}));
    EXPECT_EQ(this->Double("-.0"), (Parsed<double>{3, -0.0}));
    EXPECT_EQ(this->Double("-0.e5"), (Parsed<double>{5, -0.0}));
    EXPECT_EQ(this->Double("+0"), (Parsed<double>{2, 0.0}));
    EXPECT_EQ(this->Double("-1e-400"), (Parsed<double>{7, -0.0}));
}

TYPED_TEST(ParseNumber, WritesPositiveZeroWhenNoFloatingPointNumberStartsHere)
{
    for (const char* text :
         {"", " ", "+", "-", ".", "-.", "+.e1", "e1", "-e1", "D5", "x", "- 1", "--1", "inf", "nan"}) {
        EXPECT_EQ(this->Double(text), (Parsed<double>{0, 0.0})) << text;
    }
}

TYPED_TEST(ParseNumber, ReadsNoHexadecimalForm)
{
    EXPECT_EQ(this->Double("0x10"), (Parsed<double>{1, 0}));
    EXPECT_EQ(this->Long("0x10"), (Parsed<long>{1, 0}));
}

TYPED_TEST(ParseNumber, AcceptsFourExponentLetters)
{
    for (const char* text : {"3E2", "3e2", "3D2", "3d2"}) {
        EXPECT_EQ(this->Double(text), (Parsed<double>{3, 300})) << text;
    }
    for (int code = 1; code < 256; ++code) {
        const char letter = static_cast<char>(code);
        if (std::string("EeDd.0123456789").find(letter) == std::string::npos) {
            EXPECT_EQ(this->Double(std::string("3") + letter + "2"), (Parsed<double>{1, 3})) << code;
        }
    }
}

TYPED_TEST(ParseNumber, ConsumesAnExponentWithoutDigits)
{
    EXPECT_EQ(this->Double("1e"), (Parsed<double>{2, 1}));
    EXPECT_EQ(this->Double("1e+"), (Parsed<double>{3, 1}));
    EXPECT_EQ(this->Double("7.5D-x"), (Parsed<double>{5, 7.5}));
    EXPECT_EQ(this->Double("1e--2"), (Parsed<double>{3, 1}));
    EXPECT_EQ(this->Double("1e.5"), (Parsed<double>{2, 1}));
    EXPECT_EQ(this->Double("1ee5"), (Parsed<double>{2, 1}));
}

TYPED_TEST(ParseNumber, SkipsExactlyTheSixAsciiBlanks)
{
    EXPECT_EQ(this->Long(" \t\n\v\f\r1"), (Parsed<long>{7, 1}));
    EXPECT_EQ(this->Double(" \t\n\v\f\r1"), (Parsed<double>{7, 1}));
    for (int code = 1; code < 256; ++code) {
        const char c = static_cast<char>(code);
        if (std::string(" \t\n\v\f\r+-.0123456789").find(c) == std::string::npos) {
            EXPECT_EQ(this->Long(c + std::string("1")), (Parsed<long>{0, 0})) << code;
            EXPECT_EQ(this->Double(c + std::string("1")), (Parsed<double>{0, 0})) << code;
        }
    }
}

TYPED_TEST(ParseNumber, SwitchesToFloatingPointWhenTheIntegerPartOutgrowsThirtyTwoBits)
{
    EXPECT_EQ(this->Double("4294967289"), (Parsed<double>{10, 4294967289.0}));
    EXPECT_EQ(this->Double("4294967290"), (Parsed<double>{10, 4294967290.0}));
    EXPECT_EQ(this->Double("4294967299"), (Parsed<double>{10, 4294967299.0}));
    EXPECT_EQ(this->Double("9999999999"), (Parsed<double>{10, 9999999999.0}));
    EXPECT_EQ(this->Double("00000000000000000000123"), (Parsed<double>{23, 123.0}));
    // Beyond 53 bits each digit rounds: the 3 is lost in a tie to even, and the 7 after it cannot mend that.
    EXPECT_EQ(this->Double("9007199254740992"), (Parsed<double>{16, 0x1p53}));
    EXPECT_EQ(this->Double("9007199254740993"), (Parsed<double>{16, 0x1p53}));
    EXPECT_EQ(this->Double("90071992547409937"), (Parsed<double>{17, 90071992547409920.0}));
}

TYPED_TEST(ParseNumber, AddsTheFractionInChunksOfNineOrTenDigits)
{
    // Ten digits, as 123456789 is below the bound, then nine.
    EXPECT_EQ(this->Double("0.1234567890123456789"), (Parsed<double>{21, 1234567890 * 1e-10 + 123456789 * 1e-19}));
    // 429496728 takes a tenth digit and 429496729 does not.
    EXPECT_EQ(this->Double(".42949672895"), (Parsed<double>{12, 4294967289 * 1e-10 + 5 * 1e-11}));
    EXPECT_EQ(this->Double(".42949672995"), (Parsed<double>{12, 429496729 * 1e-9 + 95 * 1e-11}));
    // Leading zeros leave the chunk open but count as digits; a chunk of zeros after a full one adds nothing.
    EXPECT_EQ(this->Double(".0000000000001234567891"), (Parsed<double>{23, 1234567891 * std::pow(10.0, -22)}));
    EXPECT_EQ(this->Double("3.5000000000000000"), (Parsed<double>{18, 3.0 + 500000000 * 1e-9}));
    EXPECT_EQ(this->Double("7.9999999999"), (Parsed<double>{12, 7 + 999999999 * 1e-9 + 9 * 1e-10}));
}

TYPED_TEST(ParseNumber, UsesPowersOfTenAsLiteralsUpToNineteen)
{
    // Up to 10^22 a power of ten is an exact product, and dividing 1 by it rounds correctly.
    double power = 1;
    for (int i = 0; i < 20; ++i, power *= 10) {
        const std::string digits = std::to_string(i);
        const int count = static_cast<int>(digits.size());
        EXPECT_EQ(this->Double("1e" + digits), (Parsed<double>{count + 2, power}));
        EXPECT_EQ(this->Double("1e-" + digits), (Parsed<double>{count + 3, 1 / power}));
    }
}

TYPED_TEST(ParseNumber, UsesThePowerFunctionBeyondTheTables)
{
    for (int i = 20; i < 400; ++i) {
        const std::string digits = std::to_string(i);
        const int count = static_cast<int>(digits.size());
        EXPECT_EQ(this->Double("3e" + digits), (Parsed<double>{count + 2, 3 * std::pow(10.0, i)}));
        EXPECT_EQ(this->Double("3e-" + digits), (Parsed<double>{count + 3, 3 * std::pow(10.0, -i)}));
        EXPECT_EQ(this->Double("." + std::string(static_cast<std::size_t>(i) - 1, '0') + "3"),
                  (Parsed<double>{i + 1, 3 * std::pow(10.0, -i)}));
    }
}

TYPED_TEST(ParseNumber, OverflowsToInfinityAndUnderflowsToZero)
{
    EXPECT_EQ(this->Double("1e309"), (Parsed<double>{5, kInfinity}));
    EXPECT_EQ(this->Double("-1e309"), (Parsed<double>{6, -kInfinity}));
    EXPECT_EQ(this->Double(std::string(400, '9') + ".5"), (Parsed<double>{402, kInfinity}));
    EXPECT_EQ(this->Double("1e-400"), (Parsed<double>{6, 0}));
    EXPECT_EQ(this->Double("0." + std::string(400, '0') + "1"), (Parsed<double>{403, 0}));
    EXPECT_TRUE(std::isnan(this->Double("0e400").value));
    EXPECT_TRUE(std::isnan(this->Double(std::string(400, '9') + "e-400").value));
}

TYPED_TEST(ParseNumber, WrapsTheExponentAtThirtyTwoBits)
{
    EXPECT_EQ(this->Double("5e4294967298"), (Parsed<double>{12, 500}));
    EXPECT_EQ(this->Double("5e-4294967298"), (Parsed<double>{13, 0.05}));
    EXPECT_EQ(this->Double("5e2147483647"), (Parsed<double>{12, kInfinity}));
    EXPECT_EQ(this->Double("5e-2147483647"), (Parsed<double>{13, 0}));
}

TYPED_TEST(ParseNumber, SendsAnExponentThatWrapsToANegativeNumberThroughThePowerFunction)
{
    EXPECT_EQ(this->Double("5e4294967295"), (Parsed<double>{12, 5 * std::pow(10.0, -1)}));
    EXPECT_EQ(this->Double("5e-4294967295"), (Parsed<double>{13, 50}));
    EXPECT_EQ(this->Double("5e4294967277"), (Parsed<double>{12, 5 * std::pow(10.0, -19)}));
    EXPECT_EQ(this->Double("5e-4294967277"), (Parsed<double>{13, 5 * std::pow(10.0, 19)}));
    EXPECT_EQ(this->Double("5e2147483648"), (Parsed<double>{12, 0}));
    EXPECT_EQ(this->Double("5e-2147483648"), (Parsed<double>{13, kInfinity}));
}

TYPED_TEST(ParseNumber, TakesNullForAnEmptyText)
{
    const TypeParam* const null = nullptr;
    EXPECT_EQ(ParseLong(null), (Parsed<long>{0, 0}));
    EXPECT_EQ(ParseDouble(null), (Parsed<double>{0, 0.0}));
}

TYPED_TEST(ParseNumber, AgreesWithAPlainReaderOnRandomTexts)
{
    constexpr std::uint32_t kSeed = 20240611;
    constexpr int kTextCount = 100000;
    SCOPED_TRACE(kSeed);
    std::cout << "seed " << kSeed << '\n';
    RandomTexts<TypeParam> texts(kSeed);
    int numberCount = 0;
    for (int i = 0; i < kTextCount; ++i) {
        std::basic_string<TypeParam> text = texts.Number();
        text += texts.Terminator();
        const std::unique_ptr<TypeParam[]> copy = ExactCopy(text);
        const Parsed<double> parsed = ParseDouble(copy.get());
        ASSERT_EQ(parsed, PlainParseDouble(text)) << testing::PrintToString(text);
        ASSERT_EQ(ParseLong(copy.get()), PlainParseLong(text)) << testing::PrintToString(text);
        numberCount += parsed.count > 0 ? 1 : 0;
    }
    EXPECT_GT(numberCount, kTextCount / 2);
    EXPECT_LT(numberCount, kTextCount);
}

TYPED_TEST(ParseNumber, StaysWithinItsErrorBoundOnPrintedDoubles)
{
    constexpr std::uint32_t kSeed = 7;
    SCOPED_TRACE(kSeed);
    std::mt19937 random(kSeed);
    std::uniform_real_distribution<double> mantissa(1.0, 10.0);
    std::uniform_int_distribution<int> exponent(-290, 290);
    for (int i = 0; i < 20000; ++i) {
        const double number = mantissa(random) * std::pow(10.0, i % 2 == 0 ? exponent(random) % 10 : exponent(random));
        char text[400];
        std::snprintf(text, sizeof text, i % 4 == 0 ? "%.17f" : "%.16e", number);
        const double expected = std::strtod(text, nullptr);
        const double error = std::abs(this->Double(text).value - expected);
        ASSERT_LE(error, RelativeErrorBound(text) * expected) << text;
    }
}

TYPED_TEST(ParseNumber, ReadsPublishedNumbersWholeAndAlmostAllToTheLastPlace)
{
    std::istringstream lines(ReadTestData("decimal_doubles.txt"));
    std::string half;
    std::string single;
    std::string bits;
    std::string text;
    int lineCount = 0;
    int nearCount = 0;
    while (lines >> half >> single >> bits >> text) {
        const std::uint64_t expectedBits = std::strtoull(bits.c_str(), nullptr, 16);
        double expected = 0;
        std::memcpy(&expected, &expectedBits, sizeof expected);
        const Parsed<double> parsed = this->Double(text);
        EXPECT_EQ(parsed, PlainParseDouble(text)) << text;
        EXPECT_EQ(parsed.count, static_cast<int>(text.size())) << text;
        ++lineCount;
        if (parsed.value == expected || std::abs(parsed.value - expected) <= 2 * kUnitRoundoff * std::abs(expected)) {
            ++nearCount;
        }
    }
    EXPECT_GT(lineCount, 190);
    EXPECT_GT(nearCount, lineCount - 30);
}

TYPED_TEST(ParseNumber, WalksAFileOfFortranNumbers)
{
    const std::string narrow = ReadTestData("fortran_exponents.txt");
    const std::basic_string<TypeParam> text = Widen<TypeParam>(narrow);
    std::istringstream words(narrow);
    const TypeParam* next = text.c_str();
    int wordCount = 0;
    for (std::string word; words >> word; ++wordCount) {
        std::replace(word.begin(), word.end(), 'D', 'e');
        const double expected = std::strtod(word.c_str(), nullptr);
        EXPECT_EQ(ParseLong(next).value, std::strtol(word.c_str(), nullptr, 10)) << word;
        const Parsed<double> parsed = ParseDouble(next);
        ASSERT_GT(parsed.count, 0) << word;
        EXPECT_LE(std::abs(parsed.value - expected), RelativeErrorBound(word) * std::abs(expected)) << word;
        next += parsed.count;
    }
    EXPECT_GT(wordCount, 100);
    EXPECT_EQ(ParseDouble(next).count, 0);
}

TEST(ParseNumberWide, LeavesCharactersBeyondAsciiAlone)
{
    // Ideographic space, no-break space, Arabic and fullwidth digits, and codes that match in their low bits only.
    for (const wchar_t c : {L'\u3000', L'\u00A0', L'\u0661', L'\uFF11', wchar_t(0x0131), wchar_t(0x0120)}) {
        const std::wstring text = {c, L'1'};
        EXPECT_EQ(ParseLong(text.c_str()), (Parsed<long>{0, 0})) << static_cast<std::uint32_t>(c);
        EXPECT_EQ(ParseDouble(text.c_str()), (Parsed<double>{0, 0})) << static_cast<std::uint32_t>(c);
        const std::wstring tail = {L'1', c, L'.', c};
        EXPECT_EQ(ParseLong(tail.c_str()), (Parsed<long>{1, 1})) << static_cast<std::uint32_t>(c);
        EXPECT_EQ(ParseDouble(tail.c_str()), (Parsed<double>{1, 1})) << static_cast<std::uint32_t>(c);
    }
    for (const std::uint32_t code : {0x0144U, 0x0145U, 0x8044U, 0x8065U, 0xFF45U}) {
        const std::wstring text = {L'1', static_cast<wchar_t>(code), L'2'};
        EXPECT_EQ(ParseDouble(text.c_str()), (Parsed<double>{1, 1})) << code;
    }
}

#if WCHAR_MAX > 0xFFFF
TEST(ParseNumberWide, LeavesCharactersBeyondSixteenBitsAlone)
{
    for (const std::uint32_t plane : {0x10000U, 0x100000U, 0x80000000U, 0xFFFF0000U}) {
        for (const char c : std::string("1 eD.+")) {
            const auto strange = static_cast<wchar_t>(plane + static_cast<std::uint32_t>(c));
            const std::wstring text = {L'1', strange, L'2'};
            EXPECT_EQ(ParseDouble(text.c_str()), (Parsed<double>{1, 1})) << plane << c;
            EXPECT_EQ(ParseLong(text.c_str()), (Parsed<long>{1, 1})) << plane << c;
            EXPECT_EQ(ParseDouble(text.c_str() + 1), (Parsed<double>{0, 0})) << plane << c;
        }
    }
}
#endif

// Two thousand million characters take minutes in a build that is not optimised.
#if defined(__linux__) && defined(__LP64__) && defined(__OPTIMIZE__) && !defined(__SANITIZE_ADDRESS__) &&              \
    !defined(__SANITIZE_THREAD__)
TEST(ParseNumberNarrow, ReportsTheLargestIntForANumberLongerThanAnIntCounts)
{
    // The same block of zeros mapped again and again makes a text of more than 2^31 digits.
    constexpr std::size_t kBlock = std::size_t{1} << 26;
    constexpr std::size_t kSize = (std::size_t{1} << 31) + kBlock;
    const int file = memfd_create("zeros", 0);
    ASSERT_GE(file, 0);
    ASSERT_EQ(ftruncate(file, kBlock), 0);
    void* const reserved = mmap(nullptr, kSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(reserved, MAP_FAILED);
    char* const text = static_cast<char*>(reserved);
    void* const block = mmap(text, kBlock, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, file, 0);
    ASSERT_EQ(block, reserved);
    std::fill_n(text, kBlock, '0');
    for (std::size_t offset = 0; offset < kSize; offset += kBlock) {
        void* const copy = mmap(text + offset, kBlock, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_FIXED, file, 0);
        ASSERT_EQ(copy, text + offset);
    }
    text[0] = '.';
    text[kSize - 2] = '1';
    text[kSize - 1] = '\0';

    EXPECT_EQ(ParseDouble(text), (Parsed<double>{INT_MAX, 0}));

    munmap(reserved, kSize);
    close(file);
}
#endif
