// Holds the figures of docs/choosing.md against the code: each row has a measurement on made data with a fixed seed. The
// figure on the page is an upper bound that the measurement comes near to.

#include "docs/page.h"

#include <cadgeom/cadgeom.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

using Point2 = CadPoint2d<double>;
using Point3 = CadPoint3d<double>;
using Vector2 = CadVector2d<double>;
using Vector3 = CadVector3d<double>;

/// What a measurement gives where the fit fails.
constexpr double kFails = std::numeric_limits<double>::infinity();
/// Figures up to this are a few units in the last place, and a measurement may even be 0.
constexpr double kRounding = 1e-14;
constexpr double kFullTurn = 6.283185307179586;

/// Numbers from 0 to 1; the standard distributions differ between libraries.
class Random {
public:
    double Next() { return static_cast<double>(m_engine()) / 4294967296.0; }

private:
    std::mt19937 m_engine{20240229};
};

struct Circle {
    Point2 center;
    double radius;
};

std::vector<Point2> PointsOn(const Circle& circle)
{
    std::vector<Point2> points;
    for (int i = 0; i < 24; ++i) {
        const double angle = kFullTurn * i / 24;
        points.emplace_back(circle.center.x() + circle.radius * std::cos(angle),
                            circle.center.y() + circle.radius * std::sin(angle));
    }
    return points;
}

/// The larger of the errors of centre and radius, in radii.
double CircleError(const Circle& circle)
{
    const std::vector<Point2> points = PointsOn(circle);
    Point2 center;
    double radius;
    if (!QuadraticCircleFit2(points.data(), points.size(), center, radius, nullptr)) {
        return kFails;
    }
    return std::max(center.distance(circle.center), std::fabs(radius - circle.radius)) / circle.radius;
}

/// As CircleError, with the points' mean subtracted and divided by their extent.
double ScaledCircleError(const Circle& circle)
{
    std::vector<Point2> points = PointsOn(circle);
    const Point2 mean = ComputeMeanPoint<double, 2>(points.data(), points.size());
    for (Point2& point : points) {
        point -= mean - Point2::zero();
        point /= circle.radius;
    }
    Point2 center;
    double radius;
    if (!QuadraticCircleFit2(points.data(), points.size(), center, radius, nullptr)) {
        return kFails;
    }
    const Point2 placed = mean + (center - Point2::zero()) * circle.radius;
    return std::max(placed.distance(circle.center) / circle.radius, std::fabs(radius - 1));
}

Vector3 RandomDirection(Random& random)
{
    Vector3 direction(2 * random.Next() - 1, 2 * random.Next() - 1, 2 * random.Next() - 1);
    direction.normalize();
    return direction;
}

/// Sine of the angle between the lines along unit vectors.
double Deviation(const Vector3& a, const Vector3& b)
{
    return std::min(a.cross(b).length(), 1.0);
}

/// The largest error of the normal among planes of random orientation through 30 points spread over +-extent.
double PlaneError(double extent, double distance)
{
    Random random;
    double largest = 0;
    for (int trial = 0; trial < 500; ++trial) {
        const Vector3 normal = RandomDirection(random);
        const CCadTransform frame(normal, Point3(distance, distance, distance));
        std::vector<Point3> points;
        for (int i = 0; i < 30; ++i) {
            Point3 point;
            frame.aaback(Point3(extent * (2 * random.Next() - 1), extent * (2 * random.Next() - 1), 0), point);
            points.push_back(point);
        }
        Point3 origin;
        Vector3 found;
        double error;
        EXPECT_TRUE(PlaneFit3(points.data(), points.size(), origin, found, error));
        largest = std::max(largest, Deviation(normal, found));
    }
    return largest;
}

/// The largest error of the direction among lines of random direction through 30 points spread over +-extent.
double LineError(double extent)
{
    Random random;
    double largest = 0;
    for (int trial = 0; trial < 500; ++trial) {
        const Vector3 direction = RandomDirection(random);
        std::vector<Point3> points;
        for (int i = 0; i < 30; ++i) {
            points.emplace_back(Point3(0, 0, 0) + direction * (extent * (2 * random.Next() - 1)));
        }
        Point3 origin;
        Vector3 found;
        double error;
        EXPECT_TRUE(LineFit3(points.data(), points.size(), origin, found, error));
        largest = std::max(largest, Deviation(direction, found));
    }
    return largest;
}

