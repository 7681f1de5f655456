// Conversions between the three text encodings of the library:
//
// - multibyte text in the process's current C locale (MBS), as used by the C
//   runtime and by narrow file names;
// - wide text (WCS): UTF-16 code units, one per wchar_t on every platform,
//   characters beyond U+FFFF as surrogate pairs;
// - UTF-8.
//
// Every conversion takes a source and its length, a destination and its
// capacity, and an optional `ok` flag that receives whether the conversion
// was exact. With a null destination it only measures. A source length of
// kxString::wholeString means "up to the terminator". Failures return 0.
//
// Thread safety: all functions are reentrant; MBStoWCS, WCStoMBS and
// getMultiByteStringSize follow the calling thread's C locale.
#pragma once

#include <Base/Utility/Api.h>

namespace kxString {

/// Source length meaning "up to the terminator".
inline constexpr unsigned int wholeString = 0xFFFFFFFFu;

/// Multibyte text of the current locale to wide text. Conversion always runs
/// to the terminator: `srcLen` is only a guard, and a `srcLen` shorter than
/// the text gives 0. The destination needs room for the terminator:
///
///     MBStoWCS("abc", 2, dst, 4, &ok)           => 0
///     MBStoWCS("abc", wholeString, null, 0, &ok) => 3
///     MBStoWCS("abc", 3, dst, 3, &ok)           => 0
///     MBStoWCS("abc", 3, dst, 4, &ok)           => 3, dst = L"abc"
///
/// Bytes that the locale cannot decode become "?" with `ok` false; measuring
/// such text with wholeString gives 0 (only an explicit length is counted).
BASE_API unsigned int MBStoWCS(const char* src, unsigned int srcLen, wchar_t* dst,
                               unsigned int dstSize, bool* ok);

/// Wide text to multibyte text of the current locale, with the same rules as
/// MBStoWCS. Characters that the locale lacks make `ok` false; the text is
/// then converted one unit per byte, and every unit that is not exactly one
/// byte in the locale (also a character of a double-byte locale) becomes "?".
BASE_API unsigned int WCStoMBS(const wchar_t* src, unsigned int srcLen, char* dst,
                               unsigned int dstSize, bool* ok);

/// UTF-8 to wide text. A leading byte-order mark is skipped unless `keepBOM`
/// (then it becomes U+FEFF). With wholeString the terminator is converted and
/// counted; with an explicit length the result is not terminated, and a
/// destination of exactly the measured size suffices. Each ill-formed
/// sequence (its maximal subpart) becomes U+FFFD and makes `ok` false:
///
///     UTF8toWCS("\xEF\xBB\xBF" "A", 4, null, 0, false, &ok) => 1
///     UTF8toWCS("\xEF\xBB\xBF" "A", 4, null, 0, true, &ok)  => 2
///     UTF8toWCS("A", wholeString, null, 0, false, &ok)      => 2
///     UTF8toWCS("A\xFF" "B", 3, dst, 3, false, &ok)          => 3, L"A\uFFFDB", ok false
BASE_API unsigned int UTF8toWCS(const char* src, unsigned int srcLen, wchar_t* dst,
                                unsigned int dstSize, bool keepBOM, bool* ok);

/// Wide text to UTF-8. Surrogate pairs are joined; a lone surrogate becomes
/// U+FFFD without making `ok` false. A wchar_t above U+FFFF is taken as the
/// character it names, and one above U+10FFFF becomes U+FFFD. With
/// wholeString the terminator is converted and counted.
BASE_API unsigned int WCStoUTF8(const wchar_t* src, unsigned int srcLen, char* dst,
                                unsigned int dstSize, bool* ok);

/// 3 when `text` starts with the UTF-8 byte-order mark EF BB BF, else 0. A
/// null text, or `len` below 3 and not -1 (terminated text), gives 0.
BASE_API int detectUTF8BOM(const char* text, int len);

/// mbstowcs(dst, src, n) in wide text: the units converted (terminator not
/// counted, and stored only when there is room), or 0xFFFFFFFF when `src`
/// does not decode. A null `dst` measures; a null `src` gives 0.
BASE_API unsigned int getMultiByteStringSize(wchar_t* dst, const char* src, unsigned int n);

/// The replacement for characters that cannot be converted: "?".
BASE_API char getDefaultMBChar();

/// The wide replacement for bytes that cannot be converted: L'?'.
BASE_API wchar_t getDefaultWChar();

} // namespace kxString
