// Fits of published point sets and of whole laser scans against their certified answers (tests/data/fits). The bounds
// are what the methods reach in double precision, rounded up; where they are wide, the docstrings say why.

#include "fit/fit_test_support.h"

#include <cadgeom/fit/circle_fit.h>
#include <cadgeom/fit/ellipse_fit.h>
#include <cadgeom/fit/line_fit.h>
#include <cadgeom/fit/plane_fit.h>
#include <cadgeom/fit/point_fit.h>

#include <fstream>
#include <map>
#include <sstream>
#include <string>

namespace {

using namespace fit_test;

struct Case {
    std::vector<std::vector<double>> points;
    std::map<std::string, std::vector<double>> answers;
};

std::vector<double> Numbers(std::istream& line)
{
    std::vector<double> numbers;
    for (std::string word; line >> word;) {
        numbers.push_back(std::stod(word));
    }
    return numbers;
}

/// The points of a file whose header, if any, ends with "DATA ascii"; read as single precision.
std::vector<std::vector<double>> ReadCloud(const std::string& name)
{
    std::ifstream file(std::string(CADGEOM_TEST_DATA_DIR) + "/fits/" + name);
    std::string line;
    const bool hasHeader = name.find(".pcd") != std::string::npos;
    while (hasHeader && line != "DATA ascii" && std::getline(file, line)) {
    }
    std::vector<std::vector<double>> points;
    while (std::getline(file, line)) {
        std::istringstream words(line);
        points.push_back(Numbers(words));
        for (double& value : points.back()) {
            value = static_cast<double>(static_cast<float>(value));
        }
    }
    return points;
}

const std::map<std::string, Case>& Cases()
{
    static const std::map<std::string, Case> cases = [] {
        std::map<std::string, Case> read;
        std::ifstream file(CADGEOM_TEST_DATA_DIR "/fits/fits.txt");
        std::string name;
        for (std::string line; std::getline(file, line);) {
            std::istringstream words(line);
            std::string key;
            words >> key;
            if (key == "case") {
                words >> name;
            } else if (key == "file") {
                std::string cloud;
                words >> cloud;
                read[name].points = ReadCloud(cloud);
            } else if (key == "point") {
                read[name].points.push_back(Numbers(words));
            } else {
                read[name].answers[key] = Numbers(words);
            }
        }
        return read;
    }();
    return cases;
}

const Case& Named(const std::string& name)
{
    return Cases().at(name);
}

std::vector<CadPoint2d<double>> Planar(const Case& data)
{
    std::vector<CadPoint2d<double>> points;
    for (const std::vector<double>& p : data.points) {
        points.emplace_back(p[0], p[1]);
    }
    return points;
}

template <class T>
std::vector<CadPoint3d<T>> Spatial(const Case& data)
{
    std::vector<CadPoint3d<T>> points;
    for (const std::vector<double>& p : data.points) {
        points.push_back(MakePoint<T>(p[0], p[1], p.size() > 2 ? p[2] : 0.0));
    }
    return points;
}

/// Expects a circle within `bound` of an answer: centre x and y, radius, error.
void ExpectCircle(const CadPoint2d<double>& center, double radius, double error, const std::vector<double>& answer,
                  double bound)
{
    EXPECT_NEAR(center.x(), answer[0], bound);
    EXPECT_NEAR(center.y(), answer[1], bound);
    EXPECT_NEAR(radius, answer[2], bound);
    EXPECT_NEAR(error, answer[3], bound);
}

void ExpectAlgebraicCircle(const std::string& name, double bound)
{
    SCOPED_TRACE(name);
    const std::vector<CadPoint2d<double>> points = Planar(Named(name));
    CadPoint2d<double> center;
    double radius;
    double error;
    ASSERT_TRUE(QuadraticCircleFit2(points.data(), points.size(), center, radius, &error));
    ExpectCircle(center, radius, error, Named(name).answers.at("algebraic"), bound);
}

void ExpectGeometricCircle(const std::string& name, double bound)
{
    SCOPED_TRACE(name);
    const std::vector<CadPoint2d<double>> points = Planar(Named(name));
    CadPoint2d<double> center;
    double radius;
    double error;
    ASSERT_TRUE(CircleFit2(points.data(), points.size(), center, radius, error, 1000));
    ExpectCircle(center, radius, error, Named(name).answers.at("geometric"), bound);
}

TEST(PublishedFits, AreAllRead)
{
    EXPECT_EQ(Cases().size(), 21u);
    EXPECT_EQ(Named("cloud-lamppost").points.size(), 1771u);
    EXPECT_EQ(Named("cloud-bunny397").points.size(), 397u);
    EXPECT_EQ(Named("cloud-lidar24").points.size(), 5434u);
    EXPECT_EQ(Named("opencv-direct-issue_1").points.size(), 40u);
}

TEST(PublishedFits, AlgebraicCirclesReachTheCertifiedOnes)
{
    ExpectAlgebraicCircle("ggs1994-circle", 1e-11);
    ExpectAlgebraicCircle("scipy-cookbook-arc-1", 1e-11);
    ExpectAlgebraicCircle("pcl-circle2d-inliers", 1e-11);
    ExpectAlgebraicCircle("lamppost-slice-z-5.0", 1e-8);
    ExpectAlgebraicCircle("lamppost-slice-z-2.0", 1e-8);
}

TEST(PublishedFits, GeometricCirclesStopNearTheCertifiedOnes)
{
    ExpectGeometricCircle("ggs1994-circle", 1e-5); // 527 slow repetitions
    ExpectGeometricCircle("scipy-cookbook-arc-1", 1e-6);
    ExpectGeometricCircle("pcl-circle2d-inliers", 1e-7);
    ExpectGeometricCircle("lamppost-slice-z-5.0", 2e-6);
    ExpectGeometricCircle("lamppost-slice-z-2.0", 1e-6);
    ExpectGeometricCircle("constructed-circle-full-lobed", 1e-7);
    ExpectGeometricCircle("constructed-circle-quarter", 2e-5);   // a short arc: the last steps are small but many
    ExpectGeometricCircle("constructed-circle-arc-10deg", 2e-2); // stops after the first repetition
    ExpectGeometricCircle("constructed-circle-tiny", 1e-9);
}

TEST(PublishedFits, CircleInSpaceReachesTheCertifiedOne)
{
    const Case& data = Named("pcl-circle3d-inliers");
    const std::vector<CadPoint3d<double>> points = Spatial<double>(data);
    const std::vector<double>& answer = data.answers.at("circle3");
    CadPoint3d<double> center;
    CadVector3d<double> normal;
    double radius;
    double error;
    ASSERT_TRUE(CircleFit3(points.data(), points.size(), center, normal, radius, error, 100));
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(center[i], answer[static_cast<std::size_t>(i)], 1e-9);
    }
    EXPECT_LE(SineBetween<3>(normal, CadVector3d<double>(answer[3], answer[4], answer[5])), 1e-15L);
    EXPECT_NEAR(radius, answer[6], 1e-12);
    EXPECT_NEAR(error, answer[7], 1e-12);
}

