// The fits beside a plain transcription of their steps: scalar sums, mapped points stored in an array, matrices
// multiplied out, every repetition carried out. The results have to be the same bits.

#include "fit/fit_test_support.h"

#include <cadgeom/core/point_sequence.h>
#include <cadgeom/fit/circle_fit.h>
#include <cadgeom/fit/ellipse_fit.h>
#include <cadgeom/fit/line_fit.h>
#include <cadgeom/fit/oriented_box_fit.h>
#include <cadgeom/fit/plane_fit.h>
#include <cadgeom/fit/point_fit.h>
#include <cadgeom/linalg/dynamic_matrix.h>
#include <cadgeom/transform/transform.h>

#include "fit/general_eigen_solver3.h"
#include "fit/symmetric_eigen_solver.h"

#include <algorithm>
#include <limits>

namespace {

using namespace fit_test;
using cadgeom::detail::GeneralEigenSolver3;
using cadgeom::detail::SymmetricEigenSolver;

using Points2 = std::vector<CadPoint2d<double>>;
using Points3 = std::vector<CadPoint3d<double>>;

/// Mean products of the offsets from the mean.
template <class Point>
std::vector<std::vector<double>> PlainMoments(const std::vector<Point>& points, const Point& mean, int n)
{
    std::vector<std::vector<double>> sums(static_cast<std::size_t>(n),
                                          std::vector<double>(static_cast<std::size_t>(n)));
    for (const Point& p : points) {
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j < n; ++j) {
                sums[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)] += (p[i] - mean[i]) * (p[j] - mean[j]);
            }
        }
    }
    const double scale = 1.0 / static_cast<double>(points.size());
    for (std::vector<double>& row : sums) {
        for (double& value : row) {
            value *= scale;
        }
    }
    return sums;
}

void PlainPlane(const Points3& points, CadPoint3d<double>& origin, CadVector3d<double>& normal, double& error)
{
    origin = ComputeMeanPoint<double, 3>(points.data(), points.size());
    const auto s = PlainMoments(points, origin, 3);
    SymmetricEigenSolver<3> solver;
    solver.LoadSymmetric(s[0][0], s[0][1], s[0][2], s[1][1], s[1][2], s[2][2]);
    solver.Tridiagonalize3();
    solver.QLAlgorithm();
    solver.DecreasingSort();
    solver.GuaranteeRotation();
    normal.set(solver.matrix[0][2], solver.matrix[1][2], solver.matrix[2][2]);
    error = std::sqrt(std::fabs(solver.diagonal[2]));
}

void PlainLine(const Points3& points, CadPoint3d<double>& origin, CadVector3d<double>& direction, double& error)
{
    origin = ComputeMeanPoint<double, 3>(points.data(), points.size());
    const auto s = PlainMoments(points, origin, 3);
    SymmetricEigenSolver<3> solver;
    solver.LoadSymmetric(s[1][1] + s[2][2], -s[0][1], -s[0][2], s[0][0] + s[2][2], -s[1][2], s[0][0] + s[1][1]);
    solver.Tridiagonalize3();
    solver.QLAlgorithm();
    solver.DecreasingSort();
    solver.GuaranteeRotation();
    direction.set(solver.matrix[0][2], solver.matrix[1][2], solver.matrix[2][2]);
    error = std::sqrt(std::fabs(solver.diagonal[2]));
}

void PlainSegment(const Points3& points, CadPoint3d<double>& start, CadPoint3d<double>& end, double& error)
{
    CadPoint3d<double> origin;
    CadVector3d<double> direction;
    PlainLine(points, origin, direction, error);
    if ((points.back() - points.front()).dot(direction) < 0.0) {
        direction = -direction;
    }
    double tmin = 3.4028234663852886e38;
    double tmax = -3.4028234663852886e38;
    for (const CadPoint3d<double>& p : points) {
        const double squared = direction.dot(direction);
        const double t = squared <= 1e-12 ? 0.0 : direction.dot(p - origin) / squared;
        if (t < tmin) {
            tmin = t;
        }
        if (t > tmax) {
            tmax = t;
        }
    }
    start = origin + direction * tmin;
    end = origin + direction * tmax;
}

