#include <Base/Containers/Hash.h>

#include <Base/Containers/HashTables.h>

#include <cstring>
#include <type_traits>

namespace kx {
namespace {

using detail::kS1;
using detail::kS2;
using detail::kS3;
using detail::kS4;

// Runs the byte cycle from step `first` to step 15, reading the next byte
// with `next()`. With `first` constant the switch folds away, so the loop
// over whole cycles is straight-line code.
template <class Next>
inline void byteSteps(int first, std::uint32_t& h, std::uint32_t& t, Next& next) {
    switch (first) {
    case 1: t = kS2[next()]; [[fallthrough]];
    case 2: t ^= kS3[next()]; [[fallthrough]];
    case 3: h ^= t + kS4[next()]; [[fallthrough]];
    case 4: t = kS2[next()]; [[fallthrough]];
    case 5: t -= kS3[next()]; [[fallthrough]];
    case 6: t += kS4[next()]; [[fallthrough]];
    case 7: h ^= t ^ kS1[next()]; [[fallthrough]];
    case 8: t = kS3[next()]; [[fallthrough]];
    case 9: t += kS4[next()]; [[fallthrough]];
    case 10: t ^= kS1[next()]; [[fallthrough]];
    case 11: h ^= t - kS2[next()]; [[fallthrough]];
    case 12: t = kS4[next()]; [[fallthrough]];
    case 13: t ^= kS1[next()]; [[fallthrough]];
    case 14: t -= kS2[next()]; [[fallthrough]];
    case 15: h ^= t + kS3[next()]; [[fallthrough]];
    default: break;
    }
}

// The byte mix: whole cycles of 15 from the start, then the last r steps of
// the cycle for the r bytes left, with t starting at 0.
template <class Next>
std::uint32_t mixBytes(std::uint32_t h, std::int64_t n, Next next) {
    std::uint32_t t = 0;
    for (std::int64_t cycles = n / 15; cycles > 0; --cycles)
        byteSteps(1, h, t, next);
    t = 0;
    byteSteps(16 - static_cast<int>(n % 15), h, t, next);
    return h;
}

// The word cycle from step `first` to step 16; word i enters as
// Sk[i mod 256] ^ w[i], so the table is chosen by its position.
template <class Next>
inline void wordSteps(int first, std::uint32_t& h, std::uint32_t& t, Next& x) {
    switch (first) {
    case 1: t = x(kS1); [[fallthrough]];
    case 2: t ^= x(kS2); [[fallthrough]];
    case 3: t -= x(kS3); [[fallthrough]];
    case 4: h ^= x(kS4) + t; [[fallthrough]];
    case 5: t = x(kS2); [[fallthrough]];
    case 6: t -= x(kS3); [[fallthrough]];
    case 7: t += x(kS4); [[fallthrough]];
    case 8: h ^= x(kS1) ^ t; [[fallthrough]];
    case 9: t = x(kS3); [[fallthrough]];
    case 10: t += x(kS4); [[fallthrough]];
    case 11: t ^= x(kS1); [[fallthrough]];
    case 12: h ^= t - x(kS2); [[fallthrough]];
    case 13: t = x(kS4); [[fallthrough]];
    case 14: t ^= x(kS1); [[fallthrough]];
    case 15: t -= x(kS2); [[fallthrough]];
    case 16: h ^= x(kS3) + t; [[fallthrough]];
    default: break;
    }
}

} // namespace

std::uint32_t hashfunction(const char* text) {
    if (!text)
        return 0;
    const auto* p = reinterpret_cast<const unsigned char*>(text);
    std::uint32_t h = 0;
    while (p[0] != 0) {
        std::uint32_t t = kS1[p[0]];
        const bool full = p[1] != 0 && p[2] != 0 && p[3] != 0;
        if (p[1] != 0) {
            t += kS2[p[1]];
            if (p[2] != 0) {
                t -= kS3[p[2]];
                if (p[3] != 0)
                    t ^= kS4[p[3]];
            }
        }
        h ^= t;
        if (!full)
            break;
        p += 4;
    }
    return h;
}

std::uint32_t hashfunction(const unsigned char* bytes, int n) {
    if (n <= 0)
        return 0;
    return mixBytes(0, n, [&bytes] { return *bytes++; });
}

std::uint32_t hashfunction(const char* first, const char* last) {
    if (last - first <= 0)
        return 0;
    const auto* bytes = reinterpret_cast<const unsigned char*>(first);
    return mixBytes(0, last - first, [&bytes] { return *bytes++; });
}

std::uint32_t hashfunction(const wchar_t* text, int n) {
    if (n <= 0)
        return 0;
    std::int64_t i = 0;
    return mixBytes(0, std::int64_t{n} * 2, [text, &i] {
        // A UTF-16 unit in a wchar_t (which the check takes for a signed char).
        const std::uint32_t unit = static_cast<std::make_unsigned_t<wchar_t>>(
            text[i / 2]); // NOLINT(bugprone-signed-char-misuse)
        return (i++ % 2 == 0 ? unit : unit >> 8) & 0xFFu;
    });
}

std::uint32_t hashfunction(const unsigned int* words, int n) {
    if (n <= 0)
        return 0;
    std::int64_t i = 0;
    auto x = [words, &i](const std::uint32_t* table) {
        const std::uint32_t value = table[i % 256] ^ words[i];
        ++i;
        return value;
    };
    std::uint32_t h = 0;
    std::uint32_t t = 0;
    for (std::int64_t cycles = n / 16; cycles > 0; --cycles)
        wordSteps(1, h, t, x);
    t = 0;
    wordSteps(17 - n % 16, h, t, x);
    return h;
}

void Hasher::flushBuffer() {
    unsigned char bytes[sizeof buffer_];
    std::memcpy(bytes, buffer_, sizeof buffer_);
    const unsigned char* p = bytes;
    hash_ = mixBytes(hash_, std::int64_t{count_} * 8, [&p] { return *p++; });
    count_ = 0;
}

std::uint64_t Hasher::getHash() {
    if (count_ != 0)
        flushBuffer();
    return hash_;
}

} // namespace kx
