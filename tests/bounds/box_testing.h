#pragma once
// What the tests of the boxes share: archives in memory, random boxes, and the ray query written out step by step.

#include <cadgeom/platform/archive.h>
#include <cadgeom/platform/file.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "support/numbers.h"
#include "support/same_bits.h"

namespace box_testing {

using test_support::NumberStream;

using Scalars = ::testing::Types<float, double>;

/// Largest single-precision value, the marker of empty boxes in both precisions.
template <class T>
constexpr T kMarker = static_cast<T>(3.4028234663852886e38);

template <class Object>
std::vector<std::uint8_t> BytesOf(Object& object)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    object.Serialize(archive);
    archive.Close();
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(file.GetLength()));
    file.Seek(0, CFile::begin);
    file.Read(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    return bytes;
}

template <class Object>
void LoadFrom(std::vector<std::uint8_t> bytes, Object& object)
{
    CMemFile file(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    CArchive archive(&file, CArchive::load);
    object.Serialize(archive);
}

template <class Components, class T>
Components AnyComponents(NumberStream<T>& numbers)
{
    Components components;
    for (int i = 0; i < Components::NumAxes; ++i) {
        components[i] = numbers.Any();
    }
    return components;
}

template <class Components, class T>
Components SmallIntegers(NumberStream<T>& numbers, int largest)
{
    Components components;
    for (int i = 0; i < Components::NumAxes; ++i) {
        components[i] = static_cast<T>(numbers.Integer(-largest, largest));
    }
    return components;
}

template <class Components, class T>
Components UniformComponents(NumberStream<T>& numbers, double largest)
{
    Components components;
    for (int i = 0; i < Components::NumAxes; ++i) {
        components[i] = numbers.Uniform(-largest, largest);
    }
    return components;
}

/// A box whose minimum is nowhere above its maximum.
template <class Box, class Point, class T>
Box OrderedBox(NumberStream<T>& numbers, double largest)
{
    Box box;
    box.CheckPoint(UniformComponents<Point>(numbers, largest));
    box.CheckPoint(UniformComponents<Point>(numbers, largest));
    return box;
}

template <class Box, class Point, class T>
Box OrderedIntegerBox(NumberStream<T>& numbers, int largest)
{
    Box box;
    box.CheckPoint(SmallIntegers<Point>(numbers, largest));
    box.CheckPoint(SmallIntegers<Point>(numbers, largest));
    return box;
}

template <class Components>
void ExpectSameComponents(const Components& expected, const Components& actual)
{
    for (int i = 0; i < Components::NumAxes; ++i) {
        EXPECT_SAME_BITS(expected[i], actual[i]) << "axis " << i;
    }
}

template <class Box>
void ExpectSameBox(const Box& expected, const Box& actual)
{
    ExpectSameComponents(expected.GetMin(), actual.GetMin());
    ExpectSameComponents(expected.GetMax(), actual.GetMax());
}

/// All that a ray query delivers; what it leaves alone keeps the value it had before.
template <int N, class T>
struct RayAnswer {
    RayAnswer()
    {
        for (int i = 0; i < N; ++i) {
            entry[i] = exit[i] = T(77);
        }
    }

    bool hits = false;
    T tNear = T(77);
    T tFar = T(77);
    T entry[N];
    T exit[N];
};

/// The ray query as one would write it down, one axis after the other and branch by branch.
template <int N, class T>
RayAnswer<N, T> RayStepByStep(const T* min, const T* max, const T* origin, const T* direction)
{
    RayAnswer<N, T> answer;
    T tNear = -kMarker<T>;
    T tFar = kMarker<T>;
    int nearAxis = -1;
    int farAxis = -1;
    for (int i = 0; i < N; ++i) {
        if (std::fabs(direction[i]) > std::numeric_limits<T>::epsilon()) {
            const T t1 = (min[i] - origin[i]) / direction[i];
            const T t2 = (max[i] - origin[i]) / direction[i];
            const bool ascending = t2 >= t1;
            const T tMin = ascending ? t1 : t2;
            const T tMax = ascending ? t2 : t1;
            if (nearAxis == -1 || tMin > tNear) {
                nearAxis = i;
                tNear = tMin;
                answer.entry[i] = ascending ? min[i] : max[i];
            }
            if (farAxis == -1 || tFar > tMax) {
                farAxis = i;
                tFar = tMax;
                answer.exit[i] = ascending ? max[i] : min[i];
            }
        } else if (min[i] > origin[i] || origin[i] > max[i]) {
            tNear = kMarker<T>;
            tFar = -kMarker<T>;
            break;
        }
    }
    answer.tNear = tNear;
    answer.tFar = tFar;
    if (!(tFar >= tNear)) {
        return answer;
    }
    for (int i = 0; i < N; ++i) {
        if (i != nearAxis) {
            answer.entry[i] = origin[i] + tNear * direction[i];
        }
        if (i != farAxis) {
            answer.exit[i] = origin[i] + tFar * direction[i];
        }
    }
    answer.hits = true;
    return answer;
}

template <int N, class T>
void ExpectSameAnswer(const RayAnswer<N, T>& expected, const RayAnswer<N, T>& actual)
{
    EXPECT_EQ(expected.hits, actual.hits);
    EXPECT_SAME_BITS(expected.tNear, actual.tNear);
    EXPECT_SAME_BITS(expected.tFar, actual.tFar);
    for (int i = 0; i < N; ++i) {
        EXPECT_SAME_BITS(expected.entry[i], actual.entry[i]) << "axis " << i;
        EXPECT_SAME_BITS(expected.exit[i], actual.exit[i]) << "axis " << i;
    }
}

template <class Box, class Point, class Vector, class T = decltype(Box().GetMin()[0])>
RayAnswer<Point::NumAxes, T> Pierce(const Box& box, const Point& origin, const Vector& direction)
{
    RayAnswer<Point::NumAxes, T> answer;
    Point entry;
    Point exit;
    for (int i = 0; i < Point::NumAxes; ++i) {
        entry[i] = answer.entry[i];
        exit[i] = answer.exit[i];
    }
    answer.hits = box.RayPierce(origin, direction, &answer.tNear, &answer.tFar, &entry, &exit);
    for (int i = 0; i < Point::NumAxes; ++i) {
        answer.entry[i] = entry[i];
        answer.exit[i] = exit[i];
    }
    return answer;
}

} // namespace box_testing
