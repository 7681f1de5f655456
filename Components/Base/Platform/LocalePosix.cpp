// POSIX implementation of the locale operations. wchar_t holds a whole code
// point here, so the C runtime's conversions are used as they are.
#include <Base/Platform/Locale.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <langinfo.h>

namespace kx::platform {

static_assert(sizeof(wchar_t) == 4, "the POSIX locale layer expects 32-bit wchar_t");

LocaleEncoding localeEncoding() {
    const char* codeset = nl_langinfo(CODESET);
    if (std::strcmp(codeset, "UTF-8") == 0)
        return LocaleEncoding::utf8;
    // glibc's name for the "C" and "POSIX" locales' 7-bit character set.
    if (std::strcmp(codeset, "ANSI_X3.4-1968") == 0)
        return LocaleEncoding::ascii;
    return LocaleEncoding::other;
}

std::ptrdiff_t decodeLocaleChar(char32_t& codePoint, const char* text, std::size_t size,
                                std::mbstate_t& state) {
    wchar_t wc = 0;
    const std::size_t n = std::mbrtowc(&wc, text, size, &state);
    if (n == static_cast<std::size_t>(-1))
        return kInvalidSequence;
    if (n == static_cast<std::size_t>(-2))
        return kIncompleteSequence;
    codePoint = static_cast<char32_t>(wc);
    return static_cast<std::ptrdiff_t>(n);
}

std::ptrdiff_t encodeLocaleChar(char* out, char32_t codePoint, std::mbstate_t& state) {
    if (codePoint > static_cast<char32_t>(INT_MAX))
        return -1;
    const std::size_t n = std::wcrtomb(out, static_cast<wchar_t>(codePoint), &state);
    return n == static_cast<std::size_t>(-1) ? -1 : static_cast<std::ptrdiff_t>(n);
}

std::size_t localeMaxCharLength() {
    return MB_CUR_MAX;
}

const char* localeDecimalPoint() {
    // nl_langinfo reads the calling thread's locale without the shared
    // buffer that localeconv fills, so it is safe on any thread.
    return nl_langinfo(RADIXCHAR);
}

} // namespace kx::platform
