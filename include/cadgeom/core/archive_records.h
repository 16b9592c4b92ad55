#pragma once
/// @file
/// The archive records of vectors and points: N little-endian values in axis order, with nothing before, between or
/// after them. Points and vectors of one instance have the same record.

#include <cadgeom/core/point.h>
#include <cadgeom/core/point2d.h>
#include <cadgeom/core/point3d.h>
#include <cadgeom/core/vector.h>
#include <cadgeom/core/vector2d.h>
#include <cadgeom/core/vector3d.h>
#include <cadgeom/platform/archive.h>
#include <cadgeom/platform/array.h>

namespace cadgeom::detail {

/// Stores or loads N scalars; the direction is looked at once.
template <int N, class T>
inline void TransferComponents(CArchive& archive, T* components)
{
    if (archive.IsLoading()) {
        for (int i = 0; i < N; ++i) {
            archive >> components[i];
        }
    } else {
        for (int i = 0; i < N; ++i) {
            archive << components[i];
        }
    }
}

/// Runs of points in space are moved as blocks: the bytes are those of the single records.
template <class T>
inline constexpr bool kIsStoredRaw<CadPoint3d<T>> = true;
template <class T>
inline constexpr std::uint32_t kStoredValueSize<CadPoint3d<T>> = sizeof(T);

} // namespace cadgeom::detail

template <class T, int N>
inline void CadVector<T, N>::serialize(CArchive& archive)
{
    cadgeom::detail::TransferComponents<N>(archive, m_components);
}

template <class T, int N>
inline void CadPoint<T, N>::serialize(CArchive& archive)
{
    cadgeom::detail::TransferComponents<N>(archive, m_components);
}

/// Stores the record of a vector; throws CArchiveException (readOnly) on a loading archive.
template <class T, int N>
inline CADGEOM_API CArchive& operator<<(CArchive& archive, const CadVector<T, N>& vector)
{
    for (int i = 0; i < N; ++i) {
        archive << vector[i];
    }
    return archive;
}

/// Stores the record of a point; throws CArchiveException (readOnly) on a loading archive.
template <class T, int N>
inline CADGEOM_API CArchive& operator<<(CArchive& archive, const CadPoint<T, N>& point)
{
    for (int i = 0; i < N; ++i) {
        archive << point[i];
    }
    return archive;
}

/// Loads the record of a vector; throws CArchiveException (writeOnly) on a storing archive and (endOfFile) when the data
/// end inside the record, with the components loaded so far written.
template <class T, int N>
inline CADGEOM_API CArchive& operator>>(CArchive& archive, CadVector<T, N>& vector)
{
    for (int i = 0; i < N; ++i) {
        archive >> vector[i];
    }
    return archive;
}

/// Loads the record of a point; throws CArchiveException (writeOnly) on a storing archive and (endOfFile) when the data
/// end inside the record, with the coordinates loaded so far written.
template <class T, int N>
inline CADGEOM_API CArchive& operator>>(CArchive& archive, CadPoint<T, N>& point)
{
    for (int i = 0; i < N; ++i) {
        archive >> point[i];
    }
    return archive;
}

#define CADGEOM_DECLARE_RECORDS(T, N)                                                                                  \
    extern template CADGEOM_API CArchive& operator<<(CArchive&, const CadVector<T, N>&);                               \
    extern template CADGEOM_API CArchive& operator<<(CArchive&, const CadPoint<T, N>&);                                \
    extern template CADGEOM_API CArchive& operator>>(CArchive&, CadVector<T, N>&);                                     \
    extern template CADGEOM_API CArchive& operator>>(CArchive&, CadPoint<T, N>&);                                      \
    extern template CADGEOM_API void SerializeElements(CArchive&, CadVector<T, N>*, std::int64_t)

CADGEOM_DECLARE_RECORDS(float, 2);
CADGEOM_DECLARE_RECORDS(float, 3);
CADGEOM_DECLARE_RECORDS(double, 2);
CADGEOM_DECLARE_RECORDS(double, 3);

#undef CADGEOM_DECLARE_RECORDS
