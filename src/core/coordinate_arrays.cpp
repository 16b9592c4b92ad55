#include "core/coordinate_arrays.h"

#include "core/streaming.h"

#include <type_traits>

namespace cadgeom::detail {
namespace {

/// numbers[i] * factor. Rounding a product of two floats formed in double gives the float product, because a double has
/// more than twice the digits (Figueroa 1995); so floats are multiplied as they are when the factor is one.
template <class T>
CADGEOM_ALWAYS_INLINE void Scale(T* numbers, std::uint64_t count, double factor)
{
    const auto narrowed = static_cast<T>(factor);
    if (static_cast<double>(narrowed) == factor) {
        ForRunsOfPoints(numbers, count, [=](T* run, std::uint64_t points) CADGEOM_ALWAYS_INLINE_LAMBDA {
            for (std::uint64_t i = 0; i < 3 * points; ++i) {
                run[i] *= narrowed;
            }
        });
    } else {
        ForRunsOfPoints(numbers, count, [=](T* run, std::uint64_t points) CADGEOM_ALWAYS_INLINE_LAMBDA {
            for (std::uint64_t i = 0; i < 3 * points; ++i) {
                run[i] = static_cast<T>(static_cast<double>(run[i]) * factor);
            }
        });
    }
}

/// Adds the displacement to eight points at a time, whose coordinates fill whole vectors of every width.
template <class T>
CADGEOM_ALWAYS_INLINE void Translate(T* numbers, std::uint64_t count, const double* displacement)
{
    constexpr std::uint64_t kBlock = 8;
    double addends[3 * kBlock];
    for (std::uint64_t i = 0; i < 3 * kBlock; ++i) {
        addends[i] = displacement[i % 3];
    }
    ForRunsOfPoints(numbers, count, [&addends](T* run, std::uint64_t points) CADGEOM_ALWAYS_INLINE_LAMBDA {
        const std::uint64_t rest = points % kBlock;
        T* const end = run + 3 * (points - rest);
        for (; run != end; run += 3 * kBlock) {
            for (std::uint64_t i = 0; i < 3 * kBlock; ++i) {
                run[i] = static_cast<T>(static_cast<double>(run[i]) + addends[i]);
            }
        }
        for (std::uint64_t i = 0; i < 3 * rest; ++i) {
            run[i] = static_cast<T>(static_cast<double>(run[i]) + addends[i]);
        }
    });
}

} // namespace

CADGEOM_TARGET_CLONES void ScaleCoordinates(float* numbers, std::uint64_t count, double factor)
{
    Scale(numbers, count, factor);
}

CADGEOM_TARGET_CLONES void ScaleCoordinates(double* numbers, std::uint64_t count, double factor)
{
    Scale(numbers, count, factor);
}

CADGEOM_TARGET_CLONES void TranslateCoordinates(float* numbers, std::uint64_t count, const double* displacement)
{
    Translate(numbers, count, displacement);
}

CADGEOM_TARGET_CLONES void TranslateCoordinates(double* numbers, std::uint64_t count, const double* displacement)
{
    Translate(numbers, count, displacement);
}

} // namespace cadgeom::detail
