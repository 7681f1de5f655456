// kx::is_relocatable: whether objects of a type may be moved to another
// address by copying their bytes, as kx::vector does when it grows
// (realloc) and when it opens or closes a gap (memmove).
//
// True for trivially copyable types and for the library's own value types.
// A type that holds a pointer into itself (std::string with its small-text
// buffer, kx::list, kx::map) is not, and kx::vector refuses it at compile
// time. Mark a type of your own that is safe, for instance one that only
// holds pointers to heap memory:
//
//     template <> struct kx::is_relocatable<MyHandle> : std::true_type {};
#pragma once

#include <type_traits>

namespace kx {

template <class T>
struct is_relocatable : std::is_trivially_copyable<T> {};

template <class T>
inline constexpr bool is_relocatable_v = is_relocatable<T>::value;

} // namespace kx