void PlainLine(const Points2& points, CadPoint2d<double>& origin, CadVector2d<double>& direction, double& error)
{
    origin = ComputeMeanPoint<double, 2>(points.data(), points.size());
    const auto s = PlainMoments(points, origin, 2);
    SymmetricEigenSolver<2> solver;
    solver.LoadTridiagonal(s[1][1], -s[0][1], s[0][0]);
    solver.QLAlgorithm();
    solver.DecreasingSort();
    solver.GuaranteeRotation();
    direction.set(solver.matrix[0][1], solver.matrix[1][1]);
    error = std::sqrt(std::fabs(solver.diagonal[1]));
}

bool PlainAlgebraicCircle(const Points2& points, CadPoint2d<double>& center, double& radius, double* error)
{
    SymmetricEigenSolver<4> solver;
    auto& m = solver.matrix;
    for (auto& row : m) {
        for (double& value : row) {
            value = 0.0;
        }
    }
    for (const CadPoint2d<double>& p : points) {
        const double x = p.x();
        const double y = p.y();
        const double r = x * x + y * y;
        m[0][1] += x;
        m[0][2] += y;
        m[0][3] += r;
        m[1][1] += x * x;
        m[1][2] += x * y;
        m[1][3] += r * x;
        m[2][2] += y * y;
        m[2][3] += r * y;
        m[3][3] += r * r;
    }
    m[0][0] = static_cast<double>(points.size());
    const double scale = 1.0 / static_cast<double>(points.size());
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < i; ++j) {
            m[i][j] = m[j][i];
        }
    }
    for (auto& row : m) {
        for (double& value : row) {
            value *= scale;
        }
    }
    solver.TridiagonalizeN();
    solver.QLAlgorithm();
    solver.IncreasingSort();
    solver.GuaranteeRotation();
    if (std::fabs(m[3][0]) <= kEpsilon) {
        return false;
    }
    const double inv = 1.0 / m[3][0];
    center.set(-0.5 * m[1][0] * inv, -0.5 * m[2][0] * inv);
    radius = std::sqrt(std::fabs(center.x() * center.x() + center.y() * center.y() - m[0][0] * inv));
    if (error != nullptr) {
        double sum = 0.0;
        for (const CadPoint2d<double>& p : points) {
            const double residual = p.distance(center) - radius;
            sum += residual * residual;
        }
        *error = std::sqrt(sum / static_cast<double>(points.size()));
    }
    return true;
}

bool PlainCircle(const Points2& points, CadPoint2d<double>& center, double& radius, double& error, int maxIterations)
{
    const CadPoint2d<double> mean = ComputeMeanPoint<double, 2>(points.data(), points.size());
    if (!PlainAlgebraicCircle(points, center, radius, nullptr)) {
        return false;
    }
    const double count = static_cast<double>(points.size());
    for (int i = 0; i < maxIterations; ++i) {
        const CadPoint2d<double> old = center;
        double residuals = 0.0;
        double lengths = 0.0;
        CadVector2d<double> directions(0.0, 0.0);
        for (const CadPoint2d<double>& p : points) {
            const CadVector2d<double> d = p - old;
            const double length = d.length();
            residuals += (length - radius) * (length - radius);
            if (length > kEpsilon) {
                lengths += length;
                directions -= d / length;
            }
        }
        error = std::sqrt(residuals / count);
        radius = lengths / count;
        directions /= count;
        center = mean + directions * radius;
        if (std::fabs(center.x() - old.x()) <= kEpsilon && std::fabs(center.y() - old.y()) <= kEpsilon) {
            break;
        }
    }
    return true;
}

