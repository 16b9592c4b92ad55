// Prints a checksum of the results of each inline operation on many inputs, for every instance of the value types, and
// checks that the host and the library share objects and exception types. Compiled without optimising, the host calls
// the library's instances; compiled otherwise, it runs its own inline copies. All must print the same.

#include <cadgeom/core/point2d.h>
#include <cadgeom/core/point3d.h>
#include <cadgeom/core/vector2d.h>
#include <cadgeom/core/vector3d.h>
#include <cadgeom/platform/archive.h>
#include <cadgeom/platform/exceptions.h>
#include <cadgeom/platform/file.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <type_traits>

namespace {

// Exact numbers of every magnitude, the same ones for every compiler: no rounding takes part in making them.
class Numbers {
public:
    template <class T>
    T Next()
    {
        using Bits = std::conditional_t<sizeof(T) == 8, std::uint64_t, std::uint32_t>;
        constexpr int kFractionBits = sizeof(T) == 8 ? 52 : 23;
        constexpr Bits kBias = sizeof(T) == 8 ? 1023 : 127;
        constexpr Bits kExponentSpread = 24;
        const std::uint64_t random = Random();
        const Bits sign = static_cast<Bits>(random & 1) << (8 * sizeof(T) - 1);
        const Bits exponent = kBias - kExponentSpread / 2 + static_cast<Bits>((random >> 1) % kExponentSpread);
        const Bits fraction = static_cast<Bits>(Random()) & ((Bits{1} << kFractionBits) - 1);
        const Bits bits = sign | (exponent << kFractionBits) | fraction;
        T value;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }

private:
    // splitmix64
    std::uint64_t Random()
    {
        std::uint64_t z = (m_state += 0x9e3779b97f4a7c15U);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9U;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebU;
        return z ^ (z >> 31);
    }

    std::uint64_t m_state = 20240229;
};

// FNV-1a over the bytes of results.
class Checksum {
public:
    explicit Checksum(const char* name) : m_name(name) {}

    void Add(bool value) { AddBytes(&value, sizeof value); }
    void Add(float value) { AddBytes(&value, sizeof value); }
    void Add(double value) { AddBytes(&value, sizeof value); }
    template <class T, int N>
    void Add(const CadVector<T, N>& value)
    {
        AddBytes(value.data(), N * sizeof(T));
    }
    template <class T, int N>
    void Add(const CadPoint<T, N>& value)
    {
        AddBytes(value.data(), N * sizeof(T));
    }

    void Print(const char* instance) const
    {
        std::printf("%s %s %016llx\n", instance, m_name, static_cast<unsigned long long>(m_hash));
    }

private:
    void AddBytes(const void* data, std::size_t size)
    {
        const auto* bytes = static_cast<const unsigned char*>(data);
        for (std::size_t i = 0; i < size; ++i)
            m_hash = (m_hash ^ bytes[i]) * 0x100000001b3U;
    }

