#include "transform/map_arrays.h"

#include "core/streaming.h"

#include <type_traits>

// The flag branches are taken once for an array: each combination has its own loop, in which the steps without effect
// are gone. The copy of the frame and of the conditions in each loop tells the compiler that the stores do not change
// them.

namespace cadgeom::detail {
namespace {

/// Calls `run` with the condition as a compile-time constant.
template <class Run>
CADGEOM_ALWAYS_INLINE void WithConstant(bool condition, const Run& run)
{
    if (condition) {
        run(std::true_type());
    } else {
        run(std::false_type());
    }
}

template <class T, class Map>
CADGEOM_ALWAYS_INLINE void MapEach(T* numbers, std::uint64_t count, const Map& map)
{
    ForRunsOfPoints(numbers, count, [=](T* run, std::uint64_t points) CADGEOM_ALWAYS_INLINE_LAMBDA {
        for (std::uint64_t i = 0; i < 3 * points; i += 3) {
            const Triple mapped = map(
                Triple{static_cast<double>(run[i]), static_cast<double>(run[i + 1]), static_cast<double>(run[i + 2])});
            run[i] = static_cast<T>(mapped.x);
            run[i + 1] = static_cast<T>(mapped.y);
            run[i + 2] = static_cast<T>(mapped.z);
        }
    });
}

template <class T>
CADGEOM_ALWAYS_INLINE void MapPointsToWorld(T* numbers, std::uint64_t count, const Frame& frame)
{
    WithConstant(frame.isScaled, [=](auto isScaled) CADGEOM_ALWAYS_INLINE_LAMBDA {
        WithConstant(frame.isRotated, [=](auto isRotated) CADGEOM_ALWAYS_INLINE_LAMBDA {
            WithConstant(frame.isMoved, [=](auto isMoved) CADGEOM_ALWAYS_INLINE_LAMBDA {
                MapEach(numbers, count, [=](const Triple& v) CADGEOM_ALWAYS_INLINE_LAMBDA {
                    return PointToWorld(frame, v, isScaled, isRotated, isMoved);
                });
            });
        });
    });
}

template <class T>
CADGEOM_ALWAYS_INLINE void MapPointsToLocal(T* numbers, std::uint64_t count, const Frame& frame)
{
    WithConstant(frame.isScaled, [=](auto isScaled) CADGEOM_ALWAYS_INLINE_LAMBDA {
        WithConstant(frame.isRotated, [=](auto isRotated) CADGEOM_ALWAYS_INLINE_LAMBDA {
            MapEach(numbers, count, [=](const Triple& v) CADGEOM_ALWAYS_INLINE_LAMBDA {
                return PointToLocal(frame, v, isScaled, isRotated);
            });
        });
    });
}

template <class T>
CADGEOM_ALWAYS_INLINE void MapDirectionsToWorld(T* numbers, std::uint64_t count, const Frame& frame, bool bends)
{
    WithConstant(bends, [=](auto isBent) CADGEOM_ALWAYS_INLINE_LAMBDA {
        WithConstant(frame.isRotated, [=](auto isRotated) CADGEOM_ALWAYS_INLINE_LAMBDA {
            MapEach(numbers, count, [=](const Triple& v) CADGEOM_ALWAYS_INLINE_LAMBDA {
                return DirectionToWorld(frame, v, isBent, isRotated);
            });
        });
    });
}

template <class T>
CADGEOM_ALWAYS_INLINE void MapDirectionsToLocal(T* numbers, std::uint64_t count, const Frame& frame, bool bends)
{
    WithConstant(bends, [=](auto isBent) CADGEOM_ALWAYS_INLINE_LAMBDA {
        WithConstant(frame.isRotated, [=](auto isRotated) CADGEOM_ALWAYS_INLINE_LAMBDA {
            MapEach(numbers, count, [=](const Triple& v) CADGEOM_ALWAYS_INLINE_LAMBDA {
                return DirectionToLocal(frame, v, isBent, isRotated);
            });
        });
    });
}

} // namespace

CADGEOM_TARGET_CLONES void PointsToWorld(float* numbers, std::uint64_t count, const Frame& frame)
{
    MapPointsToWorld(numbers, count, frame);
}

CADGEOM_TARGET_CLONES void PointsToWorld(double* numbers, std::uint64_t count, const Frame& frame)
{
    MapPointsToWorld(numbers, count, frame);
}

CADGEOM_TARGET_CLONES void PointsToLocal(float* numbers, std::uint64_t count, const Frame& frame)
{
    MapPointsToLocal(numbers, count, frame);
}

CADGEOM_TARGET_CLONES void PointsToLocal(double* numbers, std::uint64_t count, const Frame& frame)
{
    MapPointsToLocal(numbers, count, frame);
}

CADGEOM_TARGET_CLONES void DirectionsToWorld(float* numbers, std::uint64_t count, const Frame& frame, bool isBent)
{
    MapDirectionsToWorld(numbers, count, frame, isBent);
}

CADGEOM_TARGET_CLONES void DirectionsToWorld(double* numbers, std::uint64_t count, const Frame& frame, bool isBent)
{
    MapDirectionsToWorld(numbers, count, frame, isBent);
}

CADGEOM_TARGET_CLONES void DirectionsToLocal(float* numbers, std::uint64_t count, const Frame& frame, bool isBent)
{
    MapDirectionsToLocal(numbers, count, frame, isBent);
}

CADGEOM_TARGET_CLONES void DirectionsToLocal(double* numbers, std::uint64_t count, const Frame& frame, bool isBent)
{
    MapDirectionsToLocal(numbers, count, frame, isBent);
}

} // namespace cadgeom::detail
