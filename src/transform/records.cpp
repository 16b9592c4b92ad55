// The archive records of a transform.

#include <cadgeom/core/archive_records.h>
#include <cadgeom/platform/exceptions.h>
#include <cadgeom/transform/transform.h>

void CCadTransform::SerializeNew(CArchive& archive)
{
    m_translate.point.serialize(archive);
    for (CadVector3d<double>& axis : m_axis) {
        axis.serialize(archive);
    }
    m_scale.serialize(archive);
    if (archive.IsLoading()) {
        archive >> m_flags;
    } else {
        archive << m_flags;
    }
}

void CCadTransform::SerializeOld(CArchive& archive)
{
    double numbers[12];
    if (archive.IsStoring()) {
        CopyToArray(numbers);
        archive.Write(numbers, sizeof numbers);
        return;
    }
    if (archive.Read(numbers, sizeof numbers) != sizeof numbers) {
        archive.Abort();
        AfxThrowArchiveException(CArchiveException::endOfFile);
    }
    SetFromArray(numbers);
}
