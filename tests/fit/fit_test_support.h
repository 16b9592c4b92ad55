#pragma once
/// @file
/// What the tests of the fits share: comparison bit for bit, point clouds, and best fits in extended precision.

#include <cadgeom/core/point2d.h>
#include <cadgeom/core/point3d.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

namespace fit_test {

using Real = long double;

inline Real Wide(double value)
{
    return static_cast<Real>(value);
}
inline Real Wide(float value)
{
    return static_cast<Real>(value);
}

inline constexpr double kEpsilon = 1.1920928955078125e-7;
inline constexpr double kPi = 3.14159265358979323846;

/// Equal bits; two not-a-numbers are equal whatever their payload.
inline bool SameBits(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}

template <class Tuple>
testing::AssertionResult SameBits(const Tuple& a, const Tuple& b, int size)
{
    for (int i = 0; i < size; ++i) {
        if (!SameBits(a[i], b[i])) {
            return testing::AssertionFailure() << "component " << i << ": " << std::hexfloat << a[i] << " and " << b[i];
        }
    }
    return testing::AssertionSuccess();
}

inline testing::AssertionResult SameBits(const CadPoint2d<double>& a, const CadPoint2d<double>& b)
{
    return SameBits(a, b, 2);
}
inline testing::AssertionResult SameBits(const CadVector2d<double>& a, const CadVector2d<double>& b)
{
    return SameBits(a, b, 2);
}
inline testing::AssertionResult SameBits(const CadPoint3d<double>& a, const CadPoint3d<double>& b)
{
    return SameBits(a, b, 3);
}
inline testing::AssertionResult SameBits(const CadVector3d<double>& a, const CadVector3d<double>& b)
{
    return SameBits(a, b, 3);
}

template <class T>
CadPoint2d<T> MakePoint(double x, double y)
{
    return CadPoint2d<T>(static_cast<T>(x), static_cast<T>(y));
}
template <class T>
CadPoint3d<T> MakePoint(double x, double y, double z)
{
    return CadPoint3d<T>(static_cast<T>(x), static_cast<T>(y), static_cast<T>(z));
}

template <class T>
CadPoint2d<double> Widened(const CadPoint2d<T>& p)
{
    return {static_cast<double>(p.x()), static_cast<double>(p.y())};
}
template <class T>
CadPoint3d<double> Widened(const CadPoint3d<T>& p)
{
    return {static_cast<double>(p.x()), static_cast<double>(p.y()), static_cast<double>(p.z())};
}

/// Points around an ellipse, moved off it by `noise` at most in each coordinate.
/// @param angle  of the major axis
/// @param arc    part of the turn that is covered
template <class T>
std::vector<CadPoint2d<T>> SampleEllipse(std::mt19937_64& random, int count, double x, double y, double a, double b,
                                         double angle, double noise, double arc = 1.0)
{
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    std::vector<CadPoint2d<T>> points;
    for (int i = 0; i < count; ++i) {
        const double t = 2.0 * kPi * arc * i / count;
        const double u = a * std::cos(t);
        const double v = b * std::sin(t);
        points.push_back(MakePoint<T>(x + u * std::cos(angle) - v * std::sin(angle) + noise * unit(random),
                                      y + u * std::sin(angle) + v * std::cos(angle) + noise * unit(random)));
    }
    return points;
}

/// A right-handed orthonormal frame with a random orientation.
struct Frame {
    CadPoint3d<double> origin;
    CadVector3d<double> x;
    CadVector3d<double> y;
    CadVector3d<double> z;
};

inline Frame RandomFrame(std::mt19937_64& random, double distance)
{
    std::normal_distribution<double> normal;
    Frame frame;
    frame.z.set(normal(random), normal(random), normal(random));
    frame.z.normalize();
    CadVector3d<double> hint(normal(random), normal(random), normal(random));
    frame.x = hint.cross(frame.z);
    frame.x.normalize();
    frame.y = frame.z.cross(frame.x);
    CadVector3d<double> away(normal(random), normal(random), normal(random));
    away.normalize();
    frame.origin = CadPoint3d<double>(0.0, 0.0, 0.0) + away * distance;
    return frame;
}

/// Planar points put into space.
template <class T>
std::vector<CadPoint3d<T>> IntoSpace(const std::vector<CadPoint2d<double>>& planar, const Frame& frame)
{
    std::vector<CadPoint3d<T>> points;
    for (const CadPoint2d<double>& p : planar) {
        const CadPoint3d<double> q = frame.origin + frame.x * p.x() + frame.y * p.y();
        points.push_back(MakePoint<T>(q.x(), q.y(), q.z()));
    }
    return points;
}

/// Eigenvalues, in increasing order, and unit eigenvectors of a symmetric matrix by Jacobi rotations in extended
/// precision.
template <int N>
struct JacobiEigen {
    struct Matrix {
        Real rows[N][N];

