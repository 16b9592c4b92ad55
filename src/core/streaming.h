#pragma once
/// @file
/// Walking through arrays that do not fit a cache.

#include "core/target_clones.h"

#include <cstdint>

namespace cadgeom::detail {

/// Points that are worked on between two rounds of prefetching.
inline constexpr std::uint64_t kPointsInRun = 64;

/// Calls `work(first, count)` for consecutive runs of points that are three numbers each, in order, and asks for the
/// memory behind them in time: arrays of more than about a megabyte come from memory, where the hardware's own
/// prefetching stops at each page.
template <class T, class Work>
CADGEOM_ALWAYS_INLINE void ForRunsOfPoints(T* numbers, std::uint64_t count, const Work& work)
{
    constexpr std::uint64_t kPrefetchFrom = 1048576 / (3 * sizeof(T));
    constexpr std::uint64_t kAhead = 4096 / sizeof(T);
    constexpr std::uint64_t kCacheLine = 64 / sizeof(T);

    std::uint64_t first = 0;
    if (count >= kPrefetchFrom) {
        for (; first + kPointsInRun + kAhead <= count; first += kPointsInRun) {
            T* const run = numbers + 3 * first;
            for (std::uint64_t i = 0; i < 3 * kPointsInRun; i += kCacheLine) {
                CADGEOM_PREFETCH_FOR_WRITING(run + kAhead + i);
            }
            work(run, kPointsInRun);
        }
    }
    work(numbers + 3 * first, count - first);
}

} // namespace cadgeom::detail