bool PlainEllipse(const Points2& points, CadPoint2d<double>& center, CadVector2d<double>& axis, double& a, double& b,
                  double* error)
{
    const int n = static_cast<int>(points.size());
    CMatrix d1(n, 3);
    CMatrix d2(n, 3);
    for (int i = 0; i < n; ++i) {
        const CadPoint2d<double>& p = points[static_cast<std::size_t>(i)];
        d1(i, 0) = p.x() * p.x();
        d1(i, 1) = p.x() * p.y();
        d1(i, 2) = p.y() * p.y();
        d2(i, 0) = p.x();
        d2(i, 1) = p.y();
        d2(i, 2) = 1.0;
    }
    CMatrix s1 = d1.GetTranspose() * d1;
    CMatrix s2 = d1.GetTranspose() * d2;
    CMatrix s3 = d2.GetTranspose() * d2;
    CMatrix t = s3.GetInverse() * s2.GetTranspose();
    t.Negate();
    CMatrix m = s1 + s2 * t;
    CMatrix c1(3, 3);
    const double constraint[3][3] = {{0, 0, 2}, {0, -1, 0}, {2, 0, 0}};
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            c1(i, j) = constraint[i][j];
        }
    }
    m = c1.GetInverse() * m;
    cadgeom::detail::Matrix3 matrix;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            matrix[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)] = m(i, j);
        }
    }
    GeneralEigenSolver3 solver(matrix);
    if (!solver.Solve()) {
        return false;
    }
    CVector a1(3);
    bool isFound = false;
    for (std::size_t k = 0; k < 3 && !isFound; ++k) {
        for (int i = 0; i < 3; ++i) {
            a1[i] = solver.matrix[static_cast<std::size_t>(i)][k];
        }
        isFound = 4.0 * a1[0] * a1[2] - a1[1] * a1[1] > 0.0;
    }
    if (!isFound) {
        return false;
    }
    const CVector a2 = t * a1;
    const double ca = a1[0];
    const double h = a1[1] / 2.0;
    const double cc = a1[2];
    if (!(ca * cc - h * h > 0.0)) {
        return false;
    }
    const double den = 2.0 * (h * h - ca * cc);
    const double nx = cc * a2[0] - h * a2[1];
    const double ny = ca * a2[1] - h * a2[0];
    if (!(std::fabs(den) > kEpsilon * std::fabs(nx)) || !(std::fabs(den) > kEpsilon * std::fabs(ny))) {
        return false;
    }
    const double cx = nx / den;
    const double cy = ny / den;
    const double k = ca * (cx * cx) + 2.0 * h * cx * cy + cc * (cy * cy) - a2[2];
    if (!(std::fabs(k) > kEpsilon)) {
        return false;
    }
    const double as = ca / k;
    const double hs = h / k;
    const double cs = cc / k;
    const double disc = 4.0 * (hs * hs) + (as - cs) * (as - cs);
    if (!(disc >= 0.0)) {
        return false;
    }
    const double s = std::sqrt(disc);
    const double l1 = (as + cs + s) / 2.0;
    const double l2 = (as + cs - s) / 2.0;
    if (!(l1 >= 0.0 && l2 >= 0.0 && std::sqrt(l1) > kEpsilon && std::sqrt(l2) > kEpsilon)) {
        return false;
    }
    b = 1.0 / std::sqrt(l1);
    a = 1.0 / std::sqrt(l2);
    if (as >= cs) {
        axis.set(hs, l1 - cs);
    } else {
        axis.set(l1 - as, hs);
    }
    axis.normalize();
    center.set(cx, cy);
    if (error != nullptr) {
        double sum = 0.0;
        for (const CadPoint2d<double>& p : points) {
            const double dx = p.x() - cx;
            const double dy = p.y() - cy;
            const double u = (axis.x() * dx - axis.y() * dy) / a;
            const double v = (axis.y() * dx + axis.x() * dy) / b;
            const double length = std::sqrt(u * u + v * v);
            if (length <= kEpsilon) {
                sum += b * b;
            } else {
                const double ru = (u - u / length) * a;
                const double rv = (v - v / length) * b;
                sum += ru * ru + rv * rv;
            }
        }
        *error = std::sqrt(sum / static_cast<double>(points.size()));
    }
    return true;
}

