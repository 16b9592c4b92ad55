#include <cadgeom/linalg/dynamic_matrix.h>

#include <cadgeom/platform/array.h>

#include <algorithm>

namespace {

CMatrix MakeIdentity(int n)
{
    CMatrix identity(n, n);
    for (int i = 0; i < n; ++i) {
        double* const row = &identity(i, 0);
        std::fill(row, row + n, 0.0);
        row[i] = 1.0;
    }
    return identity;
}

} // namespace

const CMatrix& CMatrix::GetIdentityMatrix(int n)
{
    // One cache a thread: nothing to lock, and no other thread can move the matrices that a reference points to.
    thread_local CArray<CMatrix> identities;

    if (n < 0) {
        AfxThrowInvalidArgException();
    }
    if (n >= identities.GetSize() || identities[n].GetNumElements() == 0) {
        CMatrix identity = MakeIdentity(n);
        if (n >= identities.GetSize()) {
            identities.SetSize(static_cast<std::int64_t>(n) + 1);
        }
        identities[n] = std::move(identity);
    }
    return identities[n];
}
