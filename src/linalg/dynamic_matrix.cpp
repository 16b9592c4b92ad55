#include <cadgeom/linalg/dynamic_matrix.h>

#include "linalg/storage.h"

#include <algorithm>
#include <cmath>

using cadgeom::detail::CheckedCount;
using cadgeom::detail::CopyElements;
using cadgeom::detail::Grow;
using cadgeom::detail::Shrink;

CMatrix::CMatrix(int rows, int columns)
{
    SetSize(rows, columns);
}

CMatrix::CMatrix(const CVector& column) : CMatrix(column.m_size, 1)
{
    CopyElements(m_data, column.m_data, column.m_size);
}

CMatrix::CMatrix(const CMatrix& other) : CMatrix(other.m_rows, other.m_columns)
{
    CopyElements(m_data, other.m_data, GetNumElements());
}

CMatrix::~CMatrix()
{
    FreeMemory();
}

const CMatrix& CMatrix::operator=(const CMatrix& other)
{
    if (this == &other) {
        return *this;
    }
    if (other.GetNumElements() == 0) {
        m_rows = 0;
        m_columns = 0;
        return *this;
    }
    SetSize(other.m_rows, other.m_columns);
    CopyElements(m_data, other.m_data, GetNumElements());
    return *this;
}

const CMatrix& CMatrix::operator=(CMatrix&& other) noexcept
{
    if (this == &other) {
        return *this;
    }
    if (other.GetNumElements() == 0) {
        m_rows = 0;
        m_columns = 0;
        other.FreeMemory();
        return *this;
    }
    FreeMemory();
    m_data = std::exchange(other.m_data, nullptr);
    m_rows = std::exchange(other.m_rows, 0);
    m_columns = std::exchange(other.m_columns, 0);
    m_capacity = std::exchange(other.m_capacity, 0);
    return *this;
}

void CMatrix::SetSize(int rows, int columns)
{
    Grow(m_data, m_capacity, CheckedCount(rows, columns));
    m_rows = rows;
    m_columns = columns;
}

CMatrix CMatrix::operator+(const CMatrix& other) const
{
    CMatrix sum(*this);
    sum += other;
    return sum;
}

CMatrix CMatrix::operator-(const CMatrix& other) const
{
    CMatrix difference(*this);
    difference -= other;
    return difference;
}

const CMatrix& CMatrix::operator+=(const CMatrix& other) noexcept
{
    for (int i = 0; i < m_rows; ++i) {
        double* const row = Row(i);
        const double* const added = other.Row(i);
        for (int j = 0; j < m_columns; ++j) {
            row[j] += added[j];
        }
    }
    return *this;
}

const CMatrix& CMatrix::operator-=(const CMatrix& other) noexcept
{
    for (int i = 0; i < m_rows; ++i) {
        double* const row = Row(i);
        const double* const subtracted = other.Row(i);
        for (int j = 0; j < m_columns; ++j) {
            row[j] -= subtracted[j];
        }
    }
    return *this;
}

CMatrix CMatrix::operator*(double factor) const
{
    CMatrix scaled(*this);
    scaled *= factor;
    return scaled;
}

const CMatrix& CMatrix::operator*=(double factor) noexcept
{
    const int count = GetNumElements();
    for (int i = 0; i < count; ++i) {
        m_data[i] *= factor;
    }
    return *this;
}

void CMatrix::Negate() noexcept
{
    *this *= -1.0;
}

const CMatrix& CMatrix::Transpose()
{
    if (m_rows == m_columns) {
        for (int i = 0; i < m_rows; ++i) {
            double* const row = Row(i);
            for (int j = i + 1; j < m_columns; ++j) {
                std::swap(row[j], Row(j)[i]);
            }
        }
    } else if (m_rows <= 1 || m_columns <= 1) {
        std::swap(m_rows, m_columns);
    } else {
        const CMatrix transposed = GetTranspose();
        CopyElements(m_data, transposed.m_data, GetNumElements());
        std::swap(m_rows, m_columns);
    }
    return *this;
}

CMatrix CMatrix::GetTranspose() const
{
    CMatrix transposed(m_columns, m_rows);
    for (int i = 0; i < m_rows; ++i) {
        const double* const row = Row(i);
        double* const column = transposed.m_data + i;
        for (int j = 0; j < m_columns; ++j) {
            column[static_cast<std::ptrdiff_t>(j) * m_rows] = row[j];
        }
    }
    return transposed;
}

