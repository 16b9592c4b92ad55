#pragma once
/// @file
/// Arithmetic on runs of N components, which vectors and points share.

#include <cadgeom/core/floating_point.h>
#include <cadgeom/core/tolerance.h>

#include <cmath>

CADGEOM_FP_BEGIN

namespace cadgeom::detail {

template <class T>
inline T Absolute(T value)
{
    return std::fabs(value);
}

/// Sum of products in axis order, from 0: the 0 keeps a sum of negative zeros from being -0.
template <int N, class T>
inline T SumOfProducts(const T* a, const T* b)
{
    T sum = T(0) + Product(a[0], b[0]);
    for (int i = 1; i < N; ++i) {
        sum += Product(a[i], b[i]);
    }
    return sum;
}

/// Sum of squares in axis order. A square is never -0, so the leading 0 of a sum may be left out.
template <int N, class T>
inline T SumOfSquares(const T* components)
{
    T sum = Product(components[0], components[0]);
    for (int i = 1; i < N; ++i) {
        sum += Product(components[i], components[i]);
    }
    return sum;
}

template <int N, class T>
inline bool NoneExceeds(const T* components, T tolerance)
{
    for (int i = 0; i < N; ++i) {
        if (Absolute(components[i]) > tolerance) {
            return false;
        }
    }
    return true;
}

template <int N, class T>
inline bool NoneDiffers(const T* a, const T* b, T tolerance)
{
    for (int i = 0; i < N; ++i) {
        if (Absolute(a[i] - b[i]) > tolerance) {
            return false;
        }
    }
    return true;
}

template <int N, class T>
inline int CompareTolerantly(const T* a, const T* b)
{
    for (int i = 0; i < N; ++i) {
        if (a[i] < b[i] - Tolerance<T>::epsilon()) {
            return -1;
        }
        if (a[i] > b[i] + Tolerance<T>::epsilon()) {
            return 1;
        }
    }
    return 0;
}

/// Index of the largest |component|, the lowest on ties.
template <int N, class T>
inline int AxisOfLargest(const T* components)
{
    int axis = 0;
    for (int i = 1; i < N; ++i) {
        if (Absolute(components[i]) > Absolute(components[axis])) {
            axis = i;
        }
    }
    return axis;
}

/// Index of the smallest |component|, the lowest on ties.
template <int N, class T>
inline int AxisOfSmallest(const T* components)
{
    int axis = 0;
    for (int i = 1; i < N; ++i) {
        if (Absolute(components[i]) < Absolute(components[axis])) {
            axis = i;
        }
    }
    return axis;
}

template <class Axis>
inline void WriteAxis(Axis* axis, int value)
{
    if (axis != nullptr) {
        *axis = static_cast<Axis>(value);
    }
}

} // namespace cadgeom::detail

CADGEOM_FP_END
