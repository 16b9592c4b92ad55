// Stores an outline, its box and its frame in an archive, loads them back, and shows what a cut file does.

#include <cadgeom/bounds/bounding_box_3d.h>
#include <cadgeom/platform/archive.h>
#include <cadgeom/platform/exceptions.h>
#include <cadgeom/platform/file.h>
#include <cadgeom/polyline/polyline3d.h>
#include <cadgeom/transform/transform.h>

#include <cstdint>
#include <cstdio>
#include <vector>

namespace {

// Whatever is stored in one order is loaded in the same order: records carry no names.
struct Section {
    CCadPolyline3d<double> outline;
    CBoundingBox3d<double> box;
    CCadTransform frame = CCadTransform::GetEmptyTransform();

    void Serialize(CArchive& archive)
    {
        outline.Serialize(archive);
        box.Serialize(archive);
        frame.SerializeNew(archive);
    }
};

void Load(const std::vector<std::uint8_t>& bytes, Section& section)
{
    CMemFile file(bytes.data(), bytes.size());
    CArchive archive(&file, CArchive::load);
    section.Serialize(archive);
}

} // namespace

int main()
{
    Section stored;
    for (const CadPoint3d<double>& corner :
         {CadPoint3d<double>(0, 0, 5), CadPoint3d<double>(8, 0, 5), CadPoint3d<double>(8, 3, 5)})
        stored.outline.AddPoint(corner);
    stored.outline.Close();
    stored.outline.ComputeBoundingBox(stored.box);
    stored.frame.SetTranslate(CadPoint3d<double>(0, 0, 5));

    CMemFile file;
    CArchive archive(&file, CArchive::store);
    stored.Serialize(archive);
    archive.Close();
    std::vector<std::uint8_t> bytes(file.GetLength());
    file.SeekToBegin();
    file.Read(bytes.data(), static_cast<std::uint32_t>(bytes.size()));

    Section loaded;
    Load(bytes, loaded);
    std::printf("%zu bytes hold an outline of %d points, length %g\n", bytes.size(),
                static_cast<int>(loaded.outline.GetNumPoints()), loaded.outline.ComputeLength());
    const bool isSame = loaded.outline.ComputeLength() == stored.outline.ComputeLength() &&
                        loaded.box.IsEqual(stored.box, 0) && loaded.frame == stored.frame;

    bytes.resize(bytes.size() / 2);
    try {
        Load(bytes, loaded);
    } catch (const CArchiveException& exception) {
        std::printf("half of them: %s\n", exception.what());
        return isSame && exception.m_cause == CArchiveException::endOfFile ? 0 : 1;
    }
    std::puts("half of the bytes loaded without an exception");
    return 1;
}
