#pragma once
/// @file
/// The growable array that polylines and result lists are made of, with a growth rule that callers can rely on, and its
/// counted archive record.

#include <cadgeom/core/export.h>
#include <cadgeom/platform/archive.h>
#include <cadgeom/platform/exceptions.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <type_traits>
#include <utility>

namespace cadgeom::detail {

/// Values that are their bytes: they may be moved with memcpy and made with zero bytes.
template <class TYPE>
inline constexpr bool kIsPlainValue = std::is_trivially_copyable_v<TYPE>&& std::is_trivially_destructible_v<TYPE>;

template <class TYPE, class = void>
inline constexpr bool kHasRecord = false;
template <class TYPE>
inline constexpr bool
    kHasRecord<TYPE, std::void_t<decltype(std::declval<TYPE&>().serialize(std::declval<CArchive&>()))>> = true;

template <class TYPE, class = void>
inline constexpr bool kHasArchiveForm = false;
template <class TYPE>
inline constexpr bool
    kHasArchiveForm<TYPE, std::void_t<decltype(std::declval<TYPE&>().Serialize(std::declval<CArchive&>()))>> = true;

/// Whether runs of TYPE are stored as the bytes of the array. Pointers never are: they mean nothing to who reads them.
template <class TYPE>
inline constexpr bool kIsStoredRaw =
    kIsPlainValue<TYPE> && !kHasRecord<TYPE> && !kHasArchiveForm<TYPE> && !std::is_pointer_v<TYPE>;

/// Largest number of bytes that one raw transfer of an archive carries.
inline constexpr std::uint64_t kLargestBlock = std::numeric_limits<std::int32_t>::max();

/// Bytes of the smallest value that TYPE is made of: data that end inside such a value deliver nothing of it.
template <class TYPE>
inline constexpr std::uint32_t kStoredValueSize = sizeof(TYPE);

/// Hands a run of elements to `transfer(element, size)` in blocks of whole elements. A non-zero count with a null array
/// throws CInvalidArgException.
template <class TYPE, class Transfer>
void ForEachBlock(TYPE* elements, std::uint64_t count, Transfer transfer)
{
    if (count != 0 && elements == nullptr) {
        AfxThrowInvalidArgException();
    }
    constexpr std::uint64_t kLargestRun = kLargestBlock / sizeof(TYPE);
    for (std::uint64_t done = 0; done < count;) {
        const std::uint64_t run = std::min(count - done, kLargestRun);
        transfer(elements + done, static_cast<std::uint32_t>(run * sizeof(TYPE)));
        done += run;
    }
}

/// Stores `count` elements as the bytes of the array.
template <class TYPE>
void StoreRaw(CArchive& archive, const TYPE* elements, std::uint64_t count)
{
    ForEachBlock(elements, count, [&archive](const TYPE* block, std::uint32_t size) { archive.Write(block, size); });
}

/// Loads `count` elements as the bytes of the array. Data that end too early throw `endOfFile` with the given file name:
/// what was loaded stays, a value that they cut is zero, and the rest is untouched.
template <class TYPE>
void LoadRaw(CArchive& archive, TYPE* elements, std::uint64_t count, const char* fileName = nullptr)
{
    ForEachBlock(elements, count, [&archive, fileName](TYPE* block, std::uint32_t size) {
        auto* const bytes = reinterpret_cast<unsigned char*>(block);
        const std::uint32_t loaded = archive.Read(bytes, size);
        if (loaded != size) {
            const std::uint32_t cut = loaded % kStoredValueSize<TYPE>;
            std::memset(bytes + (loaded - cut), 0, cut);
            archive.Abort();
            AfxThrowArchiveException(CArchiveException::endOfFile, fileName);
        }
    });
}

} // namespace cadgeom::detail

