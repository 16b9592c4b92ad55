// Simplifies a recorded track and measures how far the points left out lie from the simplified one.

#include <cadgeom/polyline/polyline3d.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace {

using Track = CCadPolyline3d<double>;

// A walk along four streets in steps of 1 m, with a receiver that trembles by 5 cm and a rest at the first corner.
Track Record()
{
    const CadPoint3d<double> corners[] = {{0, 0, 0}, {300, 0, 0}, {300, 180, 0}, {520, 180, 0}, {520, -60, 0}};
    Track track;
    track.AddPoint(corners[0]);
    for (int street = 0; street < 4; ++street) {
        CadVector3d<double> step = corners[street + 1] - corners[street];
        const int steps = static_cast<int>(step.normalize());
        for (int i = 1; i < steps; ++i) {
            const double tremble = 0.05 * std::sin(29.0 * i);
            track.AddPoint(corners[street] + step * i + CadVector3d<double>(tremble, tremble, 0));
        }
        track.AddPoint(corners[street + 1]);
        if (street == 0)
            for (int seconds = 0; seconds < 60; ++seconds)
                track.AddPoint(corners[1]);
    }
    return track;
}

// The largest distance of a vertex of `track` from `simple`.
double LargestDeviation(const Track& track, const Track& simple)
{
    double largest = 0;
    for (std::int64_t i = 0; i < track.GetNumPoints(); ++i) {
        CadPoint3d<double> nearest;
        if (simple.Drop(track.GetPoint(i), nearest))
            largest = std::max(largest, nearest.distance(track.GetPoint(i)));
    }
    return largest;
}

} // namespace

int main()
{
    const Track track = Record();
    Track simple(track);
    constexpr double kTolerance = 0.25;
    simple.DataReduce(kTolerance);
    const double deviation = LargestDeviation(track, simple);
    std::printf("recorded:   %4d points, %.1f m\n", static_cast<int>(track.GetNumPoints()), track.ComputeLength());
    std::printf("simplified: %4d points, %.1f m, tolerance %.2f m\n", static_cast<int>(simple.GetNumPoints()),
                simple.ComputeLength(), kTolerance);
    // Each point left out was measured against one segment alone. On dense gentle curves the deviation can therefore
    // grow far beyond the tolerance: measure it, or take a tolerance well below the step.
    std::printf("largest deviation %.2f m\n", deviation);

    const bool keepsEnds = simple.GetPoint(0) == track.GetPoint(0) &&
                           simple.GetPoint(simple.GetNumPoints() - 1) == track.GetPoint(track.GetNumPoints() - 1);
    return keepsEnds && simple.GetNumPoints() == 5 && deviation < kTolerance ? 0 : 1;
}
