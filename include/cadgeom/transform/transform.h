#pragma once
/// @file
/// `CCadTransform`, a coordinate frame placed in the world: it maps positions, directions and lengths between local and
/// world coordinates, composes, inverts, and serves as the frame of circles and ellipses. Next:
/// transform/points_transform.h for arrays of points.

#include <cadgeom/core/export.h>
#include <cadgeom/core/point3d.h>
#include <cadgeom/core/units.h>
#include <cadgeom/core/vector3d.h>

#include <cstdint>

class CArchive;

namespace cadgeom::detail {

/// The numbers of a transform as its mappings use them.
struct Frame;

} // namespace cadgeom::detail

/// An axis of a transform; its value is the axis's index.
enum ERotateAxis : int {
    eRotateXAxis = 0,
    eRotateYAxis = 1,
    eRotateZAxis = 2
};

/// A plane to mirror in, by the axis that is negated.
enum ECadPlane : int {
    eMirrorX = 0,
    eMirrorY = 1,
    eMirrorZ = 2
};

/// An affine map from local to world coordinates, kept as a translation, three axis directions and a scale for each axis:
///
///     world = translation + scale.x * local.x * xAxis + scale.y * local.y * yAxis + scale.z * local.z * zAxis
///
/// `aaback` and everything named `TransformFrom` map local to world; `aaforw` and everything named `TransformTo` map
/// world to local. `A * B` applies B first. Positions take the translation; directions never do and keep their length:
/// only a non-uniform scale bends them. Everything is computed in double; the float forms widen each component and round
/// each result once.
///
/// The axes are unit vectors at right angles to each other, unless the caller sets others or a non-uniform scale meets a
/// rotation in a product or an inverse.
///
/// A byte of property flags lets the mappings skip what has no effect. Flags are determined when they are first needed
/// after a change, also through a const reference, and determining them snaps what is within 1e-6 of the identity
/// (axes, translation, scale) to exactly the identity. A transform shared between threads must have its flags determined
/// (by any Is... query) before it is shared. Where a tolerance is not given it is 1e-6, absolute, per component, and a
/// NaN is within it.
class CADGEOM_API CCadTransform {
public:
    /// Bits of the flag byte.
    enum EFlag : std::uint8_t {
        eFlagsValid = 0x01,       ///< the next three bits are up to date
        eIdentityRotation = 0x02, ///< the axes are the unit axes
        eZeroTranslate = 0x04,    ///< the translation is zero
        eUnityScale = 0x08,       ///< the scale is 1 on every axis
        eNonOrthoNormal = 0x10    ///< the axes are not orthonormal: world to local needs their inverse matrix. Set and
                                  ///< cleared by SetFromArray, operator*, newmat and MakeOrthoNormal alone
    };

    /// @name Construction
    /// @{

    /// Leaves translation, axes and scale uninitialised: assign or Reset() before anything else.
    CCadTransform() = default;
    /// As SetFromArray().
    CCadTransform(const double* numbers);
    /// As newmat(z, origin).
    CCadTransform(const CadVector3d<double>& z, const CadPoint3d<double>& origin);
    /// As newmat(z, x, origin).
    CCadTransform(const CadVector3d<double>& z, const CadVector3d<double>& x, const CadPoint3d<double>& origin);

    /// Makes this the identity, with its flags determined.
    void Reset() { *this = s_empty; }
    /// The same as Reset().
    void SetEmptyTransform() { Reset(); }
    /// The one identity transform.
    static const CCadTransform& GetEmptyTransform() { return s_empty; }

    /// Builds a right-handed frame with the direction of `z` as its z axis, scale 1 and the given origin. The x axis is at
    /// right angles to the world's y axis, or to its z axis when the y component of the unit z exceeds 0.99 in size.
    void newmat(const CadVector3d<double>& z, const CadPoint3d<double>& origin);
    /// As newmat(z, origin), with the x axis along the component of the hint `x` at right angles to `z`. A hint without
    /// such a component (every |component| of it <= 1e-6) is ignored.
    void newmat(const CadVector3d<double>& z, const CadVector3d<double>& x, const CadPoint3d<double>& origin);

