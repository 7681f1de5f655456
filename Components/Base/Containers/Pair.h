// kx::pair: a record of two members, used in return types such as
// kx::pair<IString, kxUtil::Error>.
#pragma once

#include <Base/Containers/Relocatable.h>

#include <compare>
#include <type_traits>
#include <utility>

namespace kx {

template <class T1, class T2>
struct pair {
    using first_type = T1;
    using second_type = T2;

    T1 first{};
    T2 second{};

    constexpr pair() = default;
    constexpr pair(const T1& a, const T2& b) : first(a), second(b) {}
    template <class U1, class U2>
    constexpr pair(U1&& a, U2&& b) : first(std::forward<U1>(a)), second(std::forward<U2>(b)) {}
    template <class U1, class U2>
    constexpr pair(const pair<U1, U2>& other) : first(other.first), second(other.second) {}
    /// To and from the standard pair, for code that mixes the two.
    template <class U1, class U2>
    constexpr pair(const std::pair<U1, U2>& other) : first(other.first), second(other.second) {}
    template <class U1, class U2>
    constexpr operator std::pair<U1, U2>() const {
        return {first, second};
    }

    void
    swap(pair& other) noexcept(std::is_nothrow_swappable_v<T1>&& std::is_nothrow_swappable_v<T2>) {
        using std::swap;
        swap(first, other.first);
        swap(second, other.second);
    }

    // Defaulted comparisons are constexpr wherever the members' are.
    friend bool operator==(const pair&, const pair&) = default;
    friend auto operator<=>(const pair&, const pair&) = default;
};

template <class T1, class T2>
pair(T1, T2) -> pair<T1, T2>;

/// A pair moves as bytes when both of its members do.
template <class T1, class T2>
struct is_relocatable<pair<T1, T2>>
    : std::bool_constant<is_relocatable_v<T1> && is_relocatable_v<T2>> {};

template <class T1, class T2>
constexpr pair<std::decay_t<T1>, std::decay_t<T2>> make_pair(T1&& a, T2&& b) {
    return {std::forward<T1>(a), std::forward<T2>(b)};
}

} // namespace kx