double PlanarLineError(double extent)
{
    Random random;
    double largest = 0;
    for (int trial = 0; trial < 500; ++trial) {
        const double angle = kFullTurn * random.Next();
        const Vector2 direction(std::cos(angle), std::sin(angle));
        std::vector<Point2> points;
        for (int i = 0; i < 30; ++i) {
            points.emplace_back(Point2(0, 0) + direction * (extent * (2 * random.Next() - 1)));
        }
        Point2 origin;
        Vector2 found;
        double error;
        EXPECT_TRUE(LineFit2(points.data(), points.size(), origin, found, error));
        largest = std::max(largest, std::fabs(direction.crossZ(found)));
    }
    return largest;
}

/// The median error of centre and radii, in lengths of `a`, of ellipses with b = 0.4 a through 40 points at random
/// parameters, with their centre at a distance of so many `a` from the origin.
double EllipseError(double a, double distance)
{
    Random random;
    std::vector<double> errors;
    for (int trial = 0; trial < 101; ++trial) {
        const double bearing = kFullTurn * random.Next();
        const double turn = kFullTurn * random.Next();
        const Point2 center(distance * a * std::cos(bearing), distance * a * std::sin(bearing));
        const Vector2 major(std::cos(turn), std::sin(turn));
        std::vector<Point2> points;
        for (int i = 0; i < 40; ++i) {
            const double parameter = kFullTurn * random.Next();
            points.emplace_back(center + major * (a * std::cos(parameter)) +
                                major.orthogonalVector() * (0.4 * a * std::sin(parameter)));
        }
        Point2 found;
        Vector2 axis;
        double foundA, foundB;
        const bool isFound = EllipseFit2(points.data(), points.size(), found, axis, foundA, foundB, nullptr);
        errors.push_back(
            isFound ? std::max({found.distance(center), std::fabs(foundA - a), std::fabs(foundB - 0.4 * a)}) / a
                    : kFails);
    }
    std::sort(errors.begin(), errors.end());
    return errors[errors.size() / 2];
}

/// Coefficients of c (x - r0) (x - r1) ..., lowest power first.
std::vector<double> Expand(const std::vector<double>& roots)
{
    std::vector<double> coefficients = {1};
    for (const double root : roots) {
        coefficients.insert(coefficients.begin(), 0);
        for (std::size_t i = 0; i + 1 < coefficients.size(); ++i) {
            coefficients[i] -= root * coefficients[i + 1];
        }
    }
    return coefficients;
}

/// The largest distance of a found root from the true one, in units of the largest true one.
double RootError(const PolynomialRoots& found, const std::vector<double>& roots)
{
    if (found.GetCount() != static_cast<int>(roots.size())) {
        return kFails;
    }
    std::vector<double> sorted(found.GetRoots(), found.GetRoots() + found.GetCount());
    std::sort(sorted.begin(), sorted.end());
    double largest = 0;
    for (std::size_t i = 0; i < roots.size(); ++i) {
        largest = std::max(largest, std::fabs(sorted[i] - roots[i]));
    }
    return largest / std::fabs(roots.back());
}

enum class Finder {
    eClosedForm,
    eCompanion,
    eBisection
};

double CubicError(Finder finder, const std::vector<double>& roots)
{
    const std::vector<double> c = Expand(roots);
    PolynomialRoots found(1e-9);
    switch (finder) {
    case Finder::eClosedForm:
        found.FindA(c[0], c[1], c[2], c[3]);
        break;
    case Finder::eCompanion:
        found.FindE(c[0], c[1], c[2], c[3], true);
        break;
    case Finder::eBisection:
        found.FindB(Polynomial1(3, c.data()), 15);
        break;
    }
    return RootError(found, roots);
}

double WilkinsonError(int degree)
{
    std::vector<double> roots;
    for (int i = 1; i <= degree; ++i) {
        roots.push_back(i);
    }
    const std::vector<double> coefficients = Expand(roots);
    PolynomialRoots found(1e-9);
    found.FindB(Polynomial1(degree, coefficients.data()), 15);
    return RootError(found, roots);
}

using Measurements = std::map<std::string, std::function<double()>>;