    /// @}
    /// @name Properties
    /// @{

    /// Whether this is the identity. As the next three, it determines the flags when they are not.
    inline bool IsEmptyTransform() const;
    bool IsIdentityRotation() const { return HasProperty(eIdentityRotation); }
    bool IsZeroTranslate() const { return HasProperty(eZeroTranslate); }
    bool IsUnityScale() const { return HasProperty(eUnityScale); }
    /// Whether the three scale factors compare exactly equal.
    bool IsUniformScale() const { return m_scale.x() == m_scale.y() && m_scale.x() == m_scale.z(); }
    /// Whether the axes form a left-handed system. The scale is not looked at.
    bool IsMirrorTransform() const { return GetDeterminant() < 0.0; }
    /// Determinant of the axes, x . (y x z), without the scale.
    double GetDeterminant() const { return m_axis[0].dot(m_axis[1].cross(m_axis[2])); }
    /// Whether no dot product of two axes exceeds 1e-6 in size and no squared length of an axis differs from 1 by more.
    /// Determines the flags when they are not.
    bool IsOrthoNormal() const;
    /// Makes the next query or mapping determine the flags.
    void UndetermineFlags() const { ClearFlag(eFlagsValid); }

    /// Whether translation, scale and axes differ by no more than 1e-6 in every component. The same map with another split
    /// between axis lengths and scale is another transform; flags are not compared.
    bool operator==(const CCadTransform& other) const { return AlmostSame(other); }
    bool operator!=(const CCadTransform& other) const { return !AlmostSame(other); }
    /// The same as operator==.
    bool AlmostSame(const CCadTransform& other) const;

    /// @}
    /// @name Parts
    /// Setting translation or scale keeps determined flags up to date without snapping; setting an axis makes them
    /// undetermined.
    /// @{

    /// World position of the local origin.
    const CadPoint3d<double>& GetTranslate() const { return m_translate.point; }
    /// The same three numbers as a vector.
    const CadVector3d<double>& GetTranslateVector() const { return m_translate.vector; }
    void SetTranslate(const CadPoint3d<double>& translation);
    void SetTranslateVector(const CadVector3d<double>& translation);

    /// World directions of the local axes, without the scale.
    const CadVector3d<double>& xAxis() const { return m_axis[0]; }
    const CadVector3d<double>& yAxis() const { return m_axis[1]; }
    const CadVector3d<double>& zAxis() const { return m_axis[2]; }
    /// Axis 0, 1 or 2; the index is not checked.
    const CadVector3d<double>& GetAxis(ERotateAxis axis) const { return m_axis[axis]; }
    /// Sets axis 0, 1 or 2 as it is, without normalising; the index is not checked.
    void SetAxis(const CadVector3d<double>& direction, int axis);
    void setAxisX(const CadVector3d<double>& direction) { SetAxis(direction, eRotateXAxis); }
    void setAxisY(const CadVector3d<double>& direction) { SetAxis(direction, eRotateYAxis); }
    void setAxisZ(const CadVector3d<double>& direction) { SetAxis(direction, eRotateZAxis); }
    void setAxesXYZ(const CadVector3d<double>& x, const CadVector3d<double>& y, const CadVector3d<double>& z);

    /// Factors along the local axes.
    const CadVector3d<double>& GetScale() const { return m_scale; }
    /// Here a NaN counts as different from 1.
    void SetScale(double scale);
    void SetScale(const CadVector3d<double>& scale);

