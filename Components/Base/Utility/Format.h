/* Bounded formatted printing and 64-bit number text.
 *
 * One printf family with a single rule for results and truncation, for narrow
 * and wide text, and two small conversions between 64-bit integers and
 * decimal text. Valid C and C++.
 *
 * The truncation rule: at most `size` characters are stored, and the
 * terminator only when it fits after the text. The result is the length of
 * the text only when the text and its terminator fit with at least one
 * character to spare; otherwise it is -1, which callers read as "the text
 * may be cut":
 *
 *     HN_snprintf(b, 10, "abc") => 3,  b = "abc"
 *     HN_snprintf(b, 4, "abc")  => -1, b = "abc" (terminated)
 *     HN_snprintf(b, 3, "abc")  => -1, b holds 'a' 'b' 'c' and no terminator
 *
 * Conversions follow the C standard, plus the Windows size prefixes that
 * callers write: %I64d, %I64u, %I64x (64-bit), %I32d (32-bit) and %Id
 * (pointer-sized). In both narrow and wide formats %s and %c take narrow
 * arguments and %S, %C, %ls and %lc wide ones; %hs and %hc are always narrow.
 * Wide text is UTF-16 code units, one per wchar_t: narrow arguments of a wide
 * format are decoded in the current C locale (characters beyond U+FFFF become
 * surrogate pairs), and wide arguments of a narrow format are encoded in it
 * (surrogate pairs are joined first).
 *
 * Defined results for bad input, all -1 with an empty text stored when
 * `size` is not 0: a null format; a null buffer with a non-zero size (nothing
 * is stored); an argument that the current locale cannot convert; a trailing
 * lone "%"; the conversions %n and positional arguments ("%1$d"), which are
 * not supported. An unknown conversion such as "%y" is copied as it stands.
 * A null string argument prints as "(null)".
 *
 * Thread safety: every function is reentrant except int64ToAscii and
 * uint64ToAscii, whose result buffers are shared by all threads.
 */
#ifndef BASE_UTILITY_FORMAT_H
#define BASE_UTILITY_FORMAT_H

#include <Base/Utility/Api.h>

#include <stdarg.h>
#include <stddef.h>
#include <stdint.h>
#include <wchar.h>

BASE_BEGIN_C

/// Formats into `buffer` of `size` characters under the truncation rule.
BASE_API int HN_snprintf(char* buffer, size_t size, const char* format, ...)
    BASE_PRINTF_FORMAT(3, 4);

/// HN_snprintf with a va_list; `args` is left untouched for the caller.
BASE_API int HN_vsnprintf(char* buffer, size_t size, const char* format, va_list args)
    BASE_PRINTF_FORMAT(3, 0);

/// Wide HN_snprintf; `size` counts wide characters.
BASE_API int HN_swprintf(wchar_t* buffer, size_t size, const wchar_t* format, ...);

/// Wide HN_vsnprintf. The format is passed through HN_convert_string_format
/// and the rewritten copy is read with the wide convention of the Windows
/// runtime (%s and %c wide, %S and %C narrow). So the C standard's plain
/// forms keep their meaning (%s, %-5.2s and %c take narrow arguments, %S and
/// %C wide ones), while the forms that the rewrite leaves alone take wide
/// arguments:
///
///     HN_swprintf(b, 16, L"[%.*s]", 2, L"abc")  => L"[ab]"
///     HN_swprintf(b, 16, L"[%+s|%ls]", L"x", L"y") => L"[x|y]"
BASE_API int HN_vswprintf(wchar_t* buffer, size_t size, const wchar_t* format, va_list args);

/// Returns a copy of a wide format with the meanings of "s"/"S" and "c"/"C"
/// swapped, for formatters that read wide formats the other way round. The
/// caller frees the copy with free(). Only an optional "-" flag, a width and
/// a precision may stand between "%" and the letter:
///
///     L"100%% %s %-5.2S %c %ls" => L"100%% %S %-5.2s %C %ls"
///
/// A null format, or a failed allocation, gives null.
BASE_API wchar_t* HN_convert_string_format(const wchar_t* format);

/// Writes `value` in decimal into static buffer `slot` (0 to 2) of this
/// function's ring and returns it; the three slots let one call hold three
/// results at once. Another slot number is taken modulo 3.
BASE_API char* int64ToAscii(int64_t value, int slot);

/// Unsigned twin of int64ToAscii with a ring of its own.
BASE_API char* uint64ToAscii(uint64_t value, int slot);

/// Reads a decimal integer as sscanf("%lld") does: leading white space, an
/// optional sign, then digits as far as they go; the rest is ignored. No
/// number, or a null text, gives 0. Out-of-range values saturate.
///
///     "  -42abc" => -42,  "abc" => 0
BASE_API int64_t asciiToInt64(const char* text);

/// Unsigned twin of asciiToInt64, as sscanf("%llu"): a "-" sign negates
/// modulo 2^64 ("-1" => 18446744073709551615); out-of-range values saturate.
BASE_API uint64_t asciiToUInt64(const char* text);

BASE_END_C

#endif