Measurements MakeMeasurements()
{
    const std::vector<double> wide = {1, 2, 4};
    const std::vector<double> twice = {1, 1, 3};
    const std::vector<double> tiny = {1e-4, 2e-4, 4e-4};
    return {
        {"`QuadraticCircleFit2`: R = 10 around the origin",
         [] {
             return CircleError({{0, 0}, 10});
         }},
        {"`QuadraticCircleFit2`: R = 2895 around the origin",
         [] {
             return CircleError({{0, 0}, 2895});
         }},
        {"`QuadraticCircleFit2`: R = 2900 around the origin",
         [] {
             return CircleError({{0, 0}, 2900});
         }},
        {"`QuadraticCircleFit2`: R = 1 at 10",
         [] {
             return CircleError({{10, 0}, 1});
         }},
        {"`QuadraticCircleFit2`: R = 1 at 100",
         [] {
             return CircleError({{100, 0}, 1});
         }},
        {"`QuadraticCircleFit2`: R = 1 at 1000",
         [] {
             return CircleError({{1000, 0}, 1});
         }},
        {"`QuadraticCircleFit2`: R = 1 at 2900",
         [] {
             return CircleError({{2900, 0}, 1});
         }},
        {"`QuadraticCircleFit2`: R = 1 at 1e6, centred and scaled",
         [] {
             return ScaledCircleError({{1e6, 0}, 1});
         }},
        {"`QuadraticCircleFit2`: R = 1e6 at 1e8, centred and scaled",
         [] {
             return ScaledCircleError({{1e8, 0}, 1e6});
         }},
        {"`LineFit2`: points over +-1e-9", [] { return PlanarLineError(1e-9); }},
        {"`LineFit3`: points over +-1", [] { return LineError(1); }},
        {"`LineFit3`: points over +-0.0001", [] { return LineError(0.0001); }},
        {"`PlaneFit3`: points over +-1", [] { return PlaneError(1, 0); }},
        {"`PlaneFit3`: points over +-1 at 1e6", [] { return PlaneError(1, 1e6); }},
        {"`PlaneFit3`: points over +-0.0001", [] { return PlaneError(0.0001, 0); }},
        {"`EllipseFit2`: a = 1 around the origin", [] { return EllipseError(1, 0); }},
        {"`EllipseFit2`: a = 1 at 2", [] { return EllipseError(1, 2); }},
        {"`EllipseFit2`: a = 1 at 10", [] { return EllipseError(1, 10); }},
        {"`EllipseFit2`: a = 1 at 30", [] { return EllipseError(1, 30); }},
        {"`EllipseFit2`: a = 0.1 around the origin", [] { return EllipseError(0.1, 0); }},
        {"`FindA`: roots 1, 2, 4", [=] { return CubicError(Finder::eClosedForm, wide); }},
        {"`FindA`: roots 1, 1, 3", [=] { return CubicError(Finder::eClosedForm, twice); }},
        {"`FindA`: roots 1e-4, 2e-4, 4e-4", [=] { return CubicError(Finder::eClosedForm, tiny); }},
        {"`FindE`: roots 1, 2, 4", [=] { return CubicError(Finder::eCompanion, wide); }},
        {"`FindE`: roots 1, 1, 3", [=] { return CubicError(Finder::eCompanion, twice); }},
        {"`FindE`: roots 1e-4, 2e-4, 4e-4", [=] { return CubicError(Finder::eCompanion, tiny); }},
        {"`FindB`: roots 1, 2, 4", [=] { return CubicError(Finder::eBisection, wide); }},
        {"`FindB`: roots 1, 1, 3", [=] { return CubicError(Finder::eBisection, twice); }},
        {"`FindB`: roots 1e-4, 2e-4, 4e-4", [=] { return CubicError(Finder::eBisection, tiny); }},
        {"`FindB`: roots 1, 2, ... 10", [] { return WilkinsonError(10); }},
    };
}

TEST(ChoosingPage, StatesTheMeasuredAccuracyOfFitsAndRootFinders)
{
    Measurements measurements = MakeMeasurements();
    const std::vector<docs::Row> rows = docs::ReadTables("choosing.md", "Function");
    ASSERT_FALSE(rows.empty());
    for (const docs::Row& row : rows) {
        ASSERT_EQ(row.size(), 3U);
        const std::string name = row[0] + ": " + row[1];
        SCOPED_TRACE(name);
        const auto measurement = measurements.find(name);
        if (measurement == measurements.end()) {
            ADD_FAILURE() << "this row has no measurement";
            continue;
        }
        const double measured = measurement->second();
        if (row[2] == "fails") {
            EXPECT_EQ(measured, kFails);
        } else {
            const double figure = docs::ParseValue(row[2]);
            EXPECT_LE(measured, figure);
            if (figure > kRounding) {
                EXPECT_GE(measured, figure / 100) << "the page is too pessimistic";
            }
        }
        measurements.erase(measurement);
    }
    for (const auto& [name, measurement] : measurements) {
        ADD_FAILURE() << "the page has no row, or two, for: " << name;
    }
}

} // namespace