    /// The translation and the three scaled axes, 12 numbers. Nothing happens for null.
    void CopyToArray(double* numbers) const;
    /// Takes 12 numbers as CopyToArray() writes them. Each axis becomes unit length and its length the scale, exactly 1
    /// when within 1e-6; a zero axis becomes (0, 0, 1), and three zero axes have the scale 1. Determines the flags, whether
    /// the axes are orthonormal included. Nothing happens for null.
    void SetFromArray(const double* numbers);
    /// The matrix as OpenGL takes it: 16 numbers, column by column, for column vectors. Nothing happens for null.
    void GetGLMatrix(double* const matrix) const;

    /// @}
    /// @name Editing
    /// @{

    /// Adds to the translation; keeps determined flags up to date without snapping.
    void Translate(const CadVector3d<double>& displacement);
    /// Multiplies the translation; flags as Translate().
    void ScaleOrigin(double factor);
    /// Multiplies the translation by GetConversionFactor(from, to); axes and scale stay. Nothing happens when the units are
    /// the same or either is CADUNITS_NONE. Flags as Translate().
    void ConvertUnits(CADUNITS from, CADUNITS to);
    /// Scales about the world origin. Factors within 1e-6 of 1 on every axis count as 1 unless this transform has neither
    /// translation nor rotation.
    void Scale(double factor);
    /// As Scale(double), by axis of the world: non-uniform factors make the axes of a rotated transform non-orthonormal.
    void Scale(const CadVector3d<double>& factors);
    /// Negates one axis; flags become undetermined. Nothing happens for another value.
    void Mirror(ECadPlane plane);

    /// Makes the axes orthonormal, right-handed, and keeps the scale. x and the plane of x and y stay when they are not
    /// parallel (within 0.001 degrees), else y and the plane of y and z, else z and the plane of z and x; when all are
    /// parallel, their direction becomes z of a new frame. Determined flags stay as they are.
    void MakeOrthoNormal();
    /// Makes the axes orthonormal, right-handed, keeping z and the plane of z and x, and sets the scale to 1. The flags
    /// stay as they are.
    void ForceOrthoNormal();

    /// Rotates in the local frame about local axis 0, 1 or (any other value) 2 through the local origin, by degrees.
    void RotAboutAxis(double angleDeg, int axis);
    /// Rotation by radians about the line through `pivot` along `direction`, right-handed; its flags are undetermined.
    static CCadTransform GetRotateAboutVector(double angleRad, const CadVector3d<double>& direction,
                                              const CadPoint3d<double>& pivot);
    /// Rotates in the local frame by degrees; `direction` and `pivot` are local.
    void RotateAboutVector(double angleDeg, const CadVector3d<double>& direction, const CadPoint3d<double>& pivot);

    /// @}
    /// @name Composition
    /// @{

    /// The transform that applies `b` first and then this one. When either operand is marked as not orthonormal, this one
    /// (not the result) becomes marked. A non-uniform scale of this one and a rotation of `b` give a result with axes of
    /// any length, marked as not orthonormal. The flags of the result are undetermined.
    CCadTransform operator*(const CCadTransform& b);
    /// this = this * b.
    const CCadTransform& operator*=(const CCadTransform& b);
    /// this = frame * this: takes a transform given in the local coordinates of `frame` to the world. `frame` may become
    /// marked as the left operand of operator* is.
    void TransformFrom(const CCadTransform& frame);
    /// this = frame.GetInverse() * this: takes a transform given in the world to the local coordinates of `frame`.
    void TransformTo(const CCadTransform& frame);
    /// The transform that undoes this one. With a non-uniform scale its axes have any length, and are not marked as such; a
    /// scale of zero gives infinities or NaN, and so do linearly dependent axes.
    CCadTransform GetInverse() const;

    /// @}
    /// @name Mapping
    /// Input and output may be the same object. Determines the flags when they are not.
    /// @{