/// Stores or loads a run of elements without a count; nothing happens for count <= 0.
///
/// Types with a `serialize` or `Serialize` member are transferred one by one through it, plain values as the bytes of
/// the array. Other types cannot be stored: CArchiveException (genericException).
template <class TYPE>
void SerializeElements(CArchive& archive, TYPE* elements, std::int64_t count)
{
    if (count <= 0) {
        return;
    }
    if constexpr (cadgeom::detail::kIsStoredRaw<TYPE>) {
        if (archive.IsStoring()) {
            cadgeom::detail::StoreRaw(archive, elements, static_cast<std::uint64_t>(count));
        } else {
            cadgeom::detail::LoadRaw(archive, elements, static_cast<std::uint64_t>(count));
        }
    } else if constexpr (cadgeom::detail::kHasRecord<TYPE>) {
        std::for_each(elements, elements + count, [&archive](TYPE& element) { element.serialize(archive); });
    } else if constexpr (cadgeom::detail::kHasArchiveForm<TYPE>) {
        std::for_each(elements, elements + count, [&archive](TYPE& element) { element.Serialize(archive); });
    } else {
        archive.Abort();
        AfxThrowArchiveException(CArchiveException::genericException);
    }
}

/// A growable array with 64-bit signed indices.
///
/// *Growth.* The first size is allocated exactly (at least the growth step). A size above the capacity raises it to
/// max(size, capacity + step), where the step is the one given to SetSize or, when that is 0, an eighth of the count
/// within 4 ... 1024. New elements of plain types are zero bytes; those of other types are value-initialised. The buffer
/// behind the capacity may be larger, so that appending n elements one by one costs O(n) all the same; and it may be zero
/// bytes from the system, so that new elements take no memory before they are written.
///
/// *Failure.* A bad index or a negative size throws CInvalidArgException; a size whose bytes cannot be obtained throws
/// CMemoryException. Either leaves the array as it was.
///
/// Distinct arrays may be used from distinct threads.
template <class TYPE, class ARG_TYPE = const TYPE&>
class CADGEOM_API CArray {
public:
    CArray() noexcept = default;
    CArray(const CArray&) = delete;
    CArray& operator=(const CArray&) = delete;
    /// Takes the elements of `other` and leaves it empty.
    CArray(CArray&& other) noexcept { Swap(other); }
    CArray& operator=(CArray&& other) noexcept
    {
        if (this != &other) {
            RemoveAll();
            Swap(other);
        }
        return *this;
    }
    virtual ~CArray() { RemoveAll(); }

    std::int64_t GetSize() const noexcept { return m_count; }
    std::int64_t GetCount() const noexcept { return m_count; }
    bool IsEmpty() const noexcept { return m_count == 0; }
    /// The last valid index; -1 for an empty array.
    std::int64_t GetUpperBound() const noexcept { return m_count - 1; }
    /// Number of elements up to which the growth rule reallocates nothing.
    std::int64_t GetCapacity() const noexcept { return m_capacity; }
    /// The growth step; 0 stands for the default rule.
    std::int64_t GetGrowBy() const noexcept { return m_growBy; }

    /// Changes the number of elements by the growth rule. Size 0 frees the buffer.
    /// @param size    0 or more
    /// @param growBy  new growth step; below 0 keeps the present one
    void SetSize(std::int64_t size, std::int64_t growBy = -1);
    /// Frees what the capacity holds beyond the count.
    void FreeExtra();
    /// Frees the buffer; count and capacity become 0.
    void RemoveAll() noexcept
    {
        DestroyFrom(0);
        std::free(m_data);
        m_data = nullptr;
        m_capacity = 0;
        m_allocated = 0;
    }

    const TYPE& GetAt(std::int64_t index) const { return m_data[RequireIndex(index)]; }
    TYPE& GetAt(std::int64_t index) { return m_data[RequireIndex(index)]; }
    TYPE& ElementAt(std::int64_t index) { return m_data[RequireIndex(index)]; }
    const TYPE& ElementAt(std::int64_t index) const { return m_data[RequireIndex(index)]; }
    TYPE& operator[](std::int64_t index) { return m_data[RequireIndex(index)]; }
    const TYPE& operator[](std::int64_t index) const { return m_data[RequireIndex(index)]; }
    void SetAt(std::int64_t index, ARG_TYPE element) { m_data[RequireIndex(index)] = element; }
    /// The first element; null for an array that never had one or was emptied.
    TYPE* GetData() noexcept { return m_data; }
    const TYPE* GetData() const noexcept { return m_data; }