void PlainBox(const Points2& points, CadPoint2d<double>& center, CadVector2d<double>& axis,
              CadVector2d<double>& extents)
{
    center = ComputeMeanPoint<double, 2>(points.data(), points.size());
    const auto s = PlainMoments(points, center, 2);
    SymmetricEigenSolver<2> solver;
    solver.LoadTridiagonal(s[0][0], s[0][1], s[1][1]);
    solver.QLAlgorithm();
    solver.IncreasingSort();
    solver.GuaranteeRotation();
    axis.set(solver.matrix[0][0], solver.matrix[1][0]);
    const CadVector2d<double> across(-axis.y(), axis.x());
    double lowest[2] = {};
    double highest[2] = {};
    for (std::size_t i = 0; i < points.size(); ++i) {
        const CadVector2d<double> d = points[i] - center;
        const double uv[2] = {d.dot(axis), d.dot(across)};
        for (int k = 0; k < 2; ++k) {
            if (i == 0) {
                lowest[k] = highest[k] = uv[k];
            } else if (uv[k] < lowest[k]) {
                lowest[k] = uv[k];
            } else if (uv[k] > highest[k]) {
                highest[k] = uv[k];
            }
        }
    }
    center = center + axis * (lowest[0] + highest[0]) / 2.0 + across * (lowest[1] + highest[1]) / 2.0;
    extents.set((highest[0] - lowest[0]) / 2.0, (highest[1] - lowest[1]) / 2.0);
}

/// The planar points of a plane's frame, and what takes results back.
struct PlainFrame {
    explicit PlainFrame(const Points3& points)
    {
        CadPoint3d<double> origin;
        PlainPlane(points, origin, normal, planeError);
        transform.newmat(normal, origin);
        for (const CadPoint3d<double>& p : points) {
            CadPoint3d<double> local;
            transform.aaforw(p, local);
            planar.push_back(local.get2d());
        }
    }

    CadPoint3d<double> Back(const CadPoint2d<double>& p) const
    {
        CadPoint3d<double> world;
        transform.aaback(CadPoint3d<double>(p.x(), p.y(), 0.0), world);
        return world;
    }
    CadVector3d<double> Back(const CadVector2d<double>& v) const
    {
        CadVector3d<double> world;
        transform.aaback(CadVector3d<double>(v.x(), v.y(), 0.0), world);
        return world;
    }

    CadVector3d<double> normal;
    double planeError;
    CCadTransform transform;
    Points2 planar;
};

/// Point sets of many kinds: clouds, circles, lattices, far away, tiny, huge, and with special values.
template <class Point>
std::vector<Point> RandomPoints(std::mt19937_64& random)
{
    using Scalar = std::decay_t<decltype(Point()[0])>;
    std::uniform_int_distribution<int> kinds(0, 9);
    std::uniform_int_distribution<int> counts(4, 60);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    const int kind = kinds(random);
    const int count = counts(random);
    double offset[3] = {};
    double scale[3] = {1.0, 1.0, 1.0};
    for (int i = 0; i < Point::NumAxes; ++i) {
        offset[i] = kind % 3 == 0 ? 0.0 : 30.0 * unit(random);
        scale[i] = std::exp(4.0 * unit(random));
    }
    if (kind == 4) {
        offset[0] *= 1e5;
    } else if (kind == 5) {
        scale[0] = 1e-5;
    } else if (kind == 6) {
        scale[0] = 0.5 * static_cast<double>(std::numeric_limits<Scalar>::max());
    }
    std::vector<Point> points;
    for (int i = 0; i < count; ++i) {
        Point point;
        const double t = unit(random) * kPi;
        const double circle[3] = {std::cos(t), std::sin(t), 0.1 * unit(random)};
        for (int axis = 0; axis < Point::NumAxes; ++axis) {
            double value = kind < 3 ? circle[axis] : unit(random);
            if (kind == 7) {
                value = std::round(2.0 * value);
            }
            point[axis] = static_cast<Scalar>(offset[axis] + scale[axis] * value);
        }
        points.push_back(point);
    }
    if (kind == 8) {
        constexpr double kSpecial[] = {0.0, -0.0, 1e-310, std::numeric_limits<double>::infinity(),
                                       std::numeric_limits<double>::quiet_NaN()};
        const auto pick = static_cast<std::size_t>(random() % points.size());
        points[pick][static_cast<int>(random() % Point::NumAxes)] = static_cast<Scalar>(kSpecial[random() % 5]);
    }
    return points;
}

