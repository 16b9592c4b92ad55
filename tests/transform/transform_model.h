#pragma once
// A plain model of the transform, written step by step on bare arrays, and the state of a transform as its archive record
// shows it.

#include <cadgeom/platform/archive.h>
#include <cadgeom/transform/transform.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <utility>
#include <vector>

namespace transform_test {

using Numbers = std::array<double, 3>;

enum Bit : unsigned {
    kValid = 0x01,
    kIdentityRotation = 0x02,
    kZeroTranslate = 0x04,
    kUnityScale = 0x08,
    kNonOrthoNormal = 0x10
};

/// The fifteen numbers and the flag byte.
struct State {
    Numbers translation{};
    std::array<Numbers, 3> axes{};
    Numbers scale{};
    std::uint8_t flags = 0;
};

constexpr std::uint32_t kRecordSize = 121;

inline bool SameNumber(double a, double b)
{
    return std::memcmp(&a, &b, sizeof a) == 0 || (std::isnan(a) && std::isnan(b));
}

inline bool SameNumbers(const Numbers& a, const Numbers& b)
{
    return SameNumber(a[0], b[0]) && SameNumber(a[1], b[1]) && SameNumber(a[2], b[2]);
}

inline bool operator==(const State& a, const State& b)
{
    return SameNumbers(a.translation, b.translation) && SameNumbers(a.axes[0], b.axes[0]) &&
           SameNumbers(a.axes[1], b.axes[1]) && SameNumbers(a.axes[2], b.axes[2]) && SameNumbers(a.scale, b.scale) &&
           a.flags == b.flags;
}

inline std::ostream& operator<<(std::ostream& out, const State& state)
{
    const auto print = [&out](const char* name, const Numbers& numbers) {
        out.precision(17);
        out << name << " (" << numbers[0] << ", " << numbers[1] << ", " << numbers[2] << ") ";
    };
    print("translation", state.translation);
    print("x", state.axes[0]);
    print("y", state.axes[1]);
    print("z", state.axes[2]);
    print("scale", state.scale);
    return out << "flags " << static_cast<unsigned>(state.flags);
}

inline std::vector<std::uint8_t> Record(CCadTransform& transform)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    transform.SerializeNew(archive);
    archive.Close();
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(file.GetLength()));
    file.Seek(0, CFile::begin);
    file.Read(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    return bytes;
}

inline State StateOf(CCadTransform& transform)
{
    const std::vector<std::uint8_t> bytes = Record(transform);
    State state;
    EXPECT_EQ(bytes.size(), kRecordSize);
    if (bytes.size() == kRecordSize) {
        double numbers[15];
        std::memcpy(numbers, bytes.data(), sizeof numbers);
        for (std::size_t k = 0; k < 3; ++k) {
            state.translation[k] = numbers[k];
            for (std::size_t i = 0; i < 3; ++i) {
                state.axes[i][k] = numbers[3 + 3 * i + k];
            }
            state.scale[k] = numbers[12 + k];
        }
        state.flags = bytes[120];
    }
    return state;
}

/// A transform in exactly this state, its flag byte included.
inline CCadTransform FromState(const State& state)
{
    std::vector<std::uint8_t> bytes(kRecordSize);
    double numbers[15];
    for (std::size_t k = 0; k < 3; ++k) {
        numbers[k] = state.translation[k];
        for (std::size_t i = 0; i < 3; ++i) {
            numbers[3 + 3 * i + k] = state.axes[i][k];
        }
        numbers[12 + k] = state.scale[k];
    }
    std::memcpy(bytes.data(), numbers, sizeof numbers);
    bytes[120] = state.flags;
    CMemFile file(bytes.data(), kRecordSize);
    CArchive archive(&file, CArchive::load);
    CCadTransform transform;
    transform.SerializeNew(archive);
    return transform;
}

inline CadVector3d<double> ToVector(const Numbers& n)
{
    return {n[0], n[1], n[2]};
}