    /// Stores at `index` >= 0, growing the array when it is behind the end.
    void SetAtGrow(std::int64_t index, ARG_TYPE element);
    /// Appends one element and returns its index. The element may lie in this array.
    std::int64_t Add(ARG_TYPE element)
    {
        const std::int64_t index = m_count;
        if (index < m_capacity) {
            ::new (static_cast<void*>(m_data + index)) TYPE(element);
            ++m_count;
        } else {
            SetAtGrow(index, element);
        }
        return index;
    }
    /// Appends the elements of `other`, which may be this array, and returns the index of the first of them.
    std::int64_t Append(const CArray& other);
    /// Makes this array hold copies of the elements of `other`; the capacity follows the growth rule.
    void Copy(const CArray& other);
    /// Inserts `count` copies of `element` in front of `index` >= 0; behind the end the array grows to hold them.
    void InsertAt(std::int64_t index, ARG_TYPE element, std::int64_t count = 1);
    /// Removes `count` elements from `index` on and shifts the later ones down; the capacity stays.
    void RemoveAt(std::int64_t index, std::int64_t count = 1);

    /// Stores or loads the count (CArchive::WriteCount) and the elements (SerializeElements). Loading resizes by the
    /// growth rule first. Data that end too early throw CArchiveException (endOfFile) and leave the array resized, with
    /// the elements loaded so far and, for plain types, zeros after them. A count whose bytes cannot be obtained leaves
    /// the array as it was and throws the same when the file is known to be too short, else CMemoryException; so does
    /// a count above 65535 of elements that are not plain when the file has fewer bytes than that.
    virtual void Serialize(CArchive& archive);

protected:
    /// Resizes to a loaded count. Elements of a plain type that are not loaded after this are zeros.
    void ResizeForLoading(CArchive& archive, std::uint64_t count);

private:
    static_assert(alignof(TYPE) <= alignof(std::max_align_t), "the buffer comes from the C heap");

    static constexpr std::int64_t kLargestCount =
        static_cast<std::int64_t>(std::numeric_limits<std::int64_t>::max() / static_cast<std::int64_t>(sizeof(TYPE)));
    static constexpr bool kIsPlain = cadgeom::detail::kIsPlainValue<TYPE>;

    std::int64_t RequireIndex(std::int64_t index) const
    {
        if (index < 0 || index >= m_count) {
            AfxThrowInvalidArgException();
        }
        return index;
    }

    void Swap(CArray& other) noexcept
    {
        std::swap(m_data, other.m_data);
        std::swap(m_count, other.m_count);
        std::swap(m_capacity, other.m_capacity);
        std::swap(m_allocated, other.m_allocated);
        std::swap(m_growBy, other.m_growBy);
    }

    std::int64_t GrowthStep() const noexcept
    {
        return m_growBy != 0 ? m_growBy : std::clamp<std::int64_t>(m_count / 8, 4, 1024);
    }

    /// The capacity that the growth rule gives a new size, 1 ... kLargestCount.
    std::int64_t CapacityFor(std::int64_t size) const noexcept
    {
        if (m_data == nullptr) {
            return std::max(m_growBy, size);
        }
        const std::int64_t step = std::min(GrowthStep(), kLargestCount - m_capacity);
        return size <= m_capacity ? m_capacity : std::max(size, m_capacity + step);
    }

    /// Ends the life of the elements from `first` on.
    void DestroyFrom(std::int64_t first) noexcept
    {
        if constexpr (!std::is_trivially_destructible_v<TYPE>) {
            std::for_each(m_data + first, m_data + m_count, [](TYPE& element) { element.~TYPE(); });
        }
        m_count = std::min(m_count, first);
    }

    /// Begins the life of the elements from the count up to `size`, inside the capacity.
    void ConstructUpTo(std::int64_t size)
    {
        if constexpr (kIsPlain) {
            std::memset(static_cast<void*>(m_data + m_count), 0,
                        static_cast<std::size_t>(size - m_count) * sizeof(TYPE));
            m_count = size;
        } else {
            const std::int64_t before = m_count;
            try {
                for (; m_count < size; ++m_count) {
                    ::new (static_cast<void*>(m_data + m_count)) TYPE();
                }
            } catch (...) {
                DestroyFrom(before);
                throw;
            }
        }
    }