/// Whether points lie on a line but for a few roundings of their coordinates, by a fit in extended precision.
template <class T, class Point>
bool IsRoundedLine(const std::vector<Point>& points)
{
    constexpr int kAxes = Point::NumAxes;
    Real largest = 0;
    for (const Point& point : points) {
        largest = std::max(largest, Wide(point.maxAbsoluteValue()));
    }
    const Real acrossLine = std::sqrt(std::fabs(BestAxes<kAxes>(points).eigen.values[kAxes - 2]));
    return acrossLine <= 8 * Wide(std::numeric_limits<T>::epsilon()) * largest;
}

template <class T>
class PlainSteps : public testing::Test {
protected:
    static constexpr int kRounds = 3000;
    std::mt19937_64 random{20240719};

    Points2 Draw2(std::vector<CadPoint2d<T>>& points)
    {
        points = RandomPoints<CadPoint2d<T>>(random);
        Points2 wide;
        for (const CadPoint2d<T>& p : points) {
            wide.push_back(Widened(p));
        }
        return wide;
    }
    Points3 Draw3(std::vector<CadPoint3d<T>>& points)
    {
        points = RandomPoints<CadPoint3d<T>>(random);
        Points3 wide;
        for (const CadPoint3d<T>& p : points) {
            wide.push_back(Widened(p));
        }
        return wide;
    }
};

using Scalars = testing::Types<float, double>;
TYPED_TEST_SUITE(PlainSteps, Scalars);

TYPED_TEST(PlainSteps, GiveTheSameLinesPlanesAndSegments)
{
    for (int round = 0; round < this->kRounds; ++round) {
        std::vector<CadPoint3d<TypeParam>> points;
        const Points3 wide = this->Draw3(points);
        CadPoint3d<double> origin, plainOrigin, end, plainEnd;
        CadVector3d<double> vector, plainVector;
        double error, plainError;
        ASSERT_TRUE(PlaneFit3(points.data(), points.size(), origin, vector, error));
        PlainPlane(wide, plainOrigin, plainVector, plainError);
        ASSERT_TRUE(SameBits(origin, plainOrigin) && SameBits(vector, plainVector) && SameBits(error, plainError));
        ASSERT_TRUE(LineFit3(points.data(), points.size(), origin, vector, error));
        PlainLine(wide, plainOrigin, plainVector, plainError);
        ASSERT_TRUE(SameBits(origin, plainOrigin) && SameBits(vector, plainVector) && SameBits(error, plainError));
        ASSERT_TRUE(LineSegmentFit3(points.data(), points.size(), origin, end, error));
        PlainSegment(wide, plainOrigin, plainEnd, plainError);
        ASSERT_TRUE(SameBits(origin, plainOrigin) && SameBits(end, plainEnd) && SameBits(error, plainError));
    }
}

