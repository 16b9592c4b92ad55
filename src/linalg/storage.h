#pragma once
/// @file
/// Memory of vectors and matrices: element counts, exact growth on the C heap, and scratch space that stays on the
/// stack for small problems.

#include <cadgeom/platform/exceptions.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace cadgeom::detail {

/// Narrows a count of elements; throws CInvalidArgException below 0 and CMemoryException beyond 2^31 - 1.
inline int CheckedCount(std::int64_t count)
{
    if (count < 0) {
        AfxThrowInvalidArgException();
    }
    if (count > std::numeric_limits<int>::max()) {
        AfxThrowMemoryException();
    }
    return static_cast<int>(count);
}

/// Number of elements of a matrix, with the exceptions of CheckedCount.
inline int CheckedCount(int rows, int columns)
{
    if (rows < 0 || columns < 0) {
        AfxThrowInvalidArgException();
    }
    return CheckedCount(static_cast<std::int64_t>(rows) * columns);
}

/// Gives a buffer room for `count` elements: nothing happens up to its capacity, beyond it the buffer is reallocated
/// to exactly `count` with the old values kept. Throws CMemoryException with everything unchanged.
inline void Grow(double*& data, int& capacity, int count)
{
    if (count <= capacity) {
        return;
    }
    void* const grown = std::realloc(data, static_cast<std::size_t>(count) * sizeof(double));
    if (grown == nullptr) {
        AfxThrowMemoryException();
    }
    data = static_cast<double*>(grown);
    capacity = count;
}

/// Reallocates a buffer to exactly the first `count` of its elements. A heap that cannot shrink a block keeps it.
inline void Shrink(double*& data, int& capacity, int count) noexcept
{
    if (count == 0) {
        std::free(data);
        data = nullptr;
        capacity = 0;
    } else if (void* const shrunk = std::realloc(data, static_cast<std::size_t>(count) * sizeof(double))) {
        data = static_cast<double*>(shrunk);
        capacity = count;
    }
}

/// Copies a run of elements; the runs may overlap, and both pointers may be null when there are none.
inline void CopyElements(double* target, const double* source, int count)
{
    if (count > 0) {
        std::memmove(target, source, static_cast<std::size_t>(count) * sizeof(double));
    }
}

/// Uninitialised doubles for the duration of one call. What a 4 x 4 matrix needs for its inverse stays on the stack,
/// since the heap would cost as much as the elimination of such a matrix.
class Scratch {
public:
    explicit Scratch(std::size_t count) : m_data(count <= kOnStack ? m_small : Allocate(count)) {}
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    ~Scratch()
    {
        if (m_data != m_small) {
            std::free(m_data);
        }
    }

    double* Data() noexcept { return m_data; }

private:
    static constexpr std::size_t kOnStack = 32;

    static double* Allocate(std::size_t count)
    {
        void* const memory = count > std::numeric_limits<std::size_t>::max() / sizeof(double)
                                 ? nullptr
                                 : std::malloc(count * sizeof(double));
        if (memory == nullptr) {
            AfxThrowMemoryException();
        }
        return static_cast<double*>(memory);
    }

    double m_small[kOnStack];
    double* m_data;
};

} // namespace cadgeom::detail
