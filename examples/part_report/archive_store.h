#pragma once
// Keeps the sections for later: frames and outlines in an archive.

#include "extents.h"
#include "sections.h"

namespace part_report {

struct StoredSections {
    CCadTransform standFrame;
    struct Item {
        CCadTransform frame;
        std::vector<CCadPolyline3d<double>> outlines;
    };
    std::vector<Item> sections;
};

StoredSections CollectSections(const Stand& stand, const std::vector<Section>& sections);

/// Both throw the exceptions of the library's archive and file.
void Store(const StoredSections& stored, const std::string& path);
StoredSections Load(const std::string& path);

/// Whether two sets of sections are the same bit for bit.
bool AreIdentical(const StoredSections& a, const StoredSections& b);

} // namespace part_report