TYPED_TEST(PlainSteps, GiveTheSamePoints)
{
    for (int round = 0; round < this->kRounds; ++round) {
        std::vector<CadPoint3d<TypeParam>> points;
        const Points3 wide = this->Draw3(points);
        CadPoint3d<double> center;
        double error;
        ASSERT_TRUE(PointFit3(points.data(), points.size(), center, &error));
        const CadPoint3d<double> mean = ComputeMeanPoint<double, 3>(wide.data(), wide.size());
        double sum = 0.0;
        for (const CadPoint3d<TypeParam>& p : points) {
            const TypeParam dx = p.x() - static_cast<TypeParam>(mean.x());
            const TypeParam dy = p.y() - static_cast<TypeParam>(mean.y());
            const TypeParam dz = p.z() - static_cast<TypeParam>(mean.z());
            sum += static_cast<double>(dx * dx + dy * dy + dz * dz);
        }
        ASSERT_TRUE(SameBits(center, mean));
        ASSERT_TRUE(SameBits(error, std::sqrt(sum / static_cast<double>(points.size()))));
    }
}

TYPED_TEST(PlainSteps, GiveTheSameLinesAndBoxesInThePlane)
{
    for (int round = 0; round < this->kRounds; ++round) {
        std::vector<CadPoint2d<TypeParam>> points;
        const Points2 wide = this->Draw2(points);
        CadPoint2d<double> origin, plainOrigin;
        CadVector2d<double> vector, plainVector, extents, plainExtents;
        double error, plainError;
        ASSERT_TRUE(LineFit2(points.data(), points.size(), origin, vector, error));
        PlainLine(wide, plainOrigin, plainVector, plainError);
        ASSERT_TRUE(SameBits(origin, plainOrigin) && SameBits(vector, plainVector) && SameBits(error, plainError));
        ASSERT_TRUE(OrientedBoxFit2(points.data(), points.size(), origin, vector, extents));
        PlainBox(wide, plainOrigin, plainVector, plainExtents);
        ASSERT_TRUE(SameBits(origin, plainOrigin) && SameBits(vector, plainVector) && SameBits(extents, plainExtents));
    }
}

TYPED_TEST(PlainSteps, GiveTheSameCirclesInThePlane)
{
    int successes = 0;
    for (int round = 0; round < this->kRounds; ++round) {
        std::vector<CadPoint2d<TypeParam>> points;
        const Points2 wide = this->Draw2(points);
        CadPoint2d<double> center(7, 7), plainCenter(7, 7);
        double radius = 7, plainRadius = 7, error = 7, plainError = 7;
        ASSERT_EQ(QuadraticCircleFit2(points.data(), points.size(), center, radius, &error),
                  PlainAlgebraicCircle(wide, plainCenter, plainRadius, &plainError));
        ASSERT_TRUE(SameBits(center, plainCenter) && SameBits(radius, plainRadius) && SameBits(error, plainError));
        const int maxIterations = static_cast<int>(this->random() % 300) - 1;
        const bool isFit = CircleFit2(points.data(), points.size(), center, radius, error, maxIterations);
        ASSERT_EQ(isFit, PlainCircle(wide, plainCenter, plainRadius, plainError, maxIterations));
        ASSERT_TRUE(SameBits(center, plainCenter) && SameBits(radius, plainRadius) && SameBits(error, plainError));
        successes += isFit ? 1 : 0;
    }
    EXPECT_GT(successes, this->kRounds / 2);
}

