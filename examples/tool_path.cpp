// Measures a helical tool path, converts it to inches and carries it through an archive on disk.

#include <cadgeom/core/archive_records.h>
#include <cadgeom/core/point3d.h>
#include <cadgeom/core/point_sequence.h>
#include <cadgeom/core/units.h>
#include <cadgeom/platform/archive.h>
#include <cadgeom/platform/file.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using Path = std::vector<CadPoint3d<double>>;

// Five turns around the z axis, 10 mm wide and 4 mm apart.
Path MakeHelix()
{
    constexpr int kPointsPerTurn = 72;
    constexpr int kTurns = 5;
    constexpr double kRadius = 10;
    constexpr double kPitch = 4;
    Path path;
    for (int i = 0; i <= kTurns * kPointsPerTurn; ++i) {
        const double turns = static_cast<double>(i) / kPointsPerTurn;
        const double angle = 6.283185307179586 * turns;
        path.emplace_back(kRadius * std::cos(angle), kRadius * std::sin(angle), kPitch * turns);
    }
    return path;
}

void Print(const char* title, const Path& path)
{
    const CadPoint<double, 3> mean = ComputeMeanPoint<double, 3>(path.data(), path.size());
    const double length = PolylineGetLength<double, 3>(path.data(), path.size());
    std::printf("%-12s %zu points, length %.6f, mean (%.6f, %.6f, %.6f)\n", title, path.size(), length, mean[0],
                mean[1], mean[2]);
}

void Store(const std::string& name, const Path& path)
{
    CFile file(name.c_str(), CFile::modeCreate | CFile::modeWrite);
    CArchive archive(&file, CArchive::store);
    archive.WriteCount(path.size());
    for (const CadPoint3d<double>& point : path)
        archive << point;
    archive.Close();
}

Path Load(const std::string& name)
{
    CFile file(name.c_str(), CFile::modeRead);
    CArchive archive(&file, CArchive::load);
    Path path(archive.ReadCount());
    for (CadPoint3d<double>& point : path)
        archive >> point;
    return path;
}

} // namespace

int main()
{
    Path path = MakeHelix();
    Print("millimetres", path);
    PointsConvertUnits<double>(path.data(), path.size(), CADUNITS_MILLIMETERS, CADUNITS_INCHES);
    Print("inches", path);

    const std::string name = (std::filesystem::temp_directory_path() / "cadgeom_tool_path.bin").string();
    Store(name, path);
    std::printf("%-12s %ju bytes on disk\n", "stored", static_cast<std::uintmax_t>(std::filesystem::file_size(name)));
    const Path loaded = Load(name);
    Print("loaded", loaded);
    std::filesystem::remove(name);

    for (std::size_t i = 0; i < path.size(); ++i) {
        if (loaded.size() != path.size() || loaded[i].distance(path[i]) != 0) {
            std::puts("the path came back changed");
            return 1;
        }
    }
    return 0;
}