    /// Zeroed memory that the system hands out page by page as it is touched.
    static TYPE* AllocateZeroed(std::int64_t count)
    {
        void* const memory =
            count > kLargestCount ? nullptr : std::calloc(static_cast<std::size_t>(count), sizeof(TYPE));
        if (memory == nullptr) {
            AfxThrowMemoryException();
        }
        return static_cast<TYPE*>(memory);
    }

    void MoveElementsTo(TYPE* target);
    void Reallocate(std::int64_t allocated);
    bool GrowBuffer(std::int64_t capacity);
    void ResizeToZeros(const CArchive& archive, std::int64_t count);

    TYPE* m_data = nullptr;
    std::int64_t m_count = 0;
    std::int64_t m_capacity = 0;  ///< as the growth rule has it
    std::int64_t m_allocated = 0; ///< elements that the buffer has room for, at least m_capacity
    std::int64_t m_growBy = 0;
};

/// Array of 32-bit unsigned numbers, such as row permutations.
using CDWordArray = CArray<std::uint32_t, std::uint32_t>;

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::MoveElementsTo(TYPE* target)
{
    if constexpr (kIsPlain) {
        if (m_count != 0) {
            std::memcpy(static_cast<void*>(target), m_data, static_cast<std::size_t>(m_count) * sizeof(TYPE));
        }
    } else {
        std::int64_t moved = 0;
        try {
            for (; moved < m_count; ++moved) {
                ::new (static_cast<void*>(target + moved)) TYPE(std::move_if_noexcept(m_data[moved]));
            }
        } catch (...) {
            std::for_each(target, target + moved, [](TYPE& element) { element.~TYPE(); });
            throw;
        }
    }
}

/// Gives the buffer room for exactly `allocated` elements, the present ones included.
template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::Reallocate(std::int64_t allocated)
{
    TYPE* const buffer = AllocateZeroed(allocated);
    try {
        MoveElementsTo(buffer);
    } catch (...) {
        std::free(buffer);
        throw;
    }
    const std::int64_t count = m_count;
    DestroyFrom(0);
    std::free(m_data);
    m_data = buffer;
    m_count = count;
    m_allocated = allocated;
}

