// Internal header of libBase: not installed.
//
// UTF-16 code units in wchar_t, and UTF-8 by the Unicode rules: the
// arithmetic shared by the encoding conversions and the formatter. Wide text
// holds one UTF-16 unit per wchar_t on every platform; a wchar_t above
// U+FFFF (a 32-bit wide literal) is read as the character it names.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kx::unicode {

inline constexpr char32_t kReplacementChar = 0xFFFD;
inline constexpr char32_t kMaxCodePoint = 0x10FFFF;

/// The wchar_t's value as an unsigned number (wchar_t is signed on Linux).
constexpr char32_t unitValue(wchar_t unit) {
    return static_cast<char32_t>(static_cast<std::uint32_t>(unit));
}

constexpr bool isSurrogate(char32_t u) {
    return (u & 0xFFFFF800u) == 0xD800u;
}
constexpr bool isHighSurrogate(char32_t u) {
    return (u & 0xFFFFFC00u) == 0xD800u;
}
constexpr bool isLowSurrogate(char32_t u) {
    return (u & 0xFFFFFC00u) == 0xDC00u;
}
constexpr char32_t joinSurrogates(char32_t high, char32_t low) {
    return 0x10000u + ((high - 0xD800u) << 10) + (low - 0xDC00u);
}
constexpr wchar_t highSurrogate(char32_t codePoint) {
    return static_cast<wchar_t>(0xD800u + ((codePoint - 0x10000u) >> 10));
}
constexpr wchar_t lowSurrogate(char32_t codePoint) {
    return static_cast<wchar_t>(0xDC00u + (codePoint & 0x3FFu));
}

/// UTF-16 units that `codePoint` takes.
constexpr unsigned unitsOf(char32_t codePoint) {
    return codePoint > 0xFFFFu ? 2 : 1;
}

/// Stores `codePoint` as one or two UTF-16 units and returns how many.
inline unsigned putUtf16(wchar_t* out, char32_t codePoint) {
    if (codePoint <= 0xFFFFu) {
        out[0] = static_cast<wchar_t>(codePoint);
        return 1;
    }
    out[0] = highSurrogate(codePoint);
    out[1] = lowSurrogate(codePoint);
    return 2;
}

/// Reads the character that starts at `p`, joining a surrogate pair whose low
/// half lies before `end`, and advances `p`. A lone surrogate comes back as it
/// stands, for the caller to judge.
inline char32_t readUtf16(const wchar_t*& p, const wchar_t* end) {
    const char32_t u = unitValue(*p++);
    if (isHighSurrogate(u) && p != end && isLowSurrogate(unitValue(*p)))
        return joinSurrogates(u, unitValue(*p++));
    return u;
}

enum class Utf8Status : unsigned char {
    valid,
    invalid,   ///< an ill-formed sequence
    truncated, ///< a well-formed start cut off by the end of the input
};

struct Utf8Char {
    char32_t codePoint; ///< U+FFFD unless valid
    unsigned length;    ///< bytes taken: the maximal subpart when not valid
    Utf8Status status;
};

/// Decodes the UTF-8 character at `p` (p < end). An ill-formed sequence takes
/// its maximal subpart: the longest start of a well-formed sequence, or one
/// byte. So E0 80 gives two U+FFFD (E0 cannot precede 80) and E1 80 41 gives
/// one U+FFFD and "A".
inline Utf8Char decodeUtf8(const unsigned char* p, const unsigned char* end) {
    const unsigned lead = p[0];
    if (lead < 0x80)
        return {lead, 1, Utf8Status::valid};
    if (lead < 0xC2 || lead > 0xF4)
        return {kReplacementChar, 1, Utf8Status::invalid};
    unsigned length = 4;
    unsigned low = 0x80;
    unsigned high = 0xBF;
    char32_t codePoint = lead & 0x07u;
    if (lead < 0xE0) {
        length = 2;
        codePoint = lead & 0x1Fu;
    } else if (lead < 0xF0) {
        length = 3;
        codePoint = lead & 0x0Fu;
        low = lead == 0xE0 ? 0xA0 : 0x80;  // no overlong forms
        high = lead == 0xED ? 0x9F : 0xBF; // no surrogates
    } else {
        low = lead == 0xF0 ? 0x90 : 0x80;
        high = lead == 0xF4 ? 0x8F : 0xBF; // nothing above U+10FFFF
    }
    const std::ptrdiff_t available = end - p;
    for (unsigned i = 1; i < length; ++i) {
        if (static_cast<std::ptrdiff_t>(i) == available)
            return {kReplacementChar, i, Utf8Status::truncated};
        const unsigned byte = p[i];
        if (byte < low || byte > high)
            return {kReplacementChar, i, Utf8Status::invalid};
        codePoint = (codePoint << 6) | (byte & 0x3Fu);
        low = 0x80;
        high = 0xBF;
    }
    return {codePoint, length, Utf8Status::valid};
}

/// Bytes that `codePoint` (a scalar value) takes in UTF-8.
constexpr unsigned utf8Length(char32_t codePoint) {
    return codePoint < 0x80 ? 1 : codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
}

/// Stores the scalar value `codePoint` in UTF-8 and returns the bytes taken.
inline unsigned encodeUtf8(char* out, char32_t codePoint) {
    if (codePoint < 0x80) {
        out[0] = static_cast<char>(codePoint);
        return 1;
    }
    if (codePoint < 0x800) {
        out[0] = static_cast<char>(0xC0 | (codePoint >> 6));
        out[1] = static_cast<char>(0x80 | (codePoint & 0x3F));
        return 2;
    }
    if (codePoint < 0x10000) {
        out[0] = static_cast<char>(0xE0 | (codePoint >> 12));
        out[1] = static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        out[2] = static_cast<char>(0x80 | (codePoint & 0x3F));
        return 3;
    }
    out[0] = static_cast<char>(0xF0 | (codePoint >> 18));
    out[1] = static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F));
    out[2] = static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
    out[3] = static_cast<char>(0x80 | (codePoint & 0x3F));
    return 4;
}

struct Utf16Count {
    std::size_t units;
    bool valid; ///< no ill-formed input was replaced
};

/// Converts `size` bytes of UTF-8 to UTF-16 units, each ill-formed maximal
/// subpart becoming U+FFFD. With a null `dst` it only counts; otherwise `dst`
/// has room for the count (at most `size` units).
Utf16Count utf8ToUtf16(const char* src, std::size_t size, wchar_t* dst);

/// Converts `size` UTF-16 units to UTF-8, each lone surrogate (and each
/// wchar_t beyond U+10FFFF) becoming U+FFFD. With a null `dst` it only
/// counts; otherwise `dst` has room for the count (at most 4 * `size` bytes).
std::size_t utf16ToUtf8(const wchar_t* src, std::size_t size, char* dst);

} // namespace kx::unicode
