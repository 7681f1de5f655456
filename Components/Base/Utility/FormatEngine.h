// Internal header of libBase: not installed.
//
// The printf engine under HN_vsnprintf, HN_vswprintf and the string classes'
// formatting. It stores at most `size` characters and a terminator only when
// one fits (the legacy bounded rule), in one pass, and it tells a text that
// did not fit from a fault that no buffer would mend, so that callers that
// grow their buffer on overflow never grow it for bad input.
#pragma once

#include <cstdarg>
#include <cstddef>

namespace kx::detail {

struct FormatResult {
    std::size_t length; ///< characters the whole text takes, terminator not counted
    bool failed;        ///< bad format or unconvertible argument; the buffer holds ""
};

/// Formats narrow text into `buffer` (null only when `size` is 0). `args` is
/// copied, so the caller may use it again.
FormatResult formatBounded(char* buffer, std::size_t size, const char* format, std::va_list args);

/// Swaps "s" with "S" and "c" with "C" in the conversions that
/// HN_convert_string_format rewrites, in place.
void swapStringConversions(wchar_t* format);

/// Formats wide text (UTF-16 units) into `buffer`. The format is first
/// rewritten by swapStringConversions and then read with the Windows
/// runtime's wide convention, where %s and %c take wide arguments and %S and
/// %C narrow ones; so plain %s, %5.2s and %c take narrow arguments, while the
/// forms the rewrite leaves alone (%*s, %.*s, %+s, %#c, %ls) take wide ones.
FormatResult formatBounded(wchar_t* buffer, std::size_t size, const wchar_t* format,
                           std::va_list args);

} // namespace kx::detail
