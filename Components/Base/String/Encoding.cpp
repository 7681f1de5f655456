#include <Base/String/Encoding.h>

#include <Base/String/LocaleCodec.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <cwchar>

namespace kxString {
namespace {

namespace unicode = kx::unicode;

constexpr std::size_t kConversionFailed = static_cast<std::size_t>(-1);

// mbstowcs(dst, src, n), producing UTF-16 units.
std::size_t localeToUnits(wchar_t* dst, const char* src, std::size_t n) {
    kx::detail::LocaleCodec codec;
    const char* const end = src + std::strlen(src) + 1;
    std::size_t count = 0;
    for (const char* p = src; !dst || count < n;) {
        char32_t codePoint = 0;
        const std::ptrdiff_t taken = codec.decode(codePoint, p, static_cast<std::size_t>(end - p));
        if (taken < 0)
            return kConversionFailed;
        if (taken == 0) {
            if (dst)
                dst[count] = 0;
            break;
        }
        const unsigned units = unicode::unitsOf(codePoint);
        if (dst) {
            if (count + units > n)
                break;
            unicode::putUtf16(dst + count, codePoint);
        }
        count += units;
        p += taken;
    }
    return count;
}

// wcstombs(dst, src, n), joining surrogate pairs; a lone surrogate fails.
std::size_t unitsToLocale(char* dst, const wchar_t* src, std::size_t n) {
    kx::detail::LocaleCodec codec;
    const wchar_t* const end = src + std::wcslen(src);
    std::size_t count = 0;
    char bytes[MB_LEN_MAX];
    for (const wchar_t* p = src; p != end;) {
        const char32_t codePoint = unicode::readUtf16(p, end);
        const std::ptrdiff_t taken =
            unicode::isSurrogate(codePoint) ? -1 : codec.encode(bytes, codePoint);
        if (taken < 0)
            return kConversionFailed;
        if (dst) {
            if (count + static_cast<std::size_t>(taken) > n)
                return count;
            std::memcpy(dst + count, bytes, static_cast<std::size_t>(taken));
        }
        count += static_cast<std::size_t>(taken);
    }
    if (dst && count < n)
        dst[count] = 0;
    return count;
}

// The lossy conversion used when the locale rejects the text: up to `count`
// output positions, each undecodable byte giving the default character. The
// count is signed on purpose: the whole-string marker converts nothing.
int fallbackToUnits(const char* src, wchar_t* dst, unsigned int dstSize, int count) {
    long long limit = count;
    if (dst && limit > static_cast<long long>(dstSize) - 1)
        limit = static_cast<long long>(dstSize) - 1;
    kx::detail::LocaleCodec codec;
    const std::size_t maxLength = kx::platform::localeMaxCharLength();
    const char* const end = src + std::strlen(src) + 1;
    const char* p = src;
    long long position = 0;
    while (position < limit) {
        char32_t codePoint = 0;
        const std::size_t available = std::min(maxLength, static_cast<std::size_t>(end - p));
        const std::ptrdiff_t taken = codec.decode(codePoint, p, available);
        if (taken < 0) {
            if (dst)
                dst[position] = getDefaultWChar();
            ++p;
            ++position;
            continue;
        }
        if (taken == 0) {
            if (dst)
                dst[position] = 0;
            break;
        }
        const unsigned units = unicode::unitsOf(codePoint);
        if (position + units > limit)
            break;
        if (dst)
            unicode::putUtf16(dst + position, codePoint);
        position += units;
        p += taken;
    }
    if (dst)
        std::fill(dst + position, dst + std::max(position, limit + 1), wchar_t{0});
    return static_cast<int>(position);
}

// The lossy conversion used when the locale lacks a character: one byte per
// unit, "?" for every unit that is not exactly one byte in the locale.
void fallbackToBytes(const wchar_t* src, char* dst, unsigned int dstSize, unsigned int count) {
    const unsigned int n = std::min(count, dstSize - 1);
    kx::detail::LocaleCodec codec;
    char bytes[MB_LEN_MAX];
    for (unsigned int i = 0; i < n; ++i)
        dst[i] =
            codec.encode(bytes, unicode::unitValue(src[i])) == 1 ? bytes[0] : getDefaultMBChar();
    dst[n] = 0;
}

// The common end of MBStoWCS and WCStoMBS once the text is measured: the
// runtime's conversion when it succeeds, else the lossy fallback, which
// still reports the measured count.
template <class Out, class Convert, class Fallback>
unsigned int finish(std::size_t count, Out* dst, unsigned int dstSize, bool* ok, Convert convert,
                    Fallback fallback) {
    if (!dst)
        return static_cast<unsigned int>(count);
    if (count >= dstSize)
        return 0;
    const std::size_t converted = convert();
    if (converted != kConversionFailed)
        return static_cast<unsigned int>(converted);
    fallback();
    if (ok)
        *ok = false;
    return static_cast<unsigned int>(count);
}

bool isEmptySource(unsigned int srcLen, bool startsWithTerminator) {
    return srcLen == 0 || (srcLen == wholeString && startsWithTerminator);
}

} // namespace

unsigned int MBStoWCS(const char* src, unsigned int srcLen, wchar_t* dst, unsigned int dstSize,
                      bool* ok) {
    if (ok)
        *ok = true;
    if (!src)
        return 0;
    if (srcLen != wholeString && srcLen < std::strlen(src))
        return 0;
    std::size_t count = localeToUnits(nullptr, src, 0);
    if (count == kConversionFailed) {
        count =
            static_cast<std::size_t>(fallbackToUnits(src, nullptr, 0, static_cast<int>(srcLen)));
        if (ok)
            *ok = false;
    }
    return finish(
        count, dst, dstSize, ok, [&] { return localeToUnits(dst, src, dstSize); },
        [&] { fallbackToUnits(src, dst, dstSize, static_cast<int>(count)); });
}

unsigned int WCStoMBS(const wchar_t* src, unsigned int srcLen, char* dst, unsigned int dstSize,
                      bool* ok) {
    if (ok)
        *ok = true;
    if (!src)
        return 0;
    const std::size_t length = std::wcslen(src);
    if (srcLen != wholeString && srcLen < length)
        return 0;
    std::size_t count = unitsToLocale(nullptr, src, 0);
    if (count == kConversionFailed) {
        count = length;
        if (ok)
            *ok = false;
    }
    return finish(
        count, dst, dstSize, ok, [&] { return unitsToLocale(dst, src, dstSize); },
        [&] { fallbackToBytes(src, dst, dstSize, static_cast<unsigned int>(count)); });
}

unsigned int UTF8toWCS(const char* src, unsigned int srcLen, wchar_t* dst, unsigned int dstSize,
                       bool keepBOM, bool* ok) {
    if (ok)
        *ok = false;
    if (!src)
        return 0;
    if (isEmptySource(srcLen, *src == 0)) {
        if (ok)
            *ok = true;
        return 0;
    }
    const std::size_t skip = keepBOM ? 0 : detectUTF8BOM(src, static_cast<int>(srcLen));
    const std::size_t size = (srcLen == wholeString ? std::strlen(src) + 1 : srcLen) - skip;
    // Every byte gives at most one unit, so a destination of `size` units
    // needs no measuring pass.
    const bool direct = dst && size <= dstSize;
    const unicode::Utf16Count result =
        unicode::utf8ToUtf16(src + skip, size, direct ? dst : nullptr);
    if (ok)
        *ok = result.valid && result.units != 0;
    if (result.units == 0 || !dst)
        return static_cast<unsigned int>(result.units);
    if (!direct) {
        if (result.units > dstSize)
            return 0;
        unicode::utf8ToUtf16(src + skip, size, dst);
    }
    return static_cast<unsigned int>(result.units);
}

unsigned int WCStoUTF8(const wchar_t* src, unsigned int srcLen, char* dst, unsigned int dstSize,
                       bool* ok) {
    if (ok)
        *ok = false;
    if (!src)
        return 0;
    if (isEmptySource(srcLen, *src == 0)) {
        if (ok)
            *ok = true;
        return 0;
    }
    const std::size_t size = srcLen == wholeString ? std::wcslen(src) + 1 : srcLen;
    // Every unit gives at most four bytes.
    const bool direct = dst && size <= dstSize / 4;
    const std::size_t bytes = unicode::utf16ToUtf8(src, size, direct ? dst : nullptr);
    if (ok)
        *ok = bytes != 0;
    if (bytes == 0 || !dst)
        return static_cast<unsigned int>(bytes);
    if (!direct) {
        if (bytes > dstSize)
            return 0;
        unicode::utf16ToUtf8(src, size, dst);
    }
    return static_cast<unsigned int>(bytes);
}

int detectUTF8BOM(const char* text, int len) {
    if (!text || (len < 3 && len != -1))
        return 0;
    const auto* p = reinterpret_cast<const unsigned char*>(text);
    return p[0] == 0xEF && p[1] == 0xBB && p[2] == 0xBF ? 3 : 0;
}

unsigned int getMultiByteStringSize(wchar_t* dst, const char* src, unsigned int n) {
    return src ? static_cast<unsigned int>(localeToUnits(dst, src, n)) : 0;
}

char getDefaultMBChar() {
    return '?';
}

wchar_t getDefaultWChar() {
    return L'?';
}

} // namespace kxString
