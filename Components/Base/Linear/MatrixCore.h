// kxLinear::MatrixCore: the storage, element access, comparison and
// composition that every matrix class shares. Include the matrix classes'
// headers, not this one.
//
// A matrix of Rows × Cols elements stored by rows; M is the matrix class
// itself, which supplies its Identity and its product operator*. Element
// (r, c) is at index Cols·r + c; outside the matrix it reads 0 and a write
// is lost, the rule of the point and vector classes.
//
// Thread safety: plain values.
#pragma once

#include <Base/Linear/Components.h>
#include <Base/Utility/Api.h>

#include <concepts>

namespace kxLinear {

template <class T, class M, int Rows, int Cols>
class BASE_API MatrixCore {
public:
    /// Uninitialised.
    MatrixCore() = default;
    /// s on the diagonal, zero elsewhere: the identity for s = 1.
    explicit constexpr MatrixCore(T s) noexcept : m_{} {
        for (int i = 0; i < kSize; ++i) {
            if (i / Cols == i % Cols)
                m_[i] = s;
        }
    }
    /// Rows × Cols values in storage order; a null pointer gives zeros.
    template <kx::detail::PointerTo<T> P>
    explicit MatrixCore(P values) noexcept : m_{} {
        if (values) {
            for (int i = 0; i < kSize; ++i)
                m_[i] = values[i];
        }
    }

    operator T*() { return m_; }
    operator const T*() const { return m_; }
    T& operator()(int row, int col) {
        return inRange(row, col) ? m_[Cols * row + col] : kx::detail::lostComponent<T>();
    }
    const T& operator()(int row, int col) const {
        return inRange(row, col) ? m_[Cols * row + col] : kx::detail::lostComponent<T>();
    }

    M& identity() { return self() = M::Identity; }
    M& zero() { return self() = M(T(0)); }
    /// Copies the values in storage order; a null pointer changes nothing.
    template <kx::detail::PointerTo<T> P>
    M& set(P values) {
        if (values) {
            for (int i = 0; i < kSize; ++i)
                m_[i] = values[i];
        }
        return self();
    }
    /// Writes the values in storage order; a null pointer gets nothing.
    template <std::same_as<T*> P>
    void get(P values) const {
        if (values) {
            for (int i = 0; i < kSize; ++i)
                values[i] = m_[i];
        }
    }

    /// M ← A·M: A applies before this transform.
    M& preMult(const M& a) { return self() = a * self(); }
    /// out = A·M; out may be this matrix or a.
    void preMult(M& out, const M& a) const { out = a * self(); }
    /// M ← M·B: B applies after this transform.
    M& operator*=(const M& b) { return self() = self() * b; }

    /// All elements exactly.
    friend bool operator==(const M& a, const M& b) {
        const T* x = a;
        const T* y = b;
        for (int i = 0; i < kSize; ++i) {
            if (x[i] != y[i])
                return false;
        }
        return true;
    }

protected:
    static constexpr int kSize = Rows * Cols;

    M& self() { return static_cast<M&>(*this); }
    const M& self() const { return static_cast<const M&>(*this); }

    T m_[kSize];

private:
    static constexpr bool inRange(int row, int col) {
        return row >= 0 && row < Rows && col >= 0 && col < Cols;
    }
};

/// The transformed copy of anything that a matrix's preMult(out, in) takes:
/// line * m. This is how to transform in place: line = line * m.
template <class G, class M>
requires requires(const M& m, G& out, const G& in) {
    m.preMult(out, in);
}
G operator*(const G& g, const M& m) {
    G out;
    m.preMult(out, g);
    return out;
}

} // namespace kxLinear