    /// Local position to world.
    template <class T>
    void aaback(const CadPoint3d<T>& local, CadPoint3d<T>& world) const;
    /// World position to local.
    template <class T>
    void aaforw(const CadPoint3d<T>& world, CadPoint3d<T>& local) const;
    /// Local direction to world, its length kept.
    template <class T>
    void aaback(const CadVector3d<T>& local, CadVector3d<T>& world) const;
    /// World direction to local, its length kept.
    template <class T>
    void aaforw(const CadVector3d<T>& world, CadVector3d<T>& local) const;

    /// Three numbers to three numbers, as a direction when `isVector` is not zero, else as a position. Nothing happens when
    /// either pointer is null; the ranges may overlap.
    template <class T>
    void aaback(int isVector, const T* local, T* world) const;
    template <class T>
    void aaforw(int isVector, const T* world, T* local) const;

    /// `count` positions or directions in place, each with the bits that mapping it alone would give. Nothing happens for
    /// null; the identity changes nothing, not even a NaN.
    template <class T>
    void aaback(CadPoint3d<T>* points, std::uint64_t count) const;
    template <class T>
    void aaforw(CadPoint3d<T>* points, std::uint64_t count) const;
    template <class T>
    void aaback(CadVector3d<T>* vectors, std::uint64_t count) const;
    template <class T>
    void aaforw(CadVector3d<T>* vectors, std::uint64_t count) const;

    /// A length to world or to local.
    /// @return false, with the output untouched, when no single factor maps lengths: the axes are marked as not
    ///         orthonormal, or the scale is neither 1 nor exactly uniform
    bool aaback(double local, double& world) const;
    bool aaforw(double world, double& local) const;
    bool aaback(float local, float& world) const;
    bool aaforw(float world, float& local) const;

    /// Intersects a world line with the local plane where coordinate `plane` (0, 1, 2) is zero.
    /// @param point, direction  the line, in world coordinates; the direction may have any length
    /// @param out      out: the point of intersection, in world coordinates when `toWorld`, else local; may be `point`
    /// @return false, with `out` untouched, when the local unit direction has a component of at most 1e-5 across the
    ///         plane, and for other values of `plane`
    bool LineInterPlane(const CadPoint3d<double>& point, const CadVector3d<double>& direction, int plane,
                        CadPoint3d<double>& out, bool toWorld) const;
    /// As LineInterPlane() for a line that is local already; the transform is not looked at.
    bool LineInterPlaneTC(const CadPoint3d<double>& point, const CadVector3d<double>& direction, int plane,
                          CadPoint3d<double>& out) const;

    /// Finds the axis closest to the line along a vector, and turns the vector to the axis's side.
    /// @param vector  in and out: negated each time a closer axis is found on whose negative side it lies
    /// @param axis    out: 0, 1 or 2; z wins over y and y over x when equally close
    void maxabs(CadVector3d<double>& vector, int& axis) const;

    /// @}
    /// @name Circles and ellipses
    /// The local xy plane holds a circle or an ellipse about the local origin, its first radius along x. Angles run from x
    /// towards y; those returned lie in [0, full turn). For an ellipse the angle is its parameter a in
    /// (radiusX * cos a, radiusY * sin a), not the direction. Local z is ignored.
    /// @{

    /// World position or direction of local (radius * cos angle, radius * sin angle, 0).
    CadPoint3d<double> PointFromAngleRad(double angle, double radius) const;
    CadPoint3d<double> PointFromAngleDeg(double angle, double radius) const;
    CadVector3d<double> VectorFromAngleRad(double angle, double radius) const;
    CadVector3d<double> VectorFromAngleDeg(double angle, double radius) const;
    /// World position or direction of local (radiusX * cos angle, radiusY * sin angle, 0).
    CadPoint3d<double> EllipsePointFromAngleRad(double angle, double radiusX, double radiusY) const;
    CadPoint3d<double> EllipsePointFromAngleDeg(double angle, double radiusX, double radiusY) const;
    CadVector3d<double> EllipseVectorFromAngleRad(double angle, double radiusX, double radiusY) const;
    CadVector3d<double> EllipseVectorFromAngleDeg(double angle, double radiusX, double radiusY) const;