    const char* m_name;
    std::uint64_t m_hash = 0xcbf29ce484222325U;
};

constexpr int kRounds = 20000;

template <class Value>
Value Filled(Numbers& numbers, int axes)
{
    Value value;
    for (int axis = 0; axis < axes; ++axis)
        value[axis] = numbers.Next<std::decay_t<decltype(value[0])>>();
    return value;
}

template <class T, int N>
void PrintVectorChecksums(const char* instance)
{
    using Vector = CadVector<T, N>;
    Checksum dot("dot"), cross("cross"), unit("crossAndNormalize"), length("length"), normalize("normalize"),
        product("product"), param("projectOntoVectorParam"), foot("projectOntoVector"), moved("sum and scale");
    Numbers numbers;
    for (int i = 0; i < kRounds; ++i) {
        auto a = Filled<Vector>(numbers, N);
        const auto b = Filled<Vector>(numbers, N);
        const T factor = numbers.Next<T>();
        dot.Add(a.dot(b));
        dot.Add(a * b);
        cross.Add(a.cross(b));
        unit.Add(a.crossAndNormalize(b));
        length.Add(a.lengthSquared());
        length.Add(a.length());
        product.Add(a.product(b));
        param.Add(a.projectOntoVectorParam(b));
        foot.Add(a.projectOntoVector(b));
        moved.Add((a + b) * factor - b / factor);
        normalize.Add(a.normalize());
        normalize.Add(a);
        normalize.Add(a.isNormalized());
    }
    for (const Checksum* sum : {&dot, &cross, &unit, &length, &normalize, &product, &param, &foot, &moved})
        sum->Print(instance);
}

template <class T, int N>
void PrintPointChecksums(const char* instance)
{
    using Point = CadPoint<T, N>;
    using Vector = CadVector<T, N>;
    Checksum dot("dotPoint"), distance("distance"), line("distanceSquaredToLine"),
        segment("distanceSquaredToLineSegment"), param("projectOntoLineParam"), foot("projectOntoLine"),
        clamped("projectOntoLineSegment"), moved("sum and scale of points");
    Numbers numbers;
    for (int i = 0; i < kRounds; ++i) {
        auto p = Filled<Point>(numbers, N);
        const auto a = Filled<Point>(numbers, N);
        const auto b = Filled<Point>(numbers, N);
        const auto direction = Filled<Vector>(numbers, N);
        const T factor = numbers.Next<T>();
        dot.Add(p.dotPoint(a));
        distance.Add(p.distanceSquared(a));
        distance.Add(p.distance(a));
        line.Add(p.distanceSquaredToLine(a, direction));
        line.Add(p.distanceSquaredToLine(a, b));
        segment.Add(p.distanceSquaredToLineSegment(a, b));
        param.Add(p.projectOntoLineParam(a, direction));
        foot.Add(p.projectOntoLine(a, direction));
        Point onSegment;
        T squared;
        clamped.Add(p.projectOntoLineSegment(a, b, onSegment, squared));
        clamped.Add(onSegment);
        clamped.Add(squared);
        moved.Add(p.add(a) * factor + direction);
        p -= direction;
        moved.Add(p / factor);
    }
    for (const Checksum* sum : {&dot, &distance, &line, &segment, &param, &foot, &clamped, &moved})
        sum->Print(instance);
}

template <class T>
void PrintPlaneChecksums(const char* instance)
{
    Checksum crossZ("crossZ"), distance("distanceSquaredToPlane"), foot("projectOntoPlane"), angle("angleToPlaneRad");
    Numbers numbers;
    for (int i = 0; i < kRounds; ++i) {
        const auto u = Filled<CadVector2d<T>>(numbers, 2);
        const auto v = Filled<CadVector2d<T>>(numbers, 2);
        crossZ.Add(u.crossZ(v));
        auto p = Filled<CadPoint3d<T>>(numbers, 3);
        const auto q = Filled<CadPoint3d<T>>(numbers, 3);
        auto a = Filled<CadVector3d<T>>(numbers, 3);
        const auto n = Filled<CadVector3d<T>>(numbers, 3);
        distance.Add(p.distanceSquaredToPlane(q, n));
        foot.Add(p.projectOntoPlane(q, n));
        foot.Add(a.projectOntoPlane(n));
        angle.Add(a.angleToPlaneRad(n));
    }
    for (const Checksum* sum : {&crossZ, &distance, &foot, &angle})
        sum->Print(instance);
}

// Whether the library's zero() returns the object that the host's zero() returns.
template <class Value>
bool SharesZero(void* library, const char* symbol)
{
    void* address = dlsym(library, symbol);
    if (address == nullptr) {
        std::fprintf(stderr, "the library does not export %s\n", symbol);
        return false;
    }
    using Zero = const Value& (*)();
    Zero zero;
    std::memcpy(&zero, &address, sizeof zero);
    if (&zero() != &Value::zero()) {
        std::fprintf(stderr, "host and library have objects of their own behind %s\n", symbol);
        return false;
    }
    return true;
}

bool SharesObjects()
{
    void* library = dlopen("libcadgeom.so.1", RTLD_NOW | RTLD_NOLOAD);
    if (library == nullptr) {
        std::fprintf(stderr, "the library is not loaded\n");
        return false;
    }
    bool same = true;
    same &= SharesZero<CadVector<double, 2>>(library, "_ZN9CadVectorIdLi2EE4zeroEv");
    same &= SharesZero<CadVector<double, 3>>(library, "_ZN9CadVectorIdLi3EE4zeroEv");
    same &= SharesZero<CadVector<float, 2>>(library, "_ZN9CadVectorIfLi2EE4zeroEv");
    same &= SharesZero<CadVector<float, 3>>(library, "_ZN9CadVectorIfLi3EE4zeroEv");
    same &= SharesZero<CadPoint<double, 2>>(library, "_ZN8CadPointIdLi2EE4zeroEv");
    same &= SharesZero<CadPoint<double, 3>>(library, "_ZN8CadPointIdLi3EE4zeroEv");
    same &= SharesZero<CadPoint<float, 2>>(library, "_ZN8CadPointIfLi2EE4zeroEv");
    same &= SharesZero<CadPoint<float, 3>>(library, "_ZN8CadPointIfLi3EE4zeroEv");
    return same;
}

template <class Exception, class Action>
bool Catches(const char* name, Action action)
{
    try {
        action();
    } catch (const Exception&) {
        return true;
    } catch (...) {
    }
    std::fprintf(stderr, "%s was not caught by its type\n", name);
    return false;
}

bool CatchesByType()
{
    bool caught = true;
    caught &= Catches<CArchiveException>("CArchiveException", [] {
        CMemFile file;
        CArchive archive(&file, CArchive::load);
        double value = 0;
        archive >> value;
    });
    caught &= Catches<CInvalidArgException>("CInvalidArgException", [] { AfxThrowInvalidArgException(); });
    caught &= Catches<CMemoryException>("CMemoryException", [] { AfxThrowMemoryException(); });
    caught &= Catches<CFileException>("CFileException", [] { AfxThrowFileException(1, "a file"); });
    caught &= Catches<CException>("CException", [] { AfxThrowMemoryException(); });
    caught &= Catches<std::exception>("std::exception", [] { AfxThrowMemoryException(); });
    return caught;
}

} // namespace

int main()
{
    PrintVectorChecksums<double, 2>("double 2");
    PrintVectorChecksums<double, 3>("double 3");
    PrintVectorChecksums<float, 2>("float 2");
    PrintVectorChecksums<float, 3>("float 3");
    PrintPointChecksums<double, 2>("double 2");
    PrintPointChecksums<double, 3>("double 3");
    PrintPointChecksums<float, 2>("float 2");
    PrintPointChecksums<float, 3>("float 3");
    PrintPlaneChecksums<double>("double");
    PrintPlaneChecksums<float>("float");
    const bool objects = SharesObjects();
    const bool types = CatchesByType();
    return objects && types ? 0 : 1;
}