TYPED_TEST(PlainSteps, GiveTheSameCirclesInSpace)
{
    int successes = 0;
    for (int round = 0; round < this->kRounds; ++round) {
        std::vector<CadPoint3d<TypeParam>> points;
        const PlainFrame frame(this->Draw3(points));
        CadPoint3d<double> center;
        CadVector3d<double> normal;
        CadPoint2d<double> planar;
        double radius, plainRadius, error, plainError = 0.0;
        bool isFit = QuadraticCircleFit3(points.data(), points.size(), center, normal, radius, &error);
        ASSERT_EQ(isFit, PlainAlgebraicCircle(frame.planar, planar, plainRadius, &plainError));
        ASSERT_TRUE(SameBits(normal, frame.normal));
        if (isFit) {
            ASSERT_TRUE(SameBits(center, frame.Back(planar)) && SameBits(radius, plainRadius));
            ASSERT_TRUE(SameBits(error, std::sqrt(plainError * plainError + frame.planeError * frame.planeError)));
        }
        const int maxIterations = static_cast<int>(this->random() % 30) - 1;
        plainError = 0.0;
        isFit = CircleFit3(points.data(), points.size(), center, normal, radius, error, maxIterations);
        ASSERT_EQ(isFit, PlainCircle(frame.planar, planar, plainRadius, plainError, maxIterations));
        if (isFit) {
            ASSERT_TRUE(SameBits(center, frame.Back(planar)) && SameBits(radius, plainRadius));
            ASSERT_TRUE(SameBits(error, std::sqrt(plainError * plainError + frame.planeError * frame.planeError)));
            ++successes;
        }
    }
    EXPECT_GT(successes, this->kRounds / 2);
}

TYPED_TEST(PlainSteps, GiveTheSameEllipsesInThePlane)
{
    int successes = 0;
    for (int round = 0; round < this->kRounds; ++round) {
        std::vector<CadPoint2d<TypeParam>> points;
        const Points2 wide = this->Draw2(points);
        CadPoint2d<double> center(7, 7), plainCenter(7, 7);
        CadVector2d<double> axis(7, 7), plainAxis(7, 7);
        double a = 7, plainA = 7, b = 7, plainB = 7, error = 7, plainError = 7;
        const bool isFit = EllipseFit2(points.data(), points.size(), center, axis, a, b, &error);
        const bool isPlainFit = PlainEllipse(wide, plainCenter, plainAxis, plainA, plainB, &plainError);
        if (!isFit && isPlainFit) {
            ASSERT_TRUE(IsRoundedLine<TypeParam>(points));
            continue;
        }
        ASSERT_EQ(isFit, isPlainFit);
        ASSERT_TRUE(SameBits(center, plainCenter) && SameBits(axis, plainAxis));
        ASSERT_TRUE(SameBits(a, plainA) && SameBits(b, plainB) && SameBits(error, plainError));
        successes += isFit ? 1 : 0;
    }
    EXPECT_GT(successes, this->kRounds / 8);
}

TYPED_TEST(PlainSteps, GiveTheSameEllipsesInSpace)
{
    int successes = 0;
    for (int round = 0; round < this->kRounds; ++round) {
        std::vector<CadPoint3d<TypeParam>> points;
        const PlainFrame frame(this->Draw3(points));
        CadPoint3d<double> center;
        CadVector3d<double> normal, axis;
        CadPoint2d<double> plainCenter;
        CadVector2d<double> plainAxis;
        double a, plainA, b, plainB, error, plainError;
        const bool isFit = EllipseFit3(points.data(), points.size(), center, normal, axis, a, b, &error);
        const bool isPlainFit = PlainEllipse(frame.planar, plainCenter, plainAxis, plainA, plainB, &plainError);
        if (!isFit && isPlainFit) {
            ASSERT_TRUE(IsRoundedLine<TypeParam>(points));
            continue;
        }
        ASSERT_EQ(isFit, isPlainFit);
        ASSERT_TRUE(SameBits(normal, frame.normal));
        if (isFit) {
            ASSERT_TRUE(SameBits(center, frame.Back(plainCenter)) && SameBits(axis, frame.Back(plainAxis)));
            ASSERT_TRUE(SameBits(a, plainA) && SameBits(b, plainB));
            ASSERT_TRUE(SameBits(error, std::sqrt(plainError * plainError + frame.planeError * frame.planeError)));
            ++successes;
        }
    }
    EXPECT_GT(successes, this->kRounds / 8);
}

} // namespace