    /// Angle of a world position or direction. The float forms round the local coordinates to float and take the arc
    /// tangent in single precision.
    template <class T>
    double AngleFromPointRad(const CadPoint3d<T>& point) const;
    template <class T>
    double AngleFromPointDeg(const CadPoint3d<T>& point) const;
    template <class T>
    double AngleFromVectorRad(const CadVector3d<T>& vector) const;
    /// Parameter on an ellipse of a world position or direction. When the longer radius is at most 1e-6 (1e-4 for float)
    /// it is the plain angle.
    template <class T>
    double AngleFromEllipsePointRad(const CadPoint3d<T>& point, T radiusX, T radiusY) const;
    template <class T>
    double AngleFromEllipsePointDeg(const CadPoint3d<T>& point, T radiusX, T radiusY) const;
    template <class T>
    double AngleFromEllipseVectorRad(const CadVector3d<T>& vector, T radiusX, T radiusY) const;
    template <class T>
    double AngleFromEllipseVectorDeg(const CadVector3d<T>& vector, T radiusX, T radiusY) const;

    /// Turns the x and y axes about the local z axis, by degrees; flags become undetermined. Returns true.
    bool rotmat(double angleDeg);
    /// Turns the x axis towards a direction within the local xy plane; y follows at right angles to z and x. Flags become
    /// undetermined.
    /// @param isWorld  whether `direction` is in world coordinates; local otherwise
    /// @return false, with the axes unchanged, when the local direction has no component in the plane
    bool rotmat(const CadVector3d<double>& direction, bool isWorld);
    /// Turns two axes in their plane by degrees: x towards y (`axis` 0 or 3), y towards z (1 or 4), z towards x (2 or 5).
    /// Other values change nothing. Flags become undetermined.
    /// @return false, always
    bool rotmat(double angleDeg, int axis);

    /// @}
    /// @name Archive records
    /// Neither record says which of the two it is. Data that end early throw CArchiveException (endOfFile).
    /// @{

    /// Stores or loads 121 bytes: translation, axes and scale, three doubles each, and the flag byte as it is. When loading
    /// fails, the parts loaded so far are written.
    void SerializeNew(CArchive& archive);
    /// Stores or loads the 96 bytes of CopyToArray(). Loading is as SetFromArray(); when it fails, nothing is changed.
    void SerializeOld(CArchive& archive);

    /// @}

private:
    /// The three numbers of the translation, which hosts see as a point and as a vector by reference. Both types are the
    /// same three doubles, so that either member may be read whichever was written; writing stays in the library's own
    /// sources, and there goes to `point` alone.
    union Translation {
        Translation() = default;
        constexpr explicit Translation(const CadPoint3d<double>& value) : point(value) {}

        CadPoint3d<double> point;
        CadVector3d<double> vector;
    };

    struct IdentityTag {};
    CADGEOM_HIDDEN constexpr explicit CCadTransform(IdentityTag)
        : m_translate(CadPoint3d<double>(0.0, 0.0, 0.0)),
          m_axis{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}},
          m_scale(1.0, 1.0, 1.0),
          m_flags(eFlagsValid | kIdentityFlags)
    {}

    void SetFlag(EFlag flag) const { m_flags = static_cast<std::uint8_t>(m_flags | flag); }
    void ClearFlag(EFlag flag) const { m_flags = static_cast<std::uint8_t>(m_flags & ~flag); }
    bool IsFlagSet(EFlag flag) const { return (m_flags & flag) != 0; }
    void DetermineFlags() const;
    inline bool HasProperty(EFlag flag) const;
    inline void EnsureFlags() const;

    CADGEOM_HIDDEN void AssignFlag(EFlag flag, bool isSet) const;
    CADGEOM_HIDDEN void UpdateTranslateFlag() const;
    CADGEOM_HIDDEN void SetFrame(const CadVector3d<double>& x, const CadVector3d<double>& y,
                                 const CadVector3d<double>& z, const CadPoint3d<double>& origin);
    CADGEOM_HIDDEN static CCadTransform Compose(const CCadTransform& a, const CCadTransform& b);
    CADGEOM_HIDDEN cadgeom::detail::Frame FrameToWorld() const;
    CADGEOM_HIDDEN cadgeom::detail::Frame FrameToLocal() const;
    CADGEOM_HIDDEN bool MapsLengths() const;
    void GetInverseMatrix(CadPoint3d<double>* const rows) const;
    static bool math_for_rotmat(CCadTransform& transform, double cosine, double sine, int axis);

    static constexpr std::uint8_t kIdentityFlags = eIdentityRotation | eZeroTranslate | eUnityScale;

    mutable Translation m_translate;
    mutable CadVector3d<double> m_axis[3];
    mutable CadVector3d<double> m_scale;
    mutable std::uint8_t m_flags = 0;

    static const CCadTransform s_empty;
};

