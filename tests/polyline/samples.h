#pragma once
// Polylines to test with, and comparisons of their vertices.

#include <cadgeom/polyline/polyline3d.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <vector>

#include "support/numbers.h"
#include "support/same_bits.h"

namespace polyline_testing {

template <class T>
CCadPolyline3d<T> Polyline(const std::vector<CadPoint3d<T>>& vertices)
{
    CCadPolyline3d<T> polyline;
    for (const auto& vertex : vertices) {
        polyline.AddPoint(vertex);
    }
    return polyline;
}

template <class T>
CCadPolyline3d<T> Polyline(std::initializer_list<CadPoint3d<T>> vertices)
{
    return Polyline(std::vector<CadPoint3d<T>>(vertices));
}

template <class T>
std::vector<CadPoint3d<T>> Vertices(const CCadPolyline3d<T>& polyline)
{
    return std::vector<CadPoint3d<T>>(polyline.GetData(), polyline.GetData() + polyline.GetNumPoints());
}

/// `count` vertices of everyday size with some special values among them.
template <class T>
std::vector<CadPoint3d<T>> AnyVertices(std::size_t count, test_support::NumberStream<T>& numbers)
{
    std::vector<CadPoint3d<T>> vertices(count);
    for (auto& vertex : vertices) {
        for (int axis = 0; axis < 3; ++axis) {
            vertex[axis] = numbers.Any();
        }
    }
    return vertices;
}

template <class T>
::testing::AssertionResult SameVertices(const std::vector<CadPoint3d<T>>& expected,
                                        const std::vector<CadPoint3d<T>>& actual)
{
    if (expected.size() != actual.size()) {
        return ::testing::AssertionFailure() << "expected " << expected.size() << " vertices, got " << actual.size();
    }
    for (std::size_t i = 0; i < expected.size(); ++i) {
        for (int axis = 0; axis < 3; ++axis) {
            const auto result = test_support::SameBits(expected[i][axis], actual[i][axis]);
            if (!result) {
                return ::testing::AssertionFailure() << "vertex " << i << ", axis " << axis << ": " << result.message();
            }
        }
    }
    return ::testing::AssertionSuccess();
}

} // namespace polyline_testing
