// Picks the facet of a model under the mouse: the pick ray is tried on the box of each facet first, which is cheap, and
// on the facets whose box it meets only then.

#include <cadgeom/bounds/bounding_box_3d.h>
#include <cadgeom/intersect/pierce.h>

#include <cstddef>
#include <cstdio>
#include <limits>

namespace {

using Point = CadPoint3d<double>;
using Vector = CadVector3d<double>;

// A roof: two slopes that meet in the ridge at height 3, over a floor of 10 by 4.
const Point kVertices[] = {{0, 0, 0}, {10, 0, 0}, {10, 4, 0}, {0, 4, 0}, {0, 2, 3}, {10, 2, 3}};
const std::size_t kFacets[][3] = {{0, 1, 5}, {0, 5, 4}, {3, 4, 5}, {3, 5, 2}, {0, 2, 1}, {0, 3, 2}};
constexpr int kNone = -1;

struct Pick {
    int facet = kNone;
    double t = std::numeric_limits<double>::infinity();
};

// The first facet that the ray origin + t * direction, t >= 0, meets.
Pick PickNearest(const Point& origin, const Vector& direction)
{
    Pick nearest;
    int facet = 0;
    for (const auto& [a, b, c] : kFacets) {
        CBoundingBox3d<double> box;
        for (const std::size_t vertex : {a, b, c})
            box.CheckPoint(kVertices[vertex]);
        double t, u, v;
        // The hit counts along the whole line, so hits behind the eye are left out here.
        if (box.RayPierce(origin, direction, nullptr, nullptr, nullptr, nullptr) &&
            PierceTriangle(origin, direction, kVertices[a], kVertices[b], kVertices[c], t, u, v) && t >= 0 &&
            t < nearest.t)
            nearest = {facet, t};
        ++facet;
    }
    return nearest;
}

} // namespace

int main()
{
    const Point eye(7, 1, 10);
    const Vector down(0, 0, -1);
    const Pick pick = PickNearest(eye, down);
    if (pick.facet == kNone) {
        std::puts("the ray from above misses the roof");
        return 1;
    }
    const Point hit = eye + down * pick.t;
    std::printf("facet %d is picked at (%g, %g, %g), %g below the eye\n", pick.facet, hit.x(), hit.y(), hit.z(),
                pick.t);

    const Pick beside = PickNearest(Point(7, 5, 10), down);
    std::printf("beside the roof %s\n", beside.facet == kNone ? "nothing is picked" : "something is picked");
    return hit == Point(7, 1, 1.5) && beside.facet == kNone ? 0 : 1;
}
