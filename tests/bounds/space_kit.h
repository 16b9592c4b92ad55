#pragma once
// Short constructors of boxes, points and vectors in space for tests by scalar type, and random transforms.

#include <cadgeom/bounds/bounding_box_3d.h>
#include <cadgeom/bounds/oriented_box_3d.h>
#include <cadgeom/transform/transform.h>

#include <limits>

#include "box_testing.h"

namespace box_testing {

template <class T>
struct SpaceKit {
    static CBoundingBox3d<T> Of(double minX, double minY, double minZ, double maxX, double maxY, double maxZ)
    {
        return CBoundingBox3d<T>(P(minX, minY, minZ), P(maxX, maxY, maxZ));
    }
    static CadPoint3d<T> P(double x, double y, double z)
    {
        return CadPoint3d<T>(static_cast<T>(x), static_cast<T>(y), static_cast<T>(z));
    }
    static CadVector3d<T> V(double x, double y, double z)
    {
        return CadVector3d<T>(static_cast<T>(x), static_cast<T>(y), static_cast<T>(z));
    }
};

/// A rotation about any axis and a translation.
template <class T>
CCadTransform RandomRigidTransform(NumberStream<T>& numbers)
{
    const auto number = [&numbers](double largest) { return static_cast<double>(numbers.Uniform(-largest, largest)); };
    const CadVector3d<double> direction(number(1.0), number(1.0), number(1.0));
    const CadPoint3d<double> pivot(number(5.0), number(5.0), number(5.0));
    CCadTransform transform = CCadTransform::GetRotateAboutVector(number(3.0), direction, pivot);
    transform.Translate(CadVector3d<double>(number(5.0), number(5.0), number(5.0)));
    return transform;
}

/// A rigid transform, often scaled, sometimes by other factors on each axis.
template <class T>
CCadTransform RandomTransform(NumberStream<T>& numbers)
{
    CCadTransform transform = RandomRigidTransform(numbers);
    const auto factor = [&numbers] { return static_cast<double>(numbers.Uniform(0.5, 2.0)); };
    switch (numbers.Integer(0, 3)) {
    case 0:
        transform.SetScale(factor());
        break;
    case 1:
        transform.SetScale(CadVector3d<double>(factor(), factor(), factor()));
        break;
    case 2:
        transform.Scale(CadVector3d<double>(factor(), factor(), factor()));
        break;
    default:
        break;
    }
    return transform;
}

} // namespace box_testing

#define CADGEOM_USE_SPACE_TYPES                                                                                        \
    using T [[maybe_unused]] = TypeParam;                                                                              \
    using Box [[maybe_unused]] = CBoundingBox3d<T>;                                                                    \
    using Oriented [[maybe_unused]] = COrientedBox3d<T>;                                                               \
    using Point [[maybe_unused]] = CadPoint3d<T>;                                                                      \
    using Vector [[maybe_unused]] = CadVector3d<T>;                                                                    \
    [[maybe_unused]] const auto Of = box_testing::SpaceKit<T>::Of;                                                     \
    [[maybe_unused]] const auto P = box_testing::SpaceKit<T>::P;                                                       \
    [[maybe_unused]] const auto V = box_testing::SpaceKit<T>::V;                                                       \
    [[maybe_unused]] const T nan = std::numeric_limits<T>::quiet_NaN()