inline CadPoint3d<double> ToPoint(const Numbers& n)
{
    return {n[0], n[1], n[2]};
}

template <class Value>
Numbers ToNumbers(const Value& value)
{
    return {static_cast<double>(value[0]), static_cast<double>(value[1]), static_cast<double>(value[2])};
}

inline double Dot(const Numbers& a, const Numbers& b)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < 3; ++i) {
        sum += a[i] * b[i];
    }
    return sum;
}

inline Numbers Cross(const Numbers& a, const Numbers& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

inline double Normalize(Numbers& n)
{
    double length = std::sqrt(Dot(n, n));
    if (!std::isfinite(length)) {
        const bool hasNonFinite = !std::isfinite(n[0]) || !std::isfinite(n[1]) || !std::isfinite(n[2]);
        const double largest = std::fmax(std::fabs(n[0]), std::fmax(std::fabs(n[1]), std::fabs(n[2])));
        for (double& c : n) {
            if (hasNonFinite) {
                c = std::isfinite(c) ? 0.0 : std::copysign(1.0, c);
            } else {
                c /= largest;
            }
        }
        length = std::sqrt(Dot(n, n));
    }
    if (length > 0.0) {
        for (double& c : n) {
            c /= length;
        }
    } else {
        n[2] = 1.0;
    }
    return length;
}

inline bool Parallel(const Numbers& a, const Numbers& b)
{
    const double cosine = std::cos(0.001 * 0.017453292519943295);
    const double d = Dot(a, b);
    const double product = Dot(a, a) * Dot(b, b);
    return !(d * d * 1e-6 >= product) && d * d / product >= cosine * cosine;
}

inline bool AnyAbove(const Numbers& n, double offset)
{
    return std::fabs(n[0] - offset) > 1e-6 || std::fabs(n[1] - offset) > 1e-6 || std::fabs(n[2] - offset) > 1e-6;
}

inline bool EachWithin(const Numbers& n, double offset)
{
    return std::fabs(n[0] - offset) <= 1e-6 && std::fabs(n[1] - offset) <= 1e-6 && std::fabs(n[2] - offset) <= 1e-6;
}

/// The steps of the transform, one after the other.
class Model {
public:
    Model() { Reset(); }
    explicit Model(const State& start) : state(start) {}

    State state;

    void Reset() { state = {{0, 0, 0}, {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, {1, 1, 1}, 0x0F}; }

    bool Has(unsigned bit) const { return (state.flags & bit) != 0; }
    void Set(unsigned bit) { state.flags = static_cast<std::uint8_t>(state.flags | bit); }
    void Clear(unsigned bit) { state.flags = static_cast<std::uint8_t>(state.flags & ~bit); }
    void Assign(unsigned bit, bool isSet) { isSet ? Set(bit) : Clear(bit); }

    void Determine()
    {
        Set(kIdentityRotation);
        for (std::size_t i = 0; i < 3; ++i) {
            for (std::size_t k = 0; k < 3; ++k) {
                if (std::fabs(state.axes[i][k] - (i == k ? 1.0 : 0.0)) > 1e-6) {
                    Clear(kIdentityRotation);
                }
            }
        }
        if (Has(kIdentityRotation)) {
            state.axes = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
        }
        if (AnyAbove(state.translation, 0.0)) {
            Clear(kZeroTranslate);
        } else {
            Set(kZeroTranslate);
            state.translation = {0, 0, 0};
        }
        if (AnyAbove(state.scale, 1.0)) {
            Clear(kUnityScale);
        } else {
            Set(kUnityScale);
            state.scale = {1, 1, 1};
        }
        Set(kValid);
    }
    void Ensure()
    {
        if (!Has(kValid)) {
            Determine();
        }
    }
    bool IsIdentityRotation()
    {
        Ensure();
        return Has(kIdentityRotation);
    }
    bool IsEmpty()
    {
        Ensure();
        return Has(kIdentityRotation) && Has(kZeroTranslate) && Has(kUnityScale);
    }
    bool IsUniform() const { return state.scale[0] == state.scale[1] && state.scale[0] == state.scale[2]; }

    void SetTranslate(const Numbers& t)
    {
        state.translation = t;
        if (Has(kValid)) {
            Assign(kZeroTranslate, !AnyAbove(t, 0.0));
        }
    }
    void SetScale(const Numbers& s)
    {
        state.scale = s;
        if (Has(kValid)) {
            Assign(kUnityScale, EachWithin(s, 1.0));
        }
    }
    void SetAxis(std::size_t i, const Numbers& axis)
    {
        state.axes[i] = axis;
        Clear(kValid);
    }

    bool IsOrthoNormal()
    {
        if (IsIdentityRotation()) {
            return true;
        }
        const auto& [x, y, z] = state.axes;
        if (std::fabs(Dot(x, y)) > 1e-6 || std::fabs(Dot(z, y)) > 1e-6 || std::fabs(Dot(z, x)) > 1e-6) {
            return false;
        }
        return !(std::fabs(1 - Dot(x, x)) > 1e-6 || std::fabs(1 - Dot(y, y)) > 1e-6 || std::fabs(1 - Dot(z, z)) > 1e-6);
    }

    void SetFromArray(const double* a)
    {
        state.translation = {a[0], a[1], a[2]};
        for (std::size_t i = 0; i < 3; ++i) {
            state.axes[i] = {a[3 + 3 * i], a[4 + 3 * i], a[5 + 3 * i]};
            state.scale[i] = Normalize(state.axes[i]);
            if (std::fabs(state.scale[i] - 1) <= 1e-6) {
                state.scale[i] = 1;
            }
        }
        if (state.scale[0] == 0 && state.scale[1] == 0 && state.scale[2] == 0) {
            state.scale = {1, 1, 1};
        }
        Clear(kValid);
        Assign(kNonOrthoNormal, !IsOrthoNormal());
    }
    std::array<double, 12> CopyToArray() const
    {
        std::array<double, 12> a{};
        for (std::size_t k = 0; k < 3; ++k) {
            a[k] = state.translation[k];
            for (std::size_t i = 0; i < 3; ++i) {
                a[3 + 3 * i + k] = state.axes[i][k] * state.scale[i];
            }
        }
        return a;
    }

    /// Rows of the inverse of the matrix whose rows are the axes.
    std::array<Numbers, 3> InverseMatrix() const
    {
        std::array<Numbers, 3> a = state.axes;
        std::array<Numbers, 3> inverse = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
        std::array<std::size_t, 3> perm = {0, 1, 2};
        for (std::size_t k = 0; k < 3; ++k) {
            std::size_t best = k;
            for (std::size_t r = k + 1; r < 3; ++r) {
                if (std::fabs(a[perm[r]][k]) > std::fabs(a[perm[best]][k])) {
                    best = r;
                }
            }
            std::swap(perm[k], perm[best]);
            const std::size_t p = perm[k];
            const double s = 1.0 / a[p][k];
            for (std::size_t j = 0; j < 3; ++j) {
                if (j > k) {
                    a[p][j] *= s;
                }
                inverse[p][j] *= s;
            }
            for (std::size_t r = k + 1; r < 3; ++r) {
                const double f = a[perm[r]][k];
                for (std::size_t j = 0; j < 3; ++j) {
                    if (j > k) {
                        a[perm[r]][j] -= f * a[p][j];
                    }
                    inverse[perm[r]][j] -= f * inverse[p][j];
                }
            }
        }
        for (std::size_t k = 2; k >= 1; --k) {
            for (std::size_t r = k; r-- > 0;) {
                const double f = a[perm[r]][k];
                for (std::size_t j = 0; j < 3; ++j) {
                    inverse[perm[r]][j] -= f * inverse[perm[k]][j];
                }
            }
        }
        return {inverse[perm[0]], inverse[perm[1]], inverse[perm[2]]};
    }

    Numbers AlongAxes(const Numbers& v) const
    {
        Numbers out{};
        for (std::size_t k = 0; k < 3; ++k) {
            out[k] = v[0] * state.axes[0][k] + v[1] * state.axes[1][k] + v[2] * state.axes[2][k];
        }
        return out;
    }
    Numbers TurnToLocal(const Numbers& d) const
    {
        Numbers q{};
        if (Has(kNonOrthoNormal)) {
            const std::array<Numbers, 3> m = InverseMatrix();
            for (std::size_t j = 0; j < 3; ++j) {
                for (std::size_t i = 0; i < 3; ++i) {
                    q[j] += m[i][j] * d[i];
                }
            }
        } else {
            q = {Dot(d, state.axes[0]), Dot(d, state.axes[1]), Dot(d, state.axes[2])};
        }
        return q;
    }
    static void KeepLength(const Numbers& original, Numbers& w)
    {
        const double squared = Dot(w, w);
        if (squared > 1e-12) {
            const double factor = std::sqrt(Dot(original, original) / squared);
            for (double& c : w) {
                c *= factor;
            }
        }
    }

    Numbers PointToWorld(const Numbers& in)
    {
        Ensure();
        Numbers v = in;
        if (!Has(kUnityScale)) {
            for (std::size_t i = 0; i < 3; ++i) {
                v[i] *= state.scale[i];
            }
        }
        Numbers out = Has(kIdentityRotation) ? v : AlongAxes(v);
        if (!Has(kZeroTranslate)) {
            for (std::size_t i = 0; i < 3; ++i) {
                out[i] += state.translation[i];
            }
        }
        return out;
    }
    Numbers PointToLocal(const Numbers& in)
    {
        Ensure();
        const Numbers d = {in[0] - state.translation[0], in[1] - state.translation[1], in[2] - state.translation[2]};
        Numbers q = Has(kIdentityRotation) ? d : TurnToLocal(d);
        if (!Has(kUnityScale)) {
            for (std::size_t i = 0; i < 3; ++i) {
                q[i] /= state.scale[i];
            }
        }
        return q;
    }
    Numbers DirectionToWorld(const Numbers& in)
    {
        Ensure();
        Numbers w = in;
        if (!Has(kUnityScale) && !IsUniform()) {
            for (std::size_t i = 0; i < 3; ++i) {
                w[i] *= state.scale[i];
            }
            KeepLength(in, w);
        }
        return Has(kIdentityRotation) ? w : AlongAxes(w);
    }
    Numbers DirectionToLocal(const Numbers& in)
    {
        Ensure();
        Numbers w = Has(kIdentityRotation) ? in : TurnToLocal(in);
        if (!Has(kUnityScale) && !IsUniform()) {
            for (std::size_t i = 0; i < 3; ++i) {
                w[i] /= state.scale[i];
            }
            KeepLength(in, w);
        }
        return w;
    }
    bool MapsLengths()
    {
        Ensure();
        return !Has(kNonOrthoNormal) && (Has(kUnityScale) || IsUniform());
    }

    /// a * b.
    static Model Product(Model& a, Model& b)
    {
        Model r;
        r.state.flags = 0;
        if (a.Has(kNonOrthoNormal) || b.Has(kNonOrthoNormal)) {
            a.Set(kNonOrthoNormal);
        }
        r.state.translation = a.PointToWorld(b.state.translation);
        if (a.IsUniform()) {
            if (!a.IsIdentityRotation()) {
                if (!b.IsIdentityRotation()) {
                    for (std::size_t i = 0; i < 3; ++i) {
                        r.state.axes[i] = a.DirectionToWorld(b.state.axes[i]);
                    }
                } else {
                    r.state.axes = a.state.axes;
                }
            } else {
                r.state.axes = b.state.axes;
            }
        } else if (b.IsIdentityRotation()) {
            r.state.axes = a.state.axes;
        } else {
            for (std::size_t i = 0; i < 3; ++i) {
                r.state.axes[i] = {0, 0, 0};
                for (std::size_t j = 0; j < 3; ++j) {
                    for (std::size_t k = 0; k < 3; ++k) {
                        r.state.axes[i][k] += a.state.scale[j] * b.state.axes[i][j] * a.state.axes[j][k];
                    }
                }
            }
            r.state.scale = b.state.scale;
            r.Set(kNonOrthoNormal);
            return r;
        }
        for (std::size_t i = 0; i < 3; ++i) {
            r.state.scale[i] = b.state.scale[i] * a.state.scale[i];
        }
        return r;
    }
    void MultiplyFromLeft(Model& a) { *this = Product(a, *this); }

    Model Inverse()
    {
        if (IsEmpty()) {
            return *this;
        }
        std::array<Numbers, 3> m{};
        if (Has(kNonOrthoNormal)) {
            m = InverseMatrix();
        } else {
            for (std::size_t i = 0; i < 3; ++i) {
                for (std::size_t j = 0; j < 3; ++j) {
                    m[i][j] = state.axes[j][i];
                }
            }
        }
        Model r;
        r.state.flags = 0;
        const Numbers& s = state.scale;
        const Numbers& t = state.translation;
        for (std::size_t i = 0; i < 3; ++i) {
            r.state.axes[0][i] = m[0][i] * s[0] / s[i];
            r.state.axes[1][i] = m[1][i] * s[1] / s[i];
            r.state.axes[2][i] = m[2][i] * s[2] / s[i];
            r.state.translation[i] = -((m[0][i] * t[0] + m[1][i] * t[1] + m[2][i] * t[2]) / s[i]);
            r.state.scale[i] = 1 / s[i];
        }
        return r;
    }

    void MakeOrthoNormal()
    {
        auto& [x, y, z] = state.axes;
        const bool pxy = Parallel(x, y);
        const bool pyz = Parallel(y, z);
        const bool pzx = Parallel(z, x);
        if (!pxy) {
            z = Cross(x, y);
            y = Cross(z, x);
        } else if (!pyz) {
            x = Cross(y, z);
            z = Cross(x, y);
        } else if (!pzx) {
            y = Cross(z, x);
            x = Cross(y, z);
        } else {
            Normalize(y);
            Model frame;
            frame.FrameFromZ(y, {0, 0, 0});
            state.axes = frame.state.axes;
        }
        Normalize(x);
        Normalize(y);
        Normalize(z);
        Clear(kNonOrthoNormal);
    }
    void ForceOrthoNormal()
    {
        auto& [x, y, z] = state.axes;
        Normalize(z);
        y = Cross(z, x);
        Normalize(y);
        x = Cross(y, z);
        Normalize(x);
        state.scale = {1, 1, 1};
    }
    void FrameFromZ(const Numbers& z, const Numbers& origin)
    {
        Numbers n = z;
        Normalize(n);
        const Numbers auxiliary = n[1] < -0.99 || n[1] > 0.99 ? Numbers{0, 0, 1} : Numbers{0, 1, 0};
        Numbers x = Cross(auxiliary, n);
        Normalize(x);
        Numbers y = Cross(n, x);
        Normalize(y);
        SetFrame(x, y, n, origin);
    }
    void FrameFromZAndX(const Numbers& z, const Numbers& hint, const Numbers& origin)
    {
        const double t = Dot(hint, z) / Dot(z, z);
        Numbers p = {hint[0] - z[0] * t, hint[1] - z[1] * t, hint[2] - z[2] * t};
        if (EachWithin(p, 0.0)) {
            FrameFromZ(z, origin);
            return;
        }
        Numbers n = z;
        Normalize(p);
        Normalize(n);
        SetFrame(p, Cross(n, p), n, origin);
    }

    void Scale(const Numbers& s)
    {
        Ensure();
        if (Has(kIdentityRotation) && Has(kZeroTranslate)) {
            for (std::size_t i = 0; i < 3; ++i) {
                state.scale[i] *= s[i];
            }
        } else {
            Model scaling;
            if (AnyAbove(s, 1.0)) {
                scaling.state.scale = s;
                scaling.Clear(kUnityScale);
            }
            MultiplyFromLeft(scaling);
        }
        Assign(kUnityScale, EachWithin(state.scale, 1.0));
    }

    static Model RotationAbout(double angle, const Numbers& direction, const Numbers& pivot)
    {
        Numbers u = direction;
        Normalize(u);
        const double c = std::cos(angle);
        const double s = std::sin(angle);
        const double k = 1 - c;
        Model r;
        r.state.axes[0] = {u[0] * u[0] * k + c, u[0] * u[1] * k + u[2] * s, u[0] * u[2] * k - u[1] * s};
        r.state.axes[1] = {u[0] * u[1] * k - u[2] * s, u[1] * u[1] * k + c, u[1] * u[2] * k + u[0] * s};
        r.state.axes[2] = {u[0] * u[2] * k + u[1] * s, u[1] * u[2] * k - u[0] * s, u[2] * u[2] * k + c};
        r.Clear(kValid);
        if (pivot[0] != 0 || pivot[1] != 0 || pivot[2] != 0) {
            const Numbers turned = r.PointToWorld(pivot);
            r.state.translation = {pivot[0] - turned[0], pivot[1] - turned[1], pivot[2] - turned[2]};
            r.Clear(kValid);
        }
        return r;
    }
    void RotateAbout(double degrees, const Numbers& direction, const Numbers& pivot)
    {
        const bool isEmpty = IsEmpty();
        Model rotation = RotationAbout(degrees * 0.017453292519943295, direction, pivot);
        *this = isEmpty ? rotation : Product(*this, rotation);
    }

    bool TurnXTowards(const Numbers& v, bool isWorld)
    {
        Numbers w = isWorld ? DirectionToLocal(v) : v;
        if (w[0] == 0 && w[1] == 0) {
            return false;
        }
        w[2] = 0;
        w = DirectionToWorld(w);
        Normalize(w);
        state.axes[0] = w;
        state.axes[1] = Cross(state.axes[2], w);
        Normalize(state.axes[1]);
        Clear(kValid);
        return true;
    }
    void TurnInPlane(double degrees, std::size_t axis)
    {
        const double a = degrees * 0.017453292519943295;
        double c = std::cos(a);
        const double s = std::sin(a);
        if (std::fabs(c) < 1e-8 && std::fabs(s) < 1e-8) {
            c = 1;
        }
        const std::size_t i = axis < 3 ? axis : axis - 3;
        const std::size_t j = (i + 1) % 3;
        const std::size_t k = (i + 2) % 3;
        std::array<Numbers, 3> r{};
        r[i][i] = c;
        r[i][j] = s;
        r[j][i] = -s;
        r[j][j] = c;
        r[k][k] = 1;
        const std::array<Numbers, 3> old = state.axes;
        for (std::size_t row = 0; row < 3; ++row) {
            if (std::sqrt(Dot(r[row], r[row])) > 0) {
                Normalize(r[row]);
            }
            for (std::size_t component = 0; component < 3; ++component) {
                double sum = 0;
                for (std::size_t m = 0; m < 3; ++m) {
                    sum += r[row][m] * old[m][component];
                }
                state.axes[row][component] = sum;
            }
        }
        Clear(kValid);
    }

private:
    void SetFrame(const Numbers& x, const Numbers& y, const Numbers& z, const Numbers& origin)
    {
        SetTranslate(origin);
        state.axes = {x, y, z};
        Clear(kValid);
        SetScale({1, 1, 1});
        Clear(kNonOrthoNormal);
    }
};

} // namespace transform_test
