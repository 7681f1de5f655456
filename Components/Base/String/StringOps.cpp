#include <Base/String/StringOps.h>

#include <Base/Utility/FormatEngine.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <memory>

namespace kx::detail {
namespace {

int sign(int value) {
    return value < 0 ? -1 : value > 0 ? 1 : 0;
}

// The first attempt formats on the stack when it is this small or smaller.
constexpr std::size_t kStackBuffer = 256;
constexpr std::uint64_t kGrowth = 1024;
// The growing buffer gives up within this distance of the 32-bit limit.
constexpr std::uint64_t kLimit = 0xFFFFFFFFull - 1025;

// The bounded formatter reports the length that the whole text needs, so
// the size that growing by 1,024 would reach is known after one attempt,
// and a second attempt at that size is the last.
template <class Char>
unsigned int formatText(Text<Char>& s, unsigned int start, const Char* format, va_list args) {
    if (!format)
        return npos;
    std::uint64_t size = start;
    Char stack[kStackBuffer];
    std::unique_ptr<Char[]> heap;
    Char* buffer = stack;
    if (size > kStackBuffer) {
        heap = std::make_unique_for_overwrite<Char[]>(size);
        buffer = heap.get();
    }
    FormatResult result = formatBounded(buffer, size, format, args);
    if (result.failed)
        return npos;
    // The text fits when it and its terminator leave a character to spare.
    if (result.length + 2 > size) {
        size += (result.length + 2 - size + kGrowth - 1) / kGrowth * kGrowth;
        if (size > kLimit)
            return npos;
        heap = std::make_unique_for_overwrite<Char[]>(size);
        buffer = heap.get();
        result = formatBounded(buffer, size, format, args);
    }
    if (result.length == 0)
        return npos;
    // A "%c" of 0 ends the text early: the string takes what comes before it.
    const auto length =
        static_cast<std::size_t>(std::find(buffer, buffer + result.length, Char{}) - buffer);
    s.assign(buffer, length);
    return static_cast<unsigned int>(length);
}

} // namespace

int collate(const std::string& a, const std::string& b) {
    return sign(std::strcoll(a.c_str(), b.c_str()));
}

int collate(const std::wstring& a, const std::wstring& b) {
    return sign(std::wcscoll(a.c_str(), b.c_str()));
}

unsigned int format(std::string& s, unsigned int start, const char* format, va_list args) {
    return formatText(s, start, format, args);
}

unsigned int format(std::wstring& s, unsigned int start, const wchar_t* format, va_list args) {
    return formatText(s, start, format, args);
}

} // namespace kx::detail
