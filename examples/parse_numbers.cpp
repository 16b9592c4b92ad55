// Reads a line of numbers, as they stand in the files of meshes and scanners, and says where a bad line goes wrong.

#include <cadgeom/util/parse_number.h>

#include <cstddef>
#include <cstdio>
#include <vector>

namespace {

// Reads numbers to the end of the line.
// @param text  out: behind the last number read, so that the caller can point at what is no number
std::vector<double> ParseLine(const char*& text)
{
    std::vector<double> numbers;
    double value;
    // The count of characters read is 0 where no number starts.
    while (const int length = ParseFloatingPointFastA(text, value)) {
        numbers.push_back(value);
        text += length;
    }
    return numbers;
}

bool IsAtEnd(const char* text)
{
    while (*text == ' ' || *text == '\n')
        ++text;
    return *text == '\0';
}

} // namespace

int main()
{
    const char* const good = " 3.25 -1.5e2\t.125 2D-3 42\n";
    const char* cursor = good;
    const std::vector<double> numbers = ParseLine(cursor);
    std::printf("%zu numbers:", numbers.size());
    for (const double number : numbers)
        std::printf(" %g", number);
    std::puts("");
    const bool isRead = IsAtEnd(cursor) && numbers == std::vector<double>{3.25, -150, 0.125, 0.002, 42};

    const char* const bad = "12.5 7,25 3";
    cursor = bad;
    const std::size_t count = ParseLine(cursor).size();
    std::printf("\"%s\": after %zu numbers there is no number at column %d: \"%s\"\n", bad, count,
                static_cast<int>(cursor - bad) + 1, cursor);

    long vertices;
    const int length = ParseLongFastA("1024 vertices", vertices);
    std::printf("%ld in %d characters\n", vertices, length);
    return isRead && count == 2 && *cursor == ',' && vertices == 1024 && length == 4 ? 0 : 1;
}