bool CMatrix::IsSymetric() const noexcept
{
    if (m_rows <= 1) {
        return true;
    }
    if (m_columns > m_rows) {
        return false;
    }
    for (int i = 0; i < m_rows - 1; ++i) {
        const double* const row = Row(i);
        for (int j = i + 1; j < m_columns; ++j) {
            if (!(row[j] == Row(j)[i])) {
                return false;
            }
        }
    }
    return true;
}

CVector CMatrix::GetRow(int row) const
{
    CVector copy(m_columns);
    CopyElements(copy.m_data, Row(row), m_columns);
    return copy;
}

CVector CMatrix::GetColumn(int column) const
{
    CVector copy(m_rows);
    for (int i = 0; i < m_rows; ++i) {
        copy.m_data[i] = Row(i)[column];
    }
    return copy;
}

void CMatrix::SetRow(int row, const CVector& values) noexcept
{
    CopyElements(Row(row), values.m_data, m_columns);
}

void CMatrix::SetColumn(int column, const CVector& values) noexcept
{
    for (int i = 0; i < m_rows; ++i) {
        Row(i)[column] = values.m_data[i];
    }
}

void CMatrix::RemoveRow(int row)
{
    static_cast<void>(CheckedCount(m_rows - 1, m_columns));
    if (m_columns != 0) {
        for (int i = row; i < m_rows - 1; ++i) {
            CopyElements(Row(i), Row(i + 1), m_columns);
        }
    }
    --m_rows;
    Shrink(m_data, m_capacity, GetNumElements());
}

void CMatrix::RemoveColumn(int column)
{
    static_cast<void>(CheckedCount(m_rows, m_columns - 1));
    double* target = m_data;
    for (int i = 0; i < m_rows; ++i) {
        const double* const row = Row(i);
        CopyElements(target, row, column);
        CopyElements(target + column, row + column + 1, m_columns - 1 - column);
        target += m_columns - 1;
    }
    --m_columns;
    Shrink(m_data, m_capacity, GetNumElements());
}

void CMatrix::GetSubset(int row, int column, CMatrix& minor) const
{
    // Elements only ever move towards the front of the buffer, in order, so that the target may be this matrix.
    const int rows = m_rows;
    const int columns = m_columns;
    minor.SetSize(rows - 1, columns - 1);
    double* target = minor.m_data;
    const double* source = m_data;
    for (int i = 0; i < rows; ++i, source += columns) {
        if (i != row) {
            CopyElements(target, source, column);
            CopyElements(target + column, source + column + 1, columns - 1 - column);
            target += columns - 1;
        }
    }
}

void CMatrix::GetSubset(int firstRow, int firstColumn, int lastRow, int lastColumn, CMatrix& block) const
{
    const int rows = CheckedCount(static_cast<std::int64_t>(lastRow) - firstRow + 1);
    const int columns = CheckedCount(static_cast<std::int64_t>(lastColumn) - firstColumn + 1);
    const std::ptrdiff_t stride = m_columns;
    block.SetSize(rows, columns);
    if (block.GetNumElements() == 0) {
        return;
    }
    double* target = block.m_data;
    const double* source = m_data + firstRow * stride + firstColumn;
    for (int i = 0; i < rows; ++i, source += stride, target += columns) {
        CopyElements(target, source, columns);
    }
}

double CMatrix::GetMaxAbsValue(int* row, int* column) const noexcept
{
    double largest = -1.0;
    int where = -1;
    const int count = GetNumElements();
    for (int i = 0; i < count; ++i) {
        const double magnitude = std::fabs(m_data[i]);
        if (magnitude > largest) {
            largest = magnitude;
            where = i;
        }
    }
    if (row != nullptr) {
        *row = where < 0 ? -1 : where / m_columns;
    }
    if (column != nullptr) {
        *column = where < 0 ? -1 : where % m_columns;
    }
    return largest;
}

void CMatrix::FreeMemory() noexcept
{
    std::free(m_data);
    m_data = nullptr;
    m_rows = 0;
    m_columns = 0;
    m_capacity = 0;
}
