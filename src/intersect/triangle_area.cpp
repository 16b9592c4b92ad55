#include <cadgeom/intersect/triangle_area.h>

#include <utility>

template <class T>
T ComputeTriangleArea(const CadPoint3d<T>& a, const CadPoint3d<T>& b, const CadPoint3d<T>& c)
{
    return ComputeTriangleArea<T>(b.distance(a), c.distance(b), a.distance(c));
}

template <class T>
T ComputeTriangleArea(T length1, T length2, T length3)
{
    T x = length1;
    T y = length2;
    T z = length3;
    if (x < y) {
        std::swap(x, y);
    }
    if (y < z) {
        std::swap(y, z);
    }
    if (x < y) {
        std::swap(x, y);
    }
    const T product = (x + (y + z)) * (z - (x - y)) * (z + (x - y)) * (x + (y - z));
    return product > T(0) ? T(0.25) * cadgeom::detail::Sqrt(product) : T(0);
}

#define CADGEOM_INSTANTIATE(T)                                                                                         \
    template CADGEOM_API T ComputeTriangleArea(const CadPoint3d<T>&, const CadPoint3d<T>&, const CadPoint3d<T>&);      \
    template CADGEOM_API T ComputeTriangleArea(T, T, T)

CADGEOM_INSTANTIATE(float);
CADGEOM_INSTANTIATE(double);

#undef CADGEOM_INSTANTIATE
