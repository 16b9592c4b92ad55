// Writes points to a file on disk, reads them back and compares.

#include <cadgeom/cadgeom.h>

#include <cstdio>
#include <cstring>
#include <vector>

namespace {

void WritePoints(const char* path, const std::vector<CadPoint3d<double>>& points)
{
    CFile file(path, CFile::modeCreate | CFile::modeWrite);
    CArchive archive(&file, CArchive::store);
    archive.WriteCount(points.size());
    for (const auto& point : points)
        archive << point;
    archive.Close();
}

std::vector<CadPoint3d<double>> ReadPoints(const char* path)
{
    CFile file(path, CFile::modeRead);
    CArchive archive(&file, CArchive::load);
    std::vector<CadPoint3d<double>> points(archive.ReadCount());
    for (auto& point : points)
        archive >> point;
    return points;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::puts("usage: host <scratch file>");
        return 2;
    }
    std::vector<CadPoint3d<double>> points;
    for (int i = 0; i < 1000; ++i)
        points.emplace_back(i / 3.0, i / 7.0, -i / 11.0);

    WritePoints(argv[1], points);
    const std::vector<CadPoint3d<double>> read = ReadPoints(argv[1]);

    const bool equal =
        read.size() == points.size() && std::memcmp(read.data(), points.data(), points.size() * sizeof(points[0])) == 0;
    std::puts(equal ? "the points came back as they were written" : "the points came back changed");
    return equal ? 0 : 1;
}