inline void CCadTransform::EnsureFlags() const
{
    if (!IsFlagSet(eFlagsValid)) {
        DetermineFlags();
    }
}

inline bool CCadTransform::HasProperty(EFlag flag) const
{
    EnsureFlags();
    return IsFlagSet(flag);
}

inline bool CCadTransform::IsEmptyTransform() const
{
    EnsureFlags();
    return (m_flags & kIdentityFlags) == kIdentityFlags;
}

#define CADGEOM_DECLARE_MAPPINGS(T)                                                                                    \
    extern template CADGEOM_API void CCadTransform::aaback(const CadPoint3d<T>&, CadPoint3d<T>&) const;                \
    extern template CADGEOM_API void CCadTransform::aaforw(const CadPoint3d<T>&, CadPoint3d<T>&) const;                \
    extern template CADGEOM_API void CCadTransform::aaback(const CadVector3d<T>&, CadVector3d<T>&) const;              \
    extern template CADGEOM_API void CCadTransform::aaforw(const CadVector3d<T>&, CadVector3d<T>&) const;              \
    extern template CADGEOM_API void CCadTransform::aaback(int, const T*, T*) const;                                   \
    extern template CADGEOM_API void CCadTransform::aaforw(int, const T*, T*) const;                                   \
    extern template CADGEOM_API void CCadTransform::aaback(CadPoint3d<T>*, std::uint64_t) const;                       \
    extern template CADGEOM_API void CCadTransform::aaforw(CadPoint3d<T>*, std::uint64_t) const;                       \
    extern template CADGEOM_API void CCadTransform::aaback(CadVector3d<T>*, std::uint64_t) const;                      \
    extern template CADGEOM_API void CCadTransform::aaforw(CadVector3d<T>*, std::uint64_t) const;                      \
    extern template CADGEOM_API double CCadTransform::AngleFromPointRad(const CadPoint3d<T>&) const;                   \
    extern template CADGEOM_API double CCadTransform::AngleFromPointDeg(const CadPoint3d<T>&) const;                   \
    extern template CADGEOM_API double CCadTransform::AngleFromVectorRad(const CadVector3d<T>&) const;                 \
    extern template CADGEOM_API double CCadTransform::AngleFromEllipsePointRad(const CadPoint3d<T>&, T, T) const;      \
    extern template CADGEOM_API double CCadTransform::AngleFromEllipsePointDeg(const CadPoint3d<T>&, T, T) const;      \
    extern template CADGEOM_API double CCadTransform::AngleFromEllipseVectorRad(const CadVector3d<T>&, T, T) const;    \
    extern template CADGEOM_API double CCadTransform::AngleFromEllipseVectorDeg(const CadVector3d<T>&, T, T) const

CADGEOM_DECLARE_MAPPINGS(float);
CADGEOM_DECLARE_MAPPINGS(double);

#undef CADGEOM_DECLARE_MAPPINGS