TEST(PublishedFits, EllipsesReachTheCertifiedOnes)
{
    // Relative to the major radius; the points are not centred.
    const std::map<std::string, double> bounds = {{"opencv-direct-issue_1", 1.2e-8},
                                                  {"opencv-direct-issue_2", 1.6e-8},
                                                  {"opencv-direct-issue_3", 1e-9},
                                                  {"ggs1994-ellipse", 2e-9},
                                                  {"skimage-shifted-1", 1e-9}};
    for (const auto& [name, relative] : bounds) {
        SCOPED_TRACE(name);
        const std::vector<CadPoint2d<double>> points = Planar(Named(name));
        const std::vector<double>& answer = Named(name).answers.at("ellipse");
        CadPoint2d<double> center;
        CadVector2d<double> axis;
        double a;
        double b;
        ASSERT_TRUE(EllipseFit2(points.data(), points.size(), center, axis, a, b, nullptr));
        const double bound = relative * answer[2];
        EXPECT_NEAR(center.x(), answer[0], bound);
        EXPECT_NEAR(center.y(), answer[1], bound);
        EXPECT_NEAR(a, answer[2], bound);
        EXPECT_NEAR(b, answer[3], bound);
        const double angle = answer[4] * kPi / 180.0;
        EXPECT_LE(SineBetween<2>(axis, CadVector2d<double>(std::cos(angle), -std::sin(angle))), 1e-7L);
    }
}

TEST(PublishedFits, CenteredAndScaledEllipsesAreAsGoodFarFromTheOrigin)
{
    const CadVector2d<double> away(1e5, -2e5);
    for (const char* name :
         {"opencv-direct-issue_1", "opencv-direct-issue_2", "opencv-direct-issue_3", "ggs1994-ellipse"}) {
        SCOPED_TRACE(name);
        std::vector<CadPoint2d<double>> points = Planar(Named(name));
        for (CadPoint2d<double>& p : points) {
            p += away;
        }
        const std::vector<double>& answer = Named(name).answers.at("ellipse");
        const BestAxes<2> axes(points);
        const CadPoint2d<double> mean(static_cast<double>(axes.mean[0]), static_cast<double>(axes.mean[1]));
        const double extent = static_cast<double>(std::sqrt(axes.eigen.values[1]));
        for (CadPoint2d<double>& p : points) {
            p = CadPoint2d<double>(0.0, 0.0) + (p - mean) / extent;
        }
        CadPoint2d<double> center;
        CadVector2d<double> axis;
        double a;
        double b;
        ASSERT_TRUE(EllipseFit2(points.data(), points.size(), center, axis, a, b, nullptr));
        const double bound = 2e-8 * answer[2];
        EXPECT_NEAR(mean.x() + extent * center.x(), answer[0] + away.x(), bound);
        EXPECT_NEAR(mean.y() + extent * center.y(), answer[1] + away.y(), bound);
        EXPECT_NEAR(extent * a, answer[2], bound);
        EXPECT_NEAR(extent * b, answer[3], bound);
    }
}