        Real* operator[](int row) { return rows[row]; }
        const Real* operator[](int row) const { return rows[row]; }
    };

    explicit JacobiEigen(Matrix a)
    {
        Matrix v{};
        for (int i = 0; i < N; ++i) {
            v[i][i] = 1;
        }
        for (int sweep = 0; sweep < 60; ++sweep) {
            for (int p = 0; p < N; ++p) {
                for (int q = p + 1; q < N; ++q) {
                    Rotate(a, v, p, q);
                }
            }
        }
        for (int i = 0; i < N; ++i) {
            int rank = 0;
            for (int j = 0; j < N; ++j) {
                rank += a[j][j] < a[i][i] || (a[j][j] == a[i][i] && j < i) ? 1 : 0;
            }
            values[rank] = a[i][i];
            for (int k = 0; k < N; ++k) {
                vectors[rank][k] = v[k][i];
            }
        }
    }

    Real values[N];
    Matrix vectors; ///< vectors[i] belongs to values[i]

private:
    static void Rotate(Matrix& a, Matrix& v, int p, int q)
    {
        if (a[p][q] == 0) {
            return;
        }
        const Real theta = (a[q][q] - a[p][p]) / (2 * a[p][q]);
        const Real t = (theta < 0 ? -1 : 1) / (std::fabs(theta) + std::sqrt(theta * theta + 1));
        const Real c = 1 / std::sqrt(t * t + 1);
        const Real s = t * c;
        for (int k = 0; k < N; ++k) {
            const Real kp = a[k][p];
            const Real kq = a[k][q];
            a[k][p] = c * kp - s * kq;
            a[k][q] = s * kp + c * kq;
        }
        for (int k = 0; k < N; ++k) {
            const Real pk = a[p][k];
            const Real qk = a[q][k];
            a[p][k] = c * pk - s * qk;
            a[q][k] = s * pk + c * qk;
            const Real kp = v[k][p];
            const Real kq = v[k][q];
            v[k][p] = c * kp - s * kq;
            v[k][q] = s * kp + c * kq;
        }
        a[p][q] = a[q][p] = 0;
    }
};

/// Mean, and the eigenvalues and axes of the mean products about it, in extended precision.
template <int N>
struct BestAxes {
    template <class Point>
    explicit BestAxes(const std::vector<Point>& points) : BestAxes(points, MeanOf(points))
    {}

    struct Position {
        Real coordinates[N];

        Real& operator[](int axis) { return coordinates[axis]; }
        Real operator[](int axis) const { return coordinates[axis]; }
    };

    Position mean;
    JacobiEigen<N> eigen;

private:
    template <class Point>
    BestAxes(const std::vector<Point>& points, const Position& center) : mean(center), eigen(Products(points, center))
    {}

    template <class Point>
    static Position MeanOf(const std::vector<Point>& points)
    {
        Position sum{};
        for (const Point& point : points) {
            for (int i = 0; i < N; ++i) {
                sum[i] += static_cast<Real>(point[i]);
            }
        }
        for (Real& value : sum.coordinates) {
            value /= static_cast<Real>(points.size());
        }
        return sum;
    }

    template <class Point>
    static typename JacobiEigen<N>::Matrix Products(const std::vector<Point>& points, const Position& center)
    {
        typename JacobiEigen<N>::Matrix sum{};
        for (const Point& point : points) {
            for (int i = 0; i < N; ++i) {
                for (int j = 0; j < N; ++j) {
                    sum[i][j] += (static_cast<Real>(point[i]) - center[i]) * (static_cast<Real>(point[j]) - center[j]) /
                                 static_cast<Real>(points.size());
                }
            }
        }
        return sum;
    }
};

/// Sine of the angle between the lines along two vectors.
template <int N, class A, class B>
Real SineBetween(const A& a, const B& b)
{
    Real dot = 0;
    Real aa = 0;
    Real bb = 0;
    for (int i = 0; i < N; ++i) {
        dot += static_cast<Real>(a[i]) * static_cast<Real>(b[i]);
        aa += static_cast<Real>(a[i]) * static_cast<Real>(a[i]);
        bb += static_cast<Real>(b[i]) * static_cast<Real>(b[i]);
    }
    Real across = 0;
    for (int i = 0; i < N; ++i) {
        const Real part = static_cast<Real>(a[i]) / std::sqrt(aa) -
                          dot / std::sqrt(aa * bb) * static_cast<Real>(b[i]) / std::sqrt(bb);
        across += part * part;
    }
    return std::sqrt(across);
}

} // namespace fit_test
