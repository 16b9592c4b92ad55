#pragma once
// The meshes of tests/data/meshes and the lines through them; see the README there.

#include <cadgeom/core/point3d.h>

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <fstream>
#include <string>
#include <vector>

namespace meshes {

struct Mesh {
    const CadPoint3d<double>& Corner(std::size_t triangle, std::size_t corner) const
    {
        return vertices[triangles[triangle][corner]];
    }

    std::vector<CadPoint3d<double>> vertices;
    std::vector<std::array<std::size_t, 3>> triangles;
};

struct Hit {
    std::size_t triangle;
    double t;
    double u;
    double v;
};

struct Line {
    /// The hit of this triangle; null when there is none.
    const Hit* FindHit(std::size_t triangle) const
    {
        for (const Hit& hit : hits) {
            if (hit.triangle == triangle) {
                return &hit;
            }
        }
        return nullptr;
    }

    CadPoint3d<double> origin;
    CadVector3d<double> direction;
    std::vector<Hit> hits;
};

inline std::ifstream OpenData(const std::string& name)
{
    std::ifstream file(std::string(CADGEOM_TEST_DATA_DIR) + "/" + name);
    EXPECT_TRUE(file.is_open()) << name;
    return file;
}

/// Reads three numbers written in the precision of Number.
template <class Number, class Value>
std::istream& ReadCoordinates(std::istream& file, Value& value)
{
    for (int axis = 0; axis < 3; ++axis) {
        Number number = 0;
        file >> number;
        value[axis] = static_cast<double>(number);
    }
    return file;
}

inline Mesh ReadMesh(const std::string& name)
{
    std::ifstream file = OpenData("meshes/" + name + ".txt");
    std::string precision;
    std::size_t vertices = 0;
    std::size_t triangles = 0;
    file >> precision >> vertices >> triangles;
    Mesh mesh;
    mesh.vertices.resize(vertices);
    mesh.triangles.resize(triangles);
    for (CadPoint3d<double>& vertex : mesh.vertices) {
        if (precision == "float") {
            ReadCoordinates<float>(file, vertex);
        } else {
            ReadCoordinates<double>(file, vertex);
        }
    }
    for (std::array<std::size_t, 3>& triangle : mesh.triangles) {
        file >> triangle[0] >> triangle[1] >> triangle[2];
    }
    EXPECT_TRUE(file.good() && triangles > 0) << name;
    return mesh;
}

inline std::vector<Line> ReadLines(const std::string& name)
{
    std::ifstream file = OpenData("meshes/" + name + "_lines.txt");
    std::size_t count = 0;
    file >> count;
    std::vector<Line> lines(count);
    for (Line& line : lines) {
        std::size_t hits = 0;
        ReadCoordinates<double>(file, line.origin);
        ReadCoordinates<double>(file, line.direction) >> hits;
        line.hits.resize(hits);
        for (Hit& hit : line.hits) {
            file >> hit.triangle >> hit.t >> hit.u >> hit.v;
        }
    }
    EXPECT_TRUE(file.good() && count > 0) << name;
    return lines;
}

} // namespace meshes