TEST(PublishedFits, PearsonsLineIsFound)
{
    const Case& data = Named("pearson-1901-line");
    const std::vector<double>& answer = data.answers.at("line2");
    const CadVector3d<double> expected(answer[2], answer[3], 0.0);

    const std::vector<CadPoint2d<double>> planar = Planar(data);
    CadPoint2d<double> origin2;
    CadVector2d<double> direction2;
    double error;
    ASSERT_TRUE(LineFit2(planar.data(), planar.size(), origin2, direction2, error));
    EXPECT_NEAR(direction2.y() / direction2.x(), -0.546, 0.0005); // as printed in 1901
    EXPECT_NEAR(origin2.y() - origin2.x() * direction2.y() / direction2.x(), 5.784, 0.0005);
    EXPECT_LE(SineBetween<2>(direction2, expected), 1e-15L);
    EXPECT_NEAR(error, answer[4], 1e-15);

    const std::vector<CadPoint3d<double>> spatial = Spatial<double>(data);
    CadPoint3d<double> origin3;
    CadVector3d<double> direction3;
    ASSERT_TRUE(LineFit3(spatial.data(), spatial.size(), origin3, direction3, error));
    EXPECT_LE(SineBetween<3>(direction3, expected), 1e-15L);
    EXPECT_NEAR(error, answer[4], 1e-14);
}

struct CloudBounds {
    const char* name;
    double position; ///< of origins, in the unit of the points
    double sine;     ///< of the angle of directions
    double relative; ///< of errors
};

template <class T>
class PublishedClouds : public testing::Test {};
using Scalars = testing::Types<float, double>;
TYPED_TEST_SUITE(PublishedClouds, Scalars);

TYPED_TEST(PublishedClouds, HaveTheCertifiedPlanesLinesAndPoints)
{
    constexpr CloudBounds kClouds[] = {{"cloud-lamppost", 1e-13, 1e-13, 1e-13},
                                       {"cloud-bunny397", 1e-15, 1e-13, 1e-13},
                                       {"cloud-lidar24", 1e-7, 1e-11, 1e-11}};
    for (const CloudBounds& bounds : kClouds) {
        SCOPED_TRACE(bounds.name);
        const Case& data = Named(bounds.name);
        const std::vector<CadPoint3d<TypeParam>> points = Spatial<TypeParam>(data);
        for (const char* kind : {"plane", "line3"}) {
            const std::vector<double>& answer = data.answers.at(kind);
            CadPoint3d<double> origin;
            CadVector3d<double> direction;
            double error;
            const auto fit = kind[0] == 'p' ? &PlaneFit3<TypeParam> : &LineFit3<TypeParam>;
            ASSERT_TRUE(fit(points.data(), points.size(), origin, direction, error));
            for (int i = 0; i < 3; ++i) {
                EXPECT_NEAR(origin[i], answer[static_cast<std::size_t>(i)], bounds.position);
            }
            EXPECT_LE(SineBetween<3>(direction, CadVector3d<double>(answer[3], answer[4], answer[5])), bounds.sine);
            EXPECT_NEAR(error, answer[6], bounds.relative * answer[6]);
        }
        CadPoint3d<double> center;
        double error;
        ASSERT_TRUE(PointFit3(points.data(), points.size(), center, &error));
        const double expected = data.answers.at("pointrms")[0];
        // Float distances are measured in float from the rounded mean.
        const double relative = std::is_same_v<TypeParam, float> ? 1e-2 : bounds.relative;
        EXPECT_NEAR(error, expected, relative * expected);
    }
}

TEST(PublishedFits, ConstructedPlanesAreFoundDownToTheThreshold)
{
    for (const char* name : {"constructed-plane-plain", "constructed-plane-tiny"}) {
        SCOPED_TRACE(name);
        const std::vector<double>& answer = Named(name).answers.at("plane");
        const CadVector3d<double> expected(answer[3], answer[4], answer[5]);
        std::vector<CadPoint3d<double>> points = Spatial<double>(Named(name));
        const bool isTiny = std::string(name) == "constructed-plane-tiny";
        CadPoint3d<double> origin;
        CadVector3d<double> normal;
        double error;
        ASSERT_TRUE(PlaneFit3(points.data(), points.size(), origin, normal, error));
        if (isTiny) {
            // Smaller than 1e-3: the mixed moment is dropped and the normal is wrong ...
            EXPECT_GE(SineBetween<3>(normal, expected), 0.1L);
            for (CadPoint3d<double>& p : points) {
                p *= 1000.0;
            }
            ASSERT_TRUE(PlaneFit3(points.data(), points.size(), origin, normal, error));
            error /= 1000.0; // ... but not in a larger unit.
        }
        EXPECT_LE(SineBetween<3>(normal, expected), 1e-14L);
        EXPECT_NEAR(error, answer[6], 1e-9 * answer[6]);
    }
}

} // namespace
