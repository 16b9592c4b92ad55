// Holds docs/boxes.md against the code: corners, edges and planes in the order of the tables.

#include "docs/page.h"

#include <cadgeom/cadgeom.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Point2 = CadPoint2d<double>;
using Point3 = CadPoint3d<double>;
using Vector3 = CadVector3d<double>;

/// The rows of a table of the page, which must be numbered 0, 1, ...
std::vector<docs::Row> Table(const std::string& title, std::size_t rowCount)
{
    const std::vector<docs::Row> rows = docs::ReadTables("boxes.md", title);
    EXPECT_EQ(rows.size(), rowCount);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i][0], std::to_string(i));
    }
    return rows;
}

std::size_t CornerOf(const std::string& cell)
{
    return std::stoul(cell);
}

/// A coordinate by its name in the tables.
double Coordinate(const std::string& name, double min, double max)
{
    return name == "min" || name == "0" ? min : max;
}

TEST(BoxesPage, DrawsTheCornersAndEdgesOfThePlanarBox)
{
    const CBoundingBox2d<double> box(Point2(1, 2), Point2(4, 8));
    Point2 corners[4], starts[4], ends[4];
    box.GetCornerPoints(corners);
    box.GetLineSegments(starts, ends);
    std::size_t i = 0;
    for (const docs::Row& row : Table("Corner of CBoundingBox2d", 4)) {
        EXPECT_EQ(corners[i++], Point2(Coordinate(row[1], 1, 4), Coordinate(row[2], 2, 8))) << "corner " << row[0];
    }
    i = 0;
    for (const docs::Row& row : Table("Edge of CBoundingBox2d", 4)) {
        EXPECT_EQ(starts[i], corners[CornerOf(row[1])]) << "edge " << row[0];
        EXPECT_EQ(ends[i++], corners[CornerOf(row[2])]) << "edge " << row[0];
    }
}

TEST(BoxesPage, DrawsTheCornersAndEdgesOfTheBoxInSpace)
{
    const CBoundingBox3d<double> box(Point3(1, 2, 3), Point3(4, 8, 16));
    Point3 corners[8], starts[12], ends[12];
    box.GetCornerPoints(corners);
    box.GetLineSegments(starts, ends);
    std::size_t i = 0;
    for (const docs::Row& row : Table("Corner of CBoundingBox3d", 8)) {
        const Point3 corner(Coordinate(row[1], 1, 4), Coordinate(row[2], 2, 8), Coordinate(row[3], 3, 16));
        EXPECT_EQ(corners[i++], corner) << "corner " << row[0];
    }
    i = 0;
    for (const docs::Row& row : Table("Edge of CBoundingBox3d", 12)) {
        EXPECT_EQ(starts[i], corners[CornerOf(row[1])]) << "edge " << row[0];
        EXPECT_EQ(ends[i++], corners[CornerOf(row[2])]) << "edge " << row[0];
    }
}

TEST(BoxesPage, DrawsTheCornersEdgesAndPlanesOfTheOrientedBox)
{
    COrientedBox3d<double> box;
    box.SetOrigin(Point3(1, 2, 3));
    box.SetSizes(Vector3(3, 6, 13));
    Point3 corners[8], starts[12], through[6];
    Vector3 directions[12], normals[6], edgeNormals[12][2];
    box.GetCornerPoints(corners);
    box.GetBoxLines(starts, directions, edgeNormals);
    box.GetPlanes(through, normals);
    std::size_t i = 0;
    for (const docs::Row& row : Table("Corner of COrientedBox3d", 8)) {
        const Point3 corner(Coordinate(row[1], 1, 4), Coordinate(row[2], 2, 8), Coordinate(row[3], 3, 16));
        EXPECT_EQ(corners[i++], corner) << "corner " << row[0];
    }
    i = 0;
    for (const docs::Row& row : Table("Edge of COrientedBox3d", 12)) {
        EXPECT_EQ(starts[i], corners[CornerOf(row[1])]) << "edge " << row[0];
        EXPECT_EQ(starts[i] + directions[i], corners[CornerOf(row[2])]) << "edge " << row[0];
        ++i;
    }
    i = 0;
    for (const docs::Row& row : Table("Plane of COrientedBox3d", 6)) {
        const bool isNegated = row[2][0] == '-';
        const Vector3 axis = box.GetAxis(row[2].back() - 'u');
        EXPECT_EQ(through[i], corners[CornerOf(row[1])]) << "plane " << row[0];
        EXPECT_EQ(normals[i++], axis * (isNegated ? -1.0 : 1.0)) << "plane " << row[0];
    }
}

TEST(BoxesPage, DrawsTheCornersOfAPatch)
{
    const Point3 corners[] = {{0, 0, 0}, {3, 0, 1}, {0, 5, 2}, {3, 5, 3}};
    std::size_t i = 0;
    for (const docs::Row& row : Table("Corner of a patch", 4)) {
        CArray<Point2, const Point2&> uvs;
        CArray<double> ts;
        const Point3 above = corners[i++] + Vector3(0, 0, 7);
        ASSERT_TRUE(PierceQuad(above, Vector3(0, 0, -1), corners, uvs, ts));
        EXPECT_EQ(uvs.GetAt(0), Point2(std::stod(row[1]), std::stod(row[2]))) << "corner " << row[0];
    }
}

} // namespace
