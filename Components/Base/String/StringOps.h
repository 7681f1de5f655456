// Internal header of libBase: not installed.
//
// The rules that CString and IString share, written once over the standard
// string of either width: 32-bit positions with npos, searches in which an
// empty needle is never found, positions past the end that clamp instead of
// throwing, trimming, global replacement, comparison by code units, and the
// formatting loop.
#pragma once

#include <Base/String/CharacterClass.h>

#include <algorithm>
#include <cstdarg>
#include <string>

namespace kx::detail {

inline constexpr unsigned int npos = 0xFFFFFFFFu;

template <class Char>
using Text = std::basic_string<Char>;

/// A standard string position as a 32-bit one.
inline unsigned int toPosition(std::size_t position) {
    return position >= npos ? npos : static_cast<unsigned int>(position);
}

/// A 32-bit position or length as a standard one (npos stays "to the end").
inline std::size_t toIndex(unsigned int position) {
    return position == npos ? std::string::npos : position;
}

/// Length of a terminated text; a null text is empty.
template <class Char>
std::size_t lengthOf(const Char* text) {
    return text ? std::char_traits<Char>::length(text) : 0;
}

template <class Char>
unsigned int find(const Text<Char>& s, const Char* needle, std::size_t n, unsigned int pos) {
    if (s.empty() || n == 0)
        return npos;
    return toPosition(s.find(needle, toIndex(pos), n));
}

template <class Char>
unsigned int rfind(const Text<Char>& s, const Char* needle, std::size_t n, unsigned int pos) {
    if (s.empty() || n == 0)
        return npos;
    return toPosition(s.rfind(needle, toIndex(pos), n));
}

/// The first index from `pos` upward at which `predicate` holds.
template <class Char>
unsigned int findIf(const Text<Char>& s, bool (*predicate)(Char), unsigned int pos) {
    if (!predicate)
        return npos;
    for (std::size_t i = pos; i < s.size(); ++i) {
        if (predicate(s[i]))
            return static_cast<unsigned int>(i);
    }
    return npos;
}

/// The first index from `pos` (npos: the last) downward at which
/// `predicate` holds.
template <class Char>
unsigned int rfindIf(const Text<Char>& s, bool (*predicate)(Char), unsigned int pos) {
    if (s.empty() || !predicate)
        return npos;
    for (std::size_t i = std::min<std::size_t>(pos, s.size() - 1) + 1; i-- > 0;) {
        if (predicate(s[i]))
            return static_cast<unsigned int>(i);
    }
    return npos;
}

/// The sign of the first difference of code units, else of the lengths.
template <class Char>
int compare(const Char* a, std::size_t aLength, const Char* b, std::size_t bLength) {
    const int r = std::char_traits<Char>::compare(a, b, std::min(aLength, bLength));
    if (r != 0)
        return r < 0 ? -1 : 1;
    return aLength < bLength ? -1 : aLength > bLength ? 1 : 0;
}

template <class Char>
int compare(const Text<Char>& a, const Text<Char>& b) {
    return compare(a.data(), a.size(), b.data(), b.size());
}

/// Nothing happens to an empty string or at a position past the end.
template <class Char>
void erase(Text<Char>& s, unsigned int pos, unsigned int len) {
    if (s.empty() || pos >= s.size())
        return;
    s.erase(pos, toIndex(len));
}

/// A position past the end inserts at the end.
template <class Char>
void insert(Text<Char>& s, unsigned int pos, const Char* text, std::size_t n) {
    s.insert(std::min<std::size_t>(pos, s.size()), text, n);
}

template <class Char>
void insert(Text<Char>& s, unsigned int pos, Char c) {
    s.insert(std::min<std::size_t>(pos, s.size()), 1, c);
}

/// A position past the end replaces nothing and appends.
template <class Char>
void replace(Text<Char>& s, unsigned int pos, unsigned int len, const Char* text, std::size_t n) {
    s.replace(std::min<std::size_t>(pos, s.size()), toIndex(len), text, n);
}

template <class Char>
void replace(Text<Char>& s, unsigned int pos, unsigned int len, Char c) {
    s.replace(std::min<std::size_t>(pos, s.size()), toIndex(len), 1, c);
}

/// A position past the end gives an empty string.
template <class Char>
Text<Char> substr(const Text<Char>& s, unsigned int pos, unsigned int len) {
    return pos >= s.size() ? Text<Char>() : s.substr(pos, toIndex(len));
}

/// Removes the leading characters for which `match` holds.
template <class Char, class Match>
void strip(Text<Char>& s, Match match) {
    std::size_t n = 0;
    while (n < s.size() && match(s[n]))
        ++n;
    s.erase(0, n);
}

/// Removes the trailing characters for which `match` holds.
template <class Char, class Match>
void rstrip(Text<Char>& s, Match match) {
    std::size_t n = s.size();
    while (n > 0 && match(s[n - 1]))
        --n;
    s.erase(n);
}

template <class Char>
void toLowerCase(Text<Char>& s) {
    for (Char& c : s)
        c = kxString::toLower(c);
}

template <class Char>
void toUpperCase(Text<Char>& s) {
    for (Char& c : s)
        c = kxString::toUpper(c);
}

template <class Char>
bool isAscii(const Text<Char>& s) {
    return std::all_of(s.begin(), s.end(), [](Char c) { return kxString::isAscii(c); });
}

/// The sign of the C runtime's collation of two strings.
int collate(const std::string& a, const std::string& b);
int collate(const std::wstring& a, const std::wstring& b);

/// Formats into `s` with the bounded formatter, starting from a buffer of
/// `start` characters that grows by 1,024 while the text does not fit. An
/// empty text, a bad format or an argument that cannot be converted fails:
/// npos, and `s` keeps its text. Otherwise returns the new length. `args`
/// stays usable.
unsigned int format(std::string& s, unsigned int start, const char* format, va_list args);
unsigned int format(std::wstring& s, unsigned int start, const wchar_t* format, va_list args);

} // namespace kx::detail
