// Internal header of libBase: not installed.
//
// The current C locale's character encoding and numeric conventions. The
// encoding operations work in code points, so that portable code never
// depends on the width of wchar_t. All are reentrant and follow the calling
// thread's locale.
#pragma once

#include <cstddef>
#include <cwchar>

namespace kx::platform {

/// The current locale's character encoding, where portable code can do the
/// work itself: plain ASCII (bytes above 0x7F invalid), UTF-8, or another.
enum class LocaleEncoding { ascii, utf8, other };

/// The calling thread's locale encoding.
LocaleEncoding localeEncoding();

/// decodeLocaleChar's result for bytes that form no character.
inline constexpr std::ptrdiff_t kInvalidSequence = -1;
/// decodeLocaleChar's result for a character cut off by the end of the input.
inline constexpr std::ptrdiff_t kIncompleteSequence = -2;

/// Decodes the character at `text`, looking at no more than `size` bytes, as
/// mbrtowc does: returns the bytes it took (0 for the terminator, which
/// stores code point 0), kInvalidSequence or kIncompleteSequence.
std::ptrdiff_t decodeLocaleChar(char32_t& codePoint, const char* text, std::size_t size,
                                std::mbstate_t& state);

/// Encodes `codePoint` into `out`, which has room for localeMaxCharLength()
/// bytes, as wcrtomb does: returns the bytes written, or -1 when the locale
/// has no such character.
std::ptrdiff_t encodeLocaleChar(char* out, char32_t codePoint, std::mbstate_t& state);

/// Most bytes that one character takes in the current locale.
std::size_t localeMaxCharLength();

/// The current locale's decimal point: terminated narrow text, valid until
/// the locale changes.
const char* localeDecimalPoint();

} // namespace kx::platform