/// Raises the capacity. A buffer that is to grow no more than twofold doubles, in place where the heap can.
/// @return whether the bytes behind the elements are known to be zero
template <class TYPE, class ARG_TYPE>
bool CArray<TYPE, ARG_TYPE>::GrowBuffer(std::int64_t capacity)
{
    bool isZeroed = false;
    if (capacity > m_allocated) {
        const bool isDoubled = capacity / 2 < m_allocated && m_allocated <= kLargestCount / 2;
        const std::int64_t allocated = isDoubled ? 2 * m_allocated : capacity;
        void* grown = nullptr;
        if constexpr (kIsPlain) {
            if (isDoubled) {
                grown = std::realloc(static_cast<void*>(m_data), static_cast<std::size_t>(allocated) * sizeof(TYPE));
            }
        }
        if (grown != nullptr) {
            m_data = static_cast<TYPE*>(grown);
            m_allocated = allocated;
        } else {
            Reallocate(kIsPlain ? capacity : allocated);
            isZeroed = true;
        }
    }
    m_capacity = capacity;
    return isZeroed;
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::SetSize(std::int64_t size, std::int64_t growBy)
{
    if (size < 0) {
        AfxThrowInvalidArgException();
    }
    if (growBy >= 0) {
        m_growBy = growBy;
    }
    if (size == 0) {
        RemoveAll();
        return;
    }
    if (size > kLargestCount) {
        AfxThrowMemoryException();
    }
    const bool isZeroed = size > m_capacity && GrowBuffer(CapacityFor(size));
    if (size < m_count) {
        DestroyFrom(size);
    } else if (kIsPlain && isZeroed) {
        m_count = size;
    } else {
        ConstructUpTo(size);
    }
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::FreeExtra()
{
    if (m_count == 0) {
        RemoveAll();
    } else if (m_count != m_allocated) {
        Reallocate(m_count);
    }
    m_capacity = m_count;
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::SetAtGrow(std::int64_t index, ARG_TYPE element)
{
    if (index < 0) {
        AfxThrowInvalidArgException();
    }
    if (index < m_count) {
        m_data[index] = element;
        return;
    }
    if (index >= kLargestCount) {
        AfxThrowMemoryException();
    }
    TYPE copy(element);
    SetSize(index + 1);
    m_data[index] = std::move(copy);
}

template <class TYPE, class ARG_TYPE>
std::int64_t CArray<TYPE, ARG_TYPE>::Append(const CArray& other)
{
    const std::int64_t first = m_count;
    const std::int64_t added = other.m_count;
    if (added != 0) {
        if (added > kLargestCount - first) {
            AfxThrowMemoryException();
        }
        SetSize(first + added);
        std::copy(other.m_data, other.m_data + added, m_data + first);
    }
    return first;
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::Copy(const CArray& other)
{
    if (this != &other) {
        SetSize(other.m_count);
        std::copy(other.m_data, other.m_data + other.m_count, m_data);
    }
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::InsertAt(std::int64_t index, ARG_TYPE element, std::int64_t count)
{
    if (index < 0 || count <= 0) {
        AfxThrowInvalidArgException();
    }
    const TYPE copy(element);
    const std::int64_t oldCount = m_count;
    const std::int64_t start = std::max(index, oldCount);
    if (count > kLargestCount - start) {
        AfxThrowMemoryException();
    }
    SetSize(start + count);
    if (index < oldCount) {
        std::move_backward(m_data + index, m_data + oldCount, m_data + m_count);
    }
    std::fill(m_data + index, m_data + index + count, copy);
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::RemoveAt(std::int64_t index, std::int64_t count)
{
    if (index < 0 || count < 0 || index > m_count || count > m_count - index) {
        AfxThrowInvalidArgException();
    }
    if (count != 0) {
        std::move(m_data + index + count, m_data + m_count, m_data + index);
        DestroyFrom(m_count - count);
    }
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::ResizeForLoading(CArchive& archive, std::uint64_t count)
{
    if (count > static_cast<std::uint64_t>(kLargestCount)) {
        archive.Abort();
        AfxThrowMemoryException();
    }
    if constexpr (!kIsPlain) {
        // These are all built before the first of them is loaded, so a count that cannot be true must not get that far.
        constexpr std::uint64_t kLargestTrustedCount = 0xFFFF;
        if (count > kLargestTrustedCount && !archive.MayHold(count)) {
            archive.Abort();
            AfxThrowArchiveException(CArchiveException::endOfFile);
        }
    }
    try {
        if constexpr (kIsPlain) {
            ResizeToZeros(archive, static_cast<std::int64_t>(count));
        } else {
            SetSize(static_cast<std::int64_t>(count));
        }
    } catch (const CMemoryException&) {
        const bool isTooShort = kIsPlain && !archive.MayHold(count * sizeof(TYPE));
        archive.Abort();
        if (isTooShort) {
            AfxThrowArchiveException(CArchiveException::endOfFile);
        }
        throw;
    }
}

/// SetSize() for elements that are about to be loaded: none keeps its value. Memory that the data may not reach is taken
/// from the system as zeros, and so costs nothing.
template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::ResizeToZeros(const CArchive& archive, std::int64_t count)
{
    constexpr std::int64_t kCheaperThanAsking = 4096 / static_cast<std::int64_t>(sizeof(TYPE));
    const bool isSmall = count <= kCheaperThanAsking;
    const auto size = static_cast<std::size_t>(count) * sizeof(TYPE);
    if (count == 0 || (count <= m_capacity && (isSmall || archive.MayHold(size, false)))) {
        SetSize(count);
        const bool isOverwritten = cadgeom::detail::kIsStoredRaw<TYPE> && !isSmall;
        if (count != 0 && !isOverwritten) {
            std::memset(static_cast<void*>(m_data), 0, size);
        }
        return;
    }
    const std::int64_t capacity = CapacityFor(count);
    TYPE* const buffer = AllocateZeroed(capacity);
    std::free(m_data);
    m_data = buffer;
    m_count = count;
    m_capacity = capacity;
    m_allocated = capacity;
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::Serialize(CArchive& archive)
{
    if (archive.IsStoring()) {
        archive.WriteCount(static_cast<std::uint64_t>(m_count));
    } else {
        ResizeForLoading(archive, archive.ReadCount());
    }
    SerializeElements<TYPE>(archive, m_data, m_count);
}
