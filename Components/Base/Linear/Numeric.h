// Internal header of libBase: not installed.
//
// Loops over components that the linear-algebra classes share: conversion
// between precisions, the tolerance test of every equivalent(), the finite
// tests and printing of the matrices, the normalisation that zeroes a vector
// too short to have a direction, the bounding box of a transformed box, and
// Gauss-Jordan inversion.
#pragma once

#include <Base/Linear/Components.h>

#include <cmath>
#include <ostream>
#include <utility>

namespace kx::detail {

/// n elements converted to the precision of out.
template <class T, class U>
void convertElements(T* out, const U* in, int n) {
    for (int i = 0; i < n; ++i)
        out[i] = T(in[i]);
}

/// |aᵢ - bᵢ| < tol for all n components; false for any NaN.
template <class T>
bool withinTolerance(const T* a, const T* b, int n, T tol) {
    for (int i = 0; i < n; ++i) {
        if (!(std::fabs(a[i] - b[i]) < tol))
            return false;
    }
    return true;
}

template <class T>
bool allFinite(const T* a, int n) {
    for (int i = 0; i < n; ++i) {
        if (!std::isfinite(a[i]))
            return false;
    }
    return true;
}

template <class T>
bool anyNaN(const T* a, int n) {
    for (int i = 0; i < n; ++i) {
        if (std::isnan(a[i]))
            return true;
    }
    return false;
}

/// "[[a, b], [c, d]]" for a matrix of rows × cols values stored by rows.
template <class T>
std::ostream& printRows(std::ostream& out, const T* a, int rows, int cols) {
    out << '[';
    for (int r = 0; r < rows; ++r) {
        out << (r ? ", [" : "[");
        for (int c = 0; c < cols; ++c)
            out << (c ? ", " : "") << a[r * cols + c];
        out << ']';
    }
    return out << ']';
}

/// Scales c to unit length and returns true when its squared length is
/// above tol2; otherwise zeroes it and returns false.
template <class T, int N>
bool normalizeOrZero(T* c, T tol2) {
    T s = 0;
    for (int i = 0; i < N; ++i)
        s += c[i] * c[i];
    if (s > tol2) {
        const T r = reciprocal(std::sqrt(s));
        for (int i = 0; i < N; ++i)
            c[i] *= r;
        return true;
    }
    for (int i = 0; i < N; ++i)
        c[i] = 0;
    return false;
}

/// The smallest box holding the images of the corners of the box [lo, hi]
/// under the N-dimensional affine matrix m (N rows of the linear part, then
/// the translation): each output coordinate is smallest (largest) where
/// every input coordinate takes the end that minimises (maximises) its term.
template <int N>
void transformBox(const double* m, const double* lo, const double* hi, double* low, double* high) {
    for (int k = 0; k < N; ++k) {
        low[k] = high[k] = m[N * N + k];
        for (int i = 0; i < N; ++i) {
            const double a = m[N * i + k] * lo[i];
            const double b = m[N * i + k] * hi[i];
            low[k] += a < b ? a : b;
            high[k] += a < b ? b : a;
        }
    }
}

/// Inverts the N×N matrix a in place by Gauss-Jordan elimination with
/// partial pivoting: the pivot of each column is the row, from the current
/// one down, of largest magnitude (the first on ties). Returns false, with a
/// left in an unspecified state, when a pivot's magnitude is below tol or
/// NaN.
template <int N>
bool gaussJordan(double (&a)[N][N], double tol) {
    double inv[N][N];
    for (int r = 0; r < N; ++r) {
        for (int c = 0; c < N; ++c)
            inv[r][c] = r == c ? 1.0 : 0.0;
    }
    for (int col = 0; col < N; ++col) {
        int pivot = col;
        double largest = std::fabs(a[col][col]);
        for (int r = col + 1; r < N; ++r) {
            const double m = std::fabs(a[r][col]);
            if (m > largest) {
                largest = m;
                pivot = r;
            }
        }
        if (!(largest >= tol))
            return false;
        if (pivot != col) {
            for (int c = 0; c < N; ++c) {
                std::swap(a[col][c], a[pivot][c]);
                std::swap(inv[col][c], inv[pivot][c]);
            }
        }
        if (col == N - 2) {
            // The last pivot will be (a·p - b·c) / p: test it before the
            // division, the slowest step, so that a singular matrix fails
            // early. An overflow (NaN) leaves the test to the last step.
            const double p = a[col][col];
            const double last = a[N - 1][N - 1] * p - a[N - 1][N - 2] * a[col][N - 1];
            if (std::fabs(last) < tol * std::fabs(p))
                return false;
        }
        // Columns left of col are already those of the identity in a. The
        // products with the unscaled pivot row do not wait for the
        // division: only the last multiplication does.
        const double scale = reciprocal(a[col][col]);
        for (int r = 0; r < N; ++r) {
            if (r == col)
                continue;
            const double f = a[r][col];
            for (int c = col + 1; c < N; ++c)
                a[r][c] -= f * a[col][c] * scale;
            for (int c = 0; c < N; ++c)
                inv[r][c] -= f * inv[col][c] * scale;
        }
        for (int c = col + 1; c < N; ++c)
            a[col][c] *= scale;
        for (int c = 0; c < N; ++c)
            inv[col][c] *= scale;
    }
    for (int r = 0; r < N; ++r) {
        for (int c = 0; c < N; ++c)
            a[r][c] = inv[r][c];
    }
    return true;
}

} // namespace kx::detail
