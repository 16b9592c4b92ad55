#include <cadgeom/linalg/dynamic_vector.h>

#include <cadgeom/linalg/dynamic_matrix.h>

#include "linalg/storage.h"

#include <cmath>

using cadgeom::detail::CheckedCount;
using cadgeom::detail::CopyElements;
using cadgeom::detail::Grow;

CVector::CVector(int size)
{
    SetSize(size);
}

CVector::CVector(const CadVector3d<double>& vector) : CVector(3)
{
    m_data[0] = vector.x();
    m_data[1] = vector.y();
    m_data[2] = vector.z();
}

CVector::CVector(const CadVector3d<float>& vector) : CVector(3)
{
    m_data[0] = static_cast<double>(vector.x());
    m_data[1] = static_cast<double>(vector.y());
    m_data[2] = static_cast<double>(vector.z());
}

CVector::CVector(const CVector& other) : CVector(other.m_size)
{
    CopyElements(m_data, other.m_data, m_size);
}

CVector::~CVector()
{
    FreeMemory();
}

const CVector& CVector::operator=(const CVector& other)
{
    if (this != &other) {
        SetSize(other.m_size);
        CopyElements(m_data, other.m_data, m_size);
    }
    return *this;
}

const CVector& CVector::operator=(CVector&& other) noexcept
{
    if (this == &other) {
        return *this;
    }
    if (other.m_size == 0) {
        m_size = 0;
        other.FreeMemory();
        return *this;
    }
    FreeMemory();
    m_data = std::exchange(other.m_data, nullptr);
    m_size = std::exchange(other.m_size, 0);
    m_capacity = std::exchange(other.m_capacity, 0);
    return *this;
}

void CVector::SetSize(int size)
{
    Grow(m_data, m_capacity, CheckedCount(size));
    m_size = size;
}

CVector CVector::operator+(const CVector& other) const
{
    CVector sum(m_size);
    for (int i = 0; i < m_size; ++i) {
        sum.m_data[i] = m_data[i] + other.m_data[i];
    }
    return sum;
}

CVector CVector::operator-(const CVector& other) const
{
    CVector difference(m_size);
    for (int i = 0; i < m_size; ++i) {
        difference.m_data[i] = m_data[i] - other.m_data[i];
    }
    return difference;
}

CVector CVector::operator*(double factor) const
{
    CVector scaled(m_size);
    for (int i = 0; i < m_size; ++i) {
        scaled.m_data[i] = m_data[i] * factor;
    }
    return scaled;
}

const CVector& CVector::operator*=(double factor) noexcept
{
    for (int i = 0; i < m_size; ++i) {
        m_data[i] *= factor;
    }
    return *this;
}

void CVector::Negate() noexcept
{
    *this *= -1.0;
}

double CVector::operator*(const CVector& other) const noexcept
{
    double sum = 0.0;
    for (int i = 0; i < m_size; ++i) {
        sum += m_data[i] * other.m_data[i];
    }
    return sum;
}

double CVector::GetLengthSquared() const noexcept
{
    return *this * *this;
}

double CVector::GetLength() const noexcept
{
    return std::sqrt(GetLengthSquared());
}

CMatrix CVector::GetTranspose() const
{
    CMatrix row(1, m_size);
    CopyElements(row.m_data, m_data, m_size);
    return row;
}

CMatrix CVector::operator*(const CMatrix& matrix) const
{
    CMatrix product(m_size, matrix.m_columns);
    for (int i = 0; i < m_size; ++i) {
        double* const row = product.Row(i);
        for (int j = 0; j < matrix.m_columns; ++j) {
            row[j] = m_data[i] * matrix.m_data[j];
        }
    }
    return product;
}

void CVector::GetSubset(int first, int last, CVector& subset) const
{
    subset.SetSize(CheckedCount(static_cast<std::int64_t>(last) - first + 1));
    if (subset.m_size != 0) {
        CopyElements(subset.m_data, m_data + first, subset.m_size);
    }
}

void CVector::GetSubset(int skipped, CVector& subset) const
{
    const int size = m_size;
    subset.SetSize(size - 1);
    CopyElements(subset.m_data, m_data, skipped);
    if (skipped < size - 1) {
        CopyElements(subset.m_data + skipped, m_data + skipped + 1, size - 1 - skipped);
    }
}

void CVector::InsertAt(int index, double value)
{
    const int behind = m_size - index;
    SetSize(CheckedCount(static_cast<std::int64_t>(m_size) + 1));
    CopyElements(m_data + index + 1, m_data + index, behind);
    m_data[index] = value;
}

bool CVector::IsZero(double tolerance) const noexcept
{
    for (int i = 0; i < m_size; ++i) {
        if (std::fabs(m_data[i]) > tolerance) {
            return false;
        }
    }
    return true;
}

double CVector::GetMaxAbsValue(int* index) const noexcept
{
    double largest = -1.0;
    int where = -1;
    for (int i = 0; i < m_size; ++i) {
        const double magnitude = std::fabs(m_data[i]);
        if (magnitude > largest) {
            largest = magnitude;
            where = i;
        }
    }
    if (index != nullptr) {
        *index = where;
    }
    return largest;
}

void CVector::FreeMemory() noexcept
{
    std::free(m_data);
    m_data = nullptr;
    m_size = 0;
    m_capacity = 0;
}
