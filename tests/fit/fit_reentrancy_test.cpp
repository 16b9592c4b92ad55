// Fits of two threads at once give the same bits as one thread alone.

#include "fit/fit_test_support.h"

#include <cadgeom/fit/circle_fit.h>
#include <cadgeom/fit/ellipse_fit.h>
#include <cadgeom/fit/line_fit.h>
#include <cadgeom/fit/oriented_box_fit.h>
#include <cadgeom/fit/plane_fit.h>
#include <cadgeom/fit/point_fit.h>

#include <thread>

namespace {

using namespace fit_test;

/// The results of all fits of many random point sets, one number after the other.
template <class T>
std::vector<double> FitEverything(unsigned seed)
{
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    std::vector<double> results;
    const auto add = [&](const auto& values, int size) {
        for (int i = 0; i < size; ++i) {
            results.push_back(values[i]);
        }
    };
    for (int round = 0; round < 300; ++round) {
        const Frame frame = RandomFrame(random, 2.0);
        const auto ellipse =
            SampleEllipse<double>(random, 20, unit(random), unit(random), 2.0, 1.5, unit(random), 0.05);
        std::vector<CadPoint2d<T>> planar;
        for (const auto& p : ellipse) {
            planar.push_back(MakePoint<T>(p.x(), p.y()));
        }
        const auto points = IntoSpace<T>(ellipse, frame);
        CadPoint2d<double> p2(0.0, 0.0);
        CadVector2d<double> v2(0.0, 0.0);
        CadVector2d<double> extents(0.0, 0.0);
        CadPoint3d<double> p3(0.0, 0.0, 0.0);
        CadPoint3d<double> q3(0.0, 0.0, 0.0);
        CadVector3d<double> v3(0.0, 0.0, 0.0);
        CadVector3d<double> w3(0.0, 0.0, 0.0);
        double numbers[3] = {};
        const auto addAll = [&] {
            add(p2, 2);
            add(v2, 2);
            add(extents, 2);
            add(p3, 3);
            add(q3, 3);
            add(v3, 3);
            add(w3, 3);
            add(numbers, 3);
        };
        const std::uint64_t count = points.size();
        PointFit3(points.data(), count, p3, numbers);
        addAll();
        LineFit2(planar.data(), count, p2, v2, numbers[0]);
        LineFit3(points.data(), count, p3, v3, numbers[1]);
        addAll();
        LineSegmentFit3(points.data(), count, p3, q3, numbers[0]);
        PlaneFit3(points.data(), count, p3, v3, numbers[1]);
        addAll();
        CircleFit2(planar.data(), count, p2, numbers[0], numbers[1], 30);
        CircleFit3(points.data(), count, p3, v3, numbers[1], numbers[2], 30);
        addAll();
        EllipseFit2(planar.data(), count, p2, v2, numbers[0], numbers[1], &numbers[2]);
        addAll();
        EllipseFit3(points.data(), count, p3, v3, w3, numbers[0], numbers[1], &numbers[2]);
        OrientedBoxFit2(planar.data(), count, p2, v2, extents);
        addAll();
    }
    return results;
}

template <class T>
void ExpectSameBitsOnTwoThreads()
{
    // The threads come first: whatever is made on first use is then made by both at once.
    std::vector<double> results[2];
    std::thread first([&] { results[0] = FitEverything<T>(20240815); });
    std::thread second([&] { results[1] = FitEverything<T>(20240816); });
    first.join();
    second.join();
    for (unsigned i = 0; i < 2; ++i) {
        const std::vector<double> alone = FitEverything<T>(20240815 + i);
        ASSERT_EQ(alone.size(), results[i].size());
        for (std::size_t k = 0; k < alone.size(); ++k) {
            ASSERT_TRUE(SameBits(alone[k], results[i][k]));
        }
    }
}

TEST(Fits, OfTwoThreadsGiveTheSameBitsAsOne)
{
    ExpectSameBitsOnTwoThreads<double>();
}

TEST(Fits, OfFloatPointsOnTwoThreadsGiveTheSameBitsAsOne)
{
    ExpectSameBitsOnTwoThreads<float>();
}

} // namespace
