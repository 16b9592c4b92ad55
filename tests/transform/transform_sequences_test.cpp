// Long random sequences of operations on a few transforms, each compared after every step, number by number and bit by
// bit, with a plain model: which operation determines, clears, keeps or snaps what is as much the contract as the
// numbers are.

#include <cadgeom/transform/transform.h>
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "support/numbers.h"
#include "transform/transform_model.h"

namespace {

using namespace transform_test;

class Pair {
public:
    explicit Pair(const State& start) : transform(FromState(start)), model(start) {}

    CCadTransform transform;
    Model model;
};

/// Numbers that make the tolerances matter.
class Choices {
public:
    explicit Choices(unsigned seed, bool withSpecials) : m_stream(seed), m_withSpecials(withSpecials) {}

    int Integer(int low, int high) { return m_stream.Integer(low, high); }
    bool OneIn(int n) { return m_stream.Integer(1, n) == 1; }

    double Near(double value)
    {
        static const double kOffsets[] = {0.0, -0.0, 5e-7, -5e-7, 1e-6, -1e-6, 1.1e-6, -1.1e-6, 1e-9, 1e-12};
        return value + kOffsets[Integer(0, 9)];
    }
    double Any()
    {
        if (m_withSpecials && OneIn(12)) {
            return m_stream.Any();
        }
        return OneIn(4) ? static_cast<double>(Integer(-2, 2)) : m_stream.Uniform(-5, 5);
    }
    Numbers Displacement() { return OneIn(2) ? Numbers{Near(0), Near(0), Near(0)} : Numbers{Any(), Any(), Any()}; }
    Numbers Factors()
    {
        const int kind = Integer(0, 3);
        if (kind == 0) {
            return {Near(1), Near(1), Near(1)};
        }
        if (kind == 1) {
            const double s = Factor();
            return {s, s, s};
        }
        return {Factor(), Factor(), Factor()};
    }
    double Factor()
    {
        if (OneIn(6)) {
            return Near(1);
        }
        return m_withSpecials && OneIn(10) ? m_stream.Any() : std::ldexp(m_stream.Uniform(0.5, 1.5), Integer(-1, 1));
    }
    Numbers Direction(int axis)
    {
        if (OneIn(2)) {
            return {Near(axis == 0), Near(axis == 1), Near(axis == 2)};
        }
        return {Any(), Any(), Any()};
    }
    double Degrees()
    {
        return OneIn(3)   ? 90.0 * Integer(-4, 4)
               : OneIn(4) ? m_stream.Uniform(-1e-4, 1e-4)
                          : m_stream.Uniform(-400, 400);
    }

private:
    test_support::NumberStream<double> m_stream;
    bool m_withSpecials;
};

using Operation = std::function<std::string(Pair& a, Pair& b, Choices&)>;

#define CHECK_SAME(expected, actual)                                                                                   \
    do {                                                                                                               \
        EXPECT_TRUE(SameNumbers(expected, ToNumbers(actual)));                                                         \
    } while (false)

std::vector<Operation> Edits()
{
    return {
        [](Pair& a, Pair&, Choices&) {
            a.transform.Reset();
            a.model.Reset();
            return "Reset";
        },
        [](Pair& a, Pair& b, Choices&) {
            a.transform = b.transform;
            a.model = b.model;
            return "operator=";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const Numbers t = choose.Displacement();
            a.transform.SetTranslate(ToPoint(t));
            a.model.SetTranslate(t);
            return "SetTranslate";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const Numbers t = choose.Displacement();
            a.transform.SetTranslateVector(ToVector(t));
            a.model.SetTranslate(t);
            return "SetTranslateVector";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const Numbers v = choose.Displacement();
            const Numbers t = a.model.state.translation;
            a.transform.Translate(ToVector(v));
            a.model.SetTranslate({t[0] + v[0], t[1] + v[1], t[2] + v[2]});
            return "Translate";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const double s = choose.OneIn(3) ? 1e-7 : choose.Factor();
            const Numbers t = a.model.state.translation;
            a.transform.ScaleOrigin(s);
            a.model.SetTranslate({t[0] * s, t[1] * s, t[2] * s});
            return "ScaleOrigin";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const auto from = static_cast<CADUNITS>(choose.Integer(0, 9));
            const auto to = choose.OneIn(4) ? CADUNITS_NONE : static_cast<CADUNITS>(choose.Integer(0, 9));
            const Numbers t = a.model.state.translation;
            a.transform.ConvertUnits(from, to);
            if (from != to && to != CADUNITS_NONE) {
                const double f = GetUnitsPerMM(to) / GetUnitsPerMM(from);
                a.model.SetTranslate({t[0] * f, t[1] * f, t[2] * f});
            }
            return "ConvertUnits";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const int axis = choose.Integer(0, 2);
            const Numbers v = choose.Direction(axis);
            switch (choose.OneIn(2) ? 3 : axis) {
            case 0:
                a.transform.setAxisX(ToVector(v));
                break;
            case 1:
                a.transform.setAxisY(ToVector(v));
                break;
            case 2:
                a.transform.setAxisZ(ToVector(v));
                break;
            default:
                a.transform.SetAxis(ToVector(v), axis);
            }
            a.model.SetAxis(static_cast<std::size_t>(axis), v);
            return "SetAxis";
        },
        [](Pair& a, Pair& b, Choices& choose) {
            const int first = choose.Integer(0, 2);
            const CCadTransform& source = choose.OneIn(2) ? a.transform : b.transform;
            const Model& model = &source == &a.transform ? a.model : b.model;
            const auto axes = model.state.axes;
            a.transform.setAxesXYZ(source.GetAxis(static_cast<ERotateAxis>(first)),
                                   source.GetAxis(static_cast<ERotateAxis>((first + 1) % 3)),
                                   source.GetAxis(static_cast<ERotateAxis>((first + 2) % 3)));
            for (std::size_t i = 0; i < 3; ++i) {
                a.model.SetAxis(i, axes[(static_cast<std::size_t>(first) + i) % 3]);
            }
            return "setAxesXYZ";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const Numbers s = choose.Factors();
            a.transform.SetScale(ToVector(s));
            a.model.SetScale(s);
            return "SetScale(vector)";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const double s = choose.Factor();
            a.transform.SetScale(s);
            a.model.SetScale({s, s, s});
            return "SetScale";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const double s = choose.Factor();
            a.transform.Scale(s);
            a.model.Scale({s, s, s});
            return "Scale";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const Numbers s = choose.Factors();
            a.transform.Scale(ToVector(s));
            a.model.Scale(s);
            return "Scale(vector)";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const int plane = choose.Integer(-1, 3);
            a.transform.Mirror(static_cast<ECadPlane>(plane));
            if (plane >= 0 && plane <= 2) {
                const auto i = static_cast<std::size_t>(plane);
                const Numbers axis = a.model.state.axes[i];
                a.model.SetAxis(i, {-axis[0], -axis[1], -axis[2]});
            }
            return "Mirror";
        },
        [](Pair& a, Pair&, Choices&) {
            a.transform.UndetermineFlags();
            a.model.Clear(kValid);
            return "UndetermineFlags";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const Numbers z = choose.Direction(choose.Integer(0, 2));
            const Numbers origin = choose.Displacement();
            a.transform.newmat(ToVector(z), ToPoint(origin));
            a.model.FrameFromZ(z, origin);
            return "newmat(z)";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const Numbers z = choose.Direction(choose.Integer(0, 2));
            const Numbers x = choose.Direction(choose.Integer(0, 2));
            const Numbers origin = choose.Displacement();
            a.transform.newmat(ToVector(z), ToVector(x), ToPoint(origin));
            a.model.FrameFromZAndX(z, x, origin);
            return "newmat(z, x)";
        },
        [](Pair& a, Pair&, Choices&) {
            a.transform.MakeOrthoNormal();
            a.model.MakeOrthoNormal();
            return "MakeOrthoNormal";
        },
        [](Pair& a, Pair&, Choices&) {
            a.transform.ForceOrthoNormal();
            a.model.ForceOrthoNormal();
            return "ForceOrthoNormal";
        },
        [](Pair& a, Pair&, Choices& choose) {
            double numbers[12];
            for (int i = 0; i < 12; ++i) {
                numbers[i] = choose.OneIn(4) ? choose.Any() : choose.Near(i == 3 || i == 7 || i == 11);
            }
            a.transform.SetFromArray(numbers);
            a.model.SetFromArray(numbers);
            return "SetFromArray";
        },
        [](Pair& a, Pair& b, Choices&) {
            CCadTransform product = a.transform * b.transform;
            EXPECT_EQ(Model::Product(a.model, b.model).state, StateOf(product));
            return "operator*";
        },
        [](Pair& a, Pair&, Choices&) {
            a.transform *= a.transform;
            a.model = Model::Product(a.model, a.model);
            return "operator*= itself";
        },
        [](Pair& a, Pair& b, Choices&) {
            a.transform *= b.transform;
            a.model = Model::Product(a.model, b.model);
            return "operator*=";
        },
        [](Pair& a, Pair& b, Choices&) {
            a.transform.TransformFrom(b.transform);
            a.model.MultiplyFromLeft(b.model);
            return "TransformFrom";
        },
        [](Pair& a, Pair& b, Choices&) {
            a.transform.TransformTo(b.transform);
            Model inverse = b.model.Inverse();
            a.model.MultiplyFromLeft(inverse);
            return "TransformTo";
        },
        [](Pair& a, Pair&, Choices&) {
            CCadTransform inverse = a.transform.GetInverse();
            EXPECT_EQ(a.model.Inverse().state, StateOf(inverse));
            return "GetInverse";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const double degrees = choose.Degrees();
            const int axis = choose.Integer(-1, 3);
            a.transform.RotAboutAxis(degrees, axis);
            a.model.RotateAbout(degrees, {axis == 0 ? 1. : 0., axis == 1 ? 1. : 0., axis != 0 && axis != 1 ? 1. : 0.},
                                {0, 0, 0});
            return "RotAboutAxis";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const double degrees = choose.Degrees();
            const Numbers direction = choose.Direction(choose.Integer(0, 2));
            const Numbers pivot = choose.OneIn(3) ? Numbers{0, -0., 0} : choose.Displacement();
            a.transform.RotateAboutVector(degrees, ToVector(direction), ToPoint(pivot));
            a.model.RotateAbout(degrees, direction, pivot);
            return "RotateAboutVector";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const double degrees = choose.Degrees();
            EXPECT_TRUE(a.transform.rotmat(degrees));
            const double radians = degrees * 0.017453292519943295;
            EXPECT_TRUE(a.model.TurnXTowards({std::cos(radians), std::sin(radians), 0}, false));
            return "rotmat(angle)";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const Numbers v = choose.OneIn(3) ? Numbers{0, -0., 1} : choose.Direction(choose.Integer(0, 2));
            const bool isWorld = choose.OneIn(2);
            EXPECT_EQ(a.transform.rotmat(ToVector(v), isWorld), a.model.TurnXTowards(v, isWorld));
            return "rotmat(vector)";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const double degrees = choose.Degrees();
            const int axis = choose.Integer(0, 5);
            EXPECT_FALSE(a.transform.rotmat(degrees, axis));
            a.model.TurnInPlane(degrees, static_cast<std::size_t>(axis));
            return "rotmat(angle, axis)";
        },
    };
}

std::vector<Operation> Queries()
{
    return {
        [](Pair& a, Pair&, Choices&) {
            const CCadTransform& t = a.transform;
            EXPECT_EQ(t.IsEmptyTransform(), a.model.IsEmpty());
            return "IsEmptyTransform";
        },
        [](Pair& a, Pair&, Choices&) {
            const CCadTransform& t = a.transform;
            a.model.Ensure();
            EXPECT_EQ(t.IsIdentityRotation(), a.model.Has(kIdentityRotation));
            EXPECT_EQ(t.IsZeroTranslate(), a.model.Has(kZeroTranslate));
            EXPECT_EQ(t.IsUnityScale(), a.model.Has(kUnityScale));
            return "IsIdentityRotation";
        },
        [](Pair& a, Pair&, Choices&) {
            const CCadTransform& t = a.transform;
            EXPECT_EQ(t.IsOrthoNormal(), a.model.IsOrthoNormal());
            return "IsOrthoNormal";
        },
        [](Pair& a, Pair& b, Choices&) {
            const CCadTransform& t = a.transform;
            const auto& [x, y, z] = a.model.state.axes;
            const double determinant = Dot(x, Cross(y, z));
            EXPECT_TRUE(SameNumber(t.GetDeterminant(), determinant));
            EXPECT_EQ(t.IsMirrorTransform(), determinant < 0);
            EXPECT_EQ(t.IsUniformScale(), a.model.IsUniform());
            EXPECT_EQ(t == b.transform, !(t != b.transform));
            double numbers[12];
            t.CopyToArray(numbers);
            const std::array<double, 12> expected = a.model.CopyToArray();
            for (std::size_t i = 0; i < 12; ++i) {
                EXPECT_TRUE(SameNumber(expected[i], numbers[i]));
            }
            return "queries that determine nothing";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const Numbers in = {choose.Any(), choose.Any(), choose.Any()};
            CadPoint3d<double> out = ToPoint(in);
            const CCadTransform& t = a.transform;
            t.aaback(out, out);
            CHECK_SAME(a.model.PointToWorld(in), out);
            return "aaback(point)";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const Numbers in = {choose.Any(), choose.Any(), choose.Any()};
            CadPoint3d<double> out = ToPoint(in);
            const CCadTransform& t = a.transform;
            t.aaforw(out, out);
            CHECK_SAME(a.model.PointToLocal(in), out);
            return "aaforw(point)";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const Numbers in = {choose.Any(), choose.Any(), choose.Any()};
            CadVector3d<double> out = ToVector(in);
            const CCadTransform& t = a.transform;
            t.aaback(out, out);
            CHECK_SAME(a.model.DirectionToWorld(in), out);
            return "aaback(vector)";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const Numbers in = {choose.Any(), choose.Any(), choose.Any()};
            CadVector3d<double> out = ToVector(in);
            const CCadTransform& t = a.transform;
            t.aaforw(out, out);
            CHECK_SAME(a.model.DirectionToLocal(in), out);
            return "aaforw(vector)";
        },
        [](Pair& a, Pair&, Choices& choose) {
            const double in = choose.Any();
            double back = 0.25;
            double forward = 0.25;
            const CCadTransform& t = a.transform;
            const bool isMapped = a.model.MapsLengths();
            EXPECT_EQ(t.aaback(in, back), isMapped);
            EXPECT_EQ(t.aaforw(in, forward), isMapped);
            const bool isUnity = a.model.Has(kUnityScale);
            const double scale = a.model.state.scale[0];
            EXPECT_TRUE(SameNumber(!isMapped ? 0.25 : isUnity ? in : in * scale, back));
            EXPECT_TRUE(SameNumber(!isMapped ? 0.25 : isUnity ? in : in / scale, forward));
            return "aaback(length)";
        },
        [](Pair& a, Pair&, Choices&) {
            const bool isEmpty = a.model.IsEmpty();
            CadPoint3d<double> point(1, 2, 3);
            const CCadTransform& t = a.transform;
            t.aaback(&point, 0);
            CHECK_SAME((Numbers{1, 2, 3}), point);
            t.aaforw(&point, 1);
            CHECK_SAME(isEmpty ? (Numbers{1, 2, 3}) : a.model.PointToLocal({1, 2, 3}), point);
            return "aaforw(array)";
        },
        [](Pair& a, Pair&, Choices& choose) {
            a.model.Ensure();
            const double angle = choose.Any();
            const double radius = choose.Any();
            const Numbers local = {radius * std::cos(angle), radius * std::sin(angle), 0};
            const CCadTransform& t = a.transform;
            CHECK_SAME(a.model.PointToWorld(local), t.PointFromAngleRad(angle, radius));
            CHECK_SAME(a.model.DirectionToWorld(local), t.VectorFromAngleRad(angle, radius));
            return "PointFromAngleRad";
        },
    };
}

void RunSequence(unsigned seed, int steps, bool withSpecials)
{
    SCOPED_TRACE("seed " + std::to_string(seed));
    Choices choose(seed, withSpecials);
    const std::vector<Operation> edits = Edits();
    const std::vector<Operation> queries = Queries();
    const Model identity;
    std::vector<Pair> pairs(3, Pair(identity.state));
    for (int step = 0; step < steps; ++step) {
        const std::vector<Operation>& operations = choose.OneIn(3) ? queries : edits;
        const auto index = static_cast<std::size_t>(choose.Integer(0, static_cast<int>(operations.size()) - 1));
        Pair& a = pairs[static_cast<std::size_t>(choose.Integer(0, 2))];
        Pair& b = pairs[static_cast<std::size_t>(choose.Integer(0, 2))];
        const State before = a.model.state;
        const State other = b.model.state;
        const std::string name = operations[index](a, b, choose);
        EXPECT_EQ(a.model.state, StateOf(a.transform));
        EXPECT_EQ(b.model.state, StateOf(b.transform));
        if (::testing::Test::HasFailure()) {
            FAIL() << "step " << step << ", " << name << ", before: " << before << "\nother: " << other;
        }
        // Products run off to infinity in the end; start again before everything is NaN.
        if (choose.OneIn(12)) {
            a.transform.Reset();
            a.model.Reset();
        }
    }
}

TEST(TransformSequences, KeepTheStateOfThePlainModel)
{
    for (unsigned seed = 1; seed <= 100; ++seed) {
        ASSERT_NO_FATAL_FAILURE(RunSequence(seed, 500, false));
    }
}

TEST(TransformSequences, KeepTheStateOfThePlainModelWithSpecialValues)
{
    for (unsigned seed = 1001; seed <= 1100; ++seed) {
        ASSERT_NO_FATAL_FAILURE(RunSequence(seed, 500, true));
    }
}

} // namespace
