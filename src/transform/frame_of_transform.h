#pragma once
/// @file
/// The numbers of a transform for its mappings. Part of every mapping, so that what a mapping does not read is not copied.

#include <cadgeom/transform/transform.h>

#include "core/target_clones.h"
#include "transform/frame.h"

namespace cadgeom::detail {

template <class T>
inline Triple Widen(const T* components)
{
    return {static_cast<double>(components[0]), static_cast<double>(components[1]), static_cast<double>(components[2])};
}

template <class T>
inline void Round(const Triple& value, T* components)
{
    components[0] = static_cast<T>(value.x);
    components[1] = static_cast<T>(value.y);
    components[2] = static_cast<T>(value.z);
}

} // namespace cadgeom::detail

CADGEOM_ALWAYS_INLINE cadgeom::detail::Frame CCadTransform::FrameToWorld() const
{
    using cadgeom::detail::Widen;
    EnsureFlags();
    return {Widen(m_translate.point.data()),
            {Widen(m_axis[0].data()), Widen(m_axis[1].data()), Widen(m_axis[2].data())},
            Widen(m_scale.data()),
            !IsFlagSet(eIdentityRotation),
            !IsFlagSet(eUnityScale),
            !IsFlagSet(eZeroTranslate),
            IsUniformScale()};
}

CADGEOM_ALWAYS_INLINE cadgeom::detail::Frame CCadTransform::FrameToLocal() const
{
    cadgeom::detail::Frame frame = FrameToWorld();
    if (frame.isRotated && IsFlagSet(eNonOrthoNormal)) {
        CadPoint3d<double> rows[3];
        GetInverseMatrix(rows);
        for (int j = 0; j < 3; ++j) {
            frame.axes[j] = {rows[0][j], rows[1][j], rows[2][j]};
        }
    }
    return frame;
}
