// Character classes and case mapping over the C runtime's, for narrow and
// wide characters, with one deliberate change: a table of East Asian symbol
// characters (circled numbers, box drawing, arrows, mathematical and
// fullwidth signs...) counts as letters, so that names written with them
// stay whole words:
//
//     isAlpha(L'\u2460') => true     (CIRCLED DIGIT ONE)
//     isPunct(L'\uFF04') => false    (FULLWIDTH DOLLAR SIGN)
//
// Each class follows the calling thread's C locale. A narrow character is
// taken as an unsigned byte, so bytes above 0x7F never reach the runtime as
// negative values. Wide characters are UTF-16 code units.
#pragma once

#include <Base/Utility/Api.h>

namespace kxString {

/// Alphanumeric by the runtime, or a letter modifier.
BASE_API bool isAlnum(char c);
BASE_API bool isAlnum(wchar_t c);

/// isAlnum and not isDigit: letter modifiers count as letters.
BASE_API bool isAlpha(char c);
BASE_API bool isAlpha(wchar_t c);

/// Below 128 (a wide character is taken as unsigned).
BASE_API bool isAscii(char c);
BASE_API bool isAscii(wchar_t c);
/// True for a null or empty text and for text whose every byte is ASCII.
BASE_API bool isAscii(const char* text);

BASE_API bool isCntrl(char c);
BASE_API bool isCntrl(wchar_t c);
BASE_API bool isDigit(char c);
BASE_API bool isDigit(wchar_t c);
BASE_API bool isLower(char c);
BASE_API bool isLower(wchar_t c);
BASE_API bool isUpper(char c);
BASE_API bool isUpper(wchar_t c);
BASE_API bool isSpace(char c);
BASE_API bool isSpace(wchar_t c);
BASE_API bool isXDigit(char c);
BASE_API bool isXDigit(wchar_t c);

/// Graphic by the runtime, or a letter modifier.
BASE_API bool isGraph(char c);
BASE_API bool isGraph(wchar_t c);

/// Printable by the runtime, or a letter modifier. A wide tab is never
/// printable.
BASE_API bool isPrint(char c);
BASE_API bool isPrint(wchar_t c);

/// Punctuation by the runtime, and not a letter modifier.
BASE_API bool isPunct(char c);
BASE_API bool isPunct(wchar_t c);

/// In the letter-modifier table; never for a narrow character.
BASE_API bool isLetterModifier(char c);
BASE_API bool isLetterModifier(wchar_t c);

/// Line feed or carriage return, and a control character.
BASE_API bool isNewLine(char c);
BASE_API bool isNewLine(wchar_t c);

/// Horizontal tab, and a control character.
BASE_API bool isTab(char c);
BASE_API bool isTab(wchar_t c);

/// The runtime's case mappings (tolower, towlower, toupper, towupper).
BASE_API char toLower(char c);
BASE_API wchar_t toLower(wchar_t c);
BASE_API char toUpper(char c);
BASE_API wchar_t toUpper(wchar_t c);

} // namespace kxString
