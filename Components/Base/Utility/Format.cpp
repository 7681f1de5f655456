#include <Base/Utility/Format.h>

#include <Base/Utility/FormatEngine.h>

#include <cctype>
#include <charconv>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cwchar>

namespace {

// The legacy result rule: the length only when the text and its terminator
// fit with a character to spare, else -1.
int boundedResult(kx::detail::FormatResult result, std::size_t size) {
    if (result.failed)
        return -1;
    if (size == 0)
        return result.length == 0 ? 0 : -1;
    return result.length < size - 1 && result.length <= INT_MAX ? static_cast<int>(result.length)
                                                                : -1;
}

template <class Char>
int formatBounded(Char* buffer, std::size_t size, const Char* format, va_list args) {
    if (!buffer && size != 0)
        return -1;
    if (!format) {
        if (size != 0)
            buffer[0] = 0;
        return -1;
    }
    return boundedResult(kx::detail::formatBounded(buffer, size, format, args), size);
}

struct Decimal {
    std::uint64_t magnitude = 0;
    bool negative = false;
    bool overflow = false;
};

// Reads what sscanf's decimal conversions read: white space, a sign, digits.
Decimal readDecimal(const char* text) {
    Decimal d;
    if (!text)
        return d;
    while (std::isspace(static_cast<unsigned char>(*text)))
        ++text;
    if (*text == '+' || *text == '-')
        d.negative = *text++ == '-';
    for (; *text >= '0' && *text <= '9'; ++text) {
        const auto digit = static_cast<std::uint64_t>(*text - '0');
        if (d.magnitude > (UINT64_MAX - digit) / 10)
            d.overflow = true;
        else
            d.magnitude = d.magnitude * 10 + digit;
    }
    return d;
}

constexpr std::size_t kSlots = 3;
constexpr std::size_t kSlotSize = 28;

template <class Integer>
char* toAscii(char (&ring)[kSlots][kSlotSize], Integer value, int slot) {
    char* buffer = ring[static_cast<unsigned>(slot) % kSlots];
    buffer[kSlotSize - 1] = 0;
    *std::to_chars(buffer, buffer + kSlotSize - 1, value).ptr = 0;
    return buffer;
}

} // namespace

int HN_snprintf(char* buffer, size_t size, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int result = HN_vsnprintf(buffer, size, format, args);
    va_end(args);
    return result;
}

int HN_vsnprintf(char* buffer, size_t size, const char* format, va_list args) {
    return formatBounded(buffer, size, format, args);
}

int HN_swprintf(wchar_t* buffer, size_t size, const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    const int result = HN_vswprintf(buffer, size, format, args);
    va_end(args);
    return result;
}

int HN_vswprintf(wchar_t* buffer, size_t size, const wchar_t* format, va_list args) {
    return formatBounded(buffer, size, format, args);
}

wchar_t* HN_convert_string_format(const wchar_t* format) {
    if (!format)
        return nullptr;
    const std::size_t length = std::wcslen(format) + 1;
    auto* copy = static_cast<wchar_t*>(std::malloc(length * sizeof(wchar_t)));
    if (!copy)
        return nullptr;
    std::wmemcpy(copy, format, length);
    kx::detail::swapStringConversions(copy);
    return copy;
}

char* int64ToAscii(int64_t value, int slot) {
    static char ring[kSlots][kSlotSize];
    return toAscii(ring, value, slot);
}

char* uint64ToAscii(uint64_t value, int slot) {
    static char ring[kSlots][kSlotSize];
    return toAscii(ring, value, slot);
}

int64_t asciiToInt64(const char* text) {
    const Decimal d = readDecimal(text);
    const std::uint64_t limit = d.negative ? std::uint64_t{1} << 63 : INT64_MAX;
    if (d.overflow || d.magnitude > limit)
        return d.negative ? INT64_MIN : INT64_MAX;
    return d.negative ? static_cast<int64_t>(0 - d.magnitude) : static_cast<int64_t>(d.magnitude);
}

uint64_t asciiToUInt64(const char* text) {
    const Decimal d = readDecimal(text);
    if (d.overflow)
        return UINT64_MAX;
    return d.negative ? 0 - d.magnitude : d.magnitude;
}
