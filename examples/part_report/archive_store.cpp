#include "archive_store.h"

#include <cadgeom/platform/archive.h>
#include <cadgeom/platform/file.h>

#include <algorithm>
#include <cstring>

namespace part_report {

namespace {

// Says what the bytes are; the last digit is the version.
constexpr std::uint32_t kSignature = 0x50525331;

/// A transform stores and loads itself with one member, which is why storing needs a copy.
void StoreFrame(CArchive& archive, CCadTransform frame)
{
    frame.SerializeNew(archive);
}

CCadTransform LoadFrame(CArchive& archive)
{
    CCadTransform frame;
    frame.SerializeNew(archive);
    return frame;
}

template <class T>
bool HasSameBits(const T* a, const T* b, std::size_t count)
{
    return count == 0 || std::memcmp(a, b, count * sizeof(T)) == 0;
}

bool IsSameFrame(const CCadTransform& a, const CCadTransform& b)
{
    return HasSameBits(&a.GetTranslate(), &b.GetTranslate(), 1) && HasSameBits(&a.xAxis(), &b.xAxis(), 1) &&
           HasSameBits(&a.yAxis(), &b.yAxis(), 1) && HasSameBits(&a.zAxis(), &b.zAxis(), 1) &&
           HasSameBits(&a.GetScale(), &b.GetScale(), 1);
}

bool IsSameOutline(const CCadPolyline3d<double>& a, const CCadPolyline3d<double>& b)
{
    return a.GetNumPoints() == b.GetNumPoints() &&
           HasSameBits(a.GetData(), b.GetData(), static_cast<std::size_t>(a.GetNumPoints()));
}

bool IsSameSection(const StoredSections::Item& a, const StoredSections::Item& b)
{
    return IsSameFrame(a.frame, b.frame) &&
           std::equal(a.outlines.begin(), a.outlines.end(), b.outlines.begin(), b.outlines.end(), IsSameOutline);
}

} // namespace

StoredSections CollectSections(const Stand& stand, const std::vector<Section>& sections)
{
    StoredSections stored;
    stored.standFrame = stand.frame;
    for (const Section& section : sections) {
        StoredSections::Item item;
        item.frame = section.frame;
        for (const Outline& outline : section.outlines)
            item.outlines.push_back(outline.polyline);
        stored.sections.push_back(std::move(item));
    }
    return stored;
}

void Store(const StoredSections& stored, const std::string& path)
{
    CFile file(path, CFile::modeCreate | CFile::modeWrite);
    CArchive archive(&file, CArchive::store);
    archive << kSignature;
    StoreFrame(archive, stored.standFrame);
    archive.WriteCount(stored.sections.size());
    for (const StoredSections::Item& section : stored.sections) {
        StoreFrame(archive, section.frame);
        archive.WriteCount(section.outlines.size());
        for (const CCadPolyline3d<double>& outline : section.outlines)
            archive << outline;
    }
    archive.Close();
    file.Close();
}

StoredSections Load(const std::string& path)
{
    CFile file(path, CFile::modeRead);
    CArchive archive(&file, CArchive::load);
    std::uint32_t signature = 0;
    archive >> signature;
    if (signature != kSignature)
        AfxThrowArchiveException(CArchiveException::genericException, path.c_str());
    StoredSections stored;
    stored.standFrame = LoadFrame(archive);
    for (std::uint64_t sections = archive.ReadCount(); sections > 0; --sections) {
        StoredSections::Item& item = stored.sections.emplace_back();
        item.frame = LoadFrame(archive);
        for (std::uint64_t outlines = archive.ReadCount(); outlines > 0; --outlines)
            archive >> item.outlines.emplace_back();
    }
    return stored;
}

bool AreIdentical(const StoredSections& a, const StoredSections& b)
{
    return IsSameFrame(a.standFrame, b.standFrame) &&
           std::equal(a.sections.begin(), a.sections.end(), b.sections.begin(), b.sections.end(), IsSameSection);
}

} // namespace part_report
