// Bulk UTF-8 <-> UTF-16 conversions, tuned for real text:
// - at an ASCII character, a block of 16 is tested at once and its ASCII
//   start taken whole;
// - text in one script repeats one form (two bytes for Cyrillic, three for
//   CJK, four for emoji), so a run of that form stays in a loop of its own,
//   taking along the single spaces and punctuation between words;
// - only ill-formed input goes through the general, maximal-subpart decoder.
#include <Base/String/Unicode.h>

#include <bit>

#if defined(__SSE2__)
#    include <emmintrin.h>
#endif

namespace kx::unicode {
namespace {

constexpr std::ptrdiff_t kBlock = 16;

#if defined(__SSE2__)

// Widens the ASCII start of the 16 bytes at `from` into `to` (when Store)
// and returns its length: 16 when the whole block is ASCII.
template <bool Store>
unsigned takeAscii(const unsigned char* from, wchar_t* to) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    const auto high = static_cast<unsigned>(_mm_movemask_epi8(bytes));
    const unsigned n = high == 0 ? kBlock : static_cast<unsigned>(std::countr_zero(high));
    if constexpr (Store) {
        if (n == kBlock) {
            const __m128i zero = _mm_setzero_si128();
            const __m128i low = _mm_unpacklo_epi8(bytes, zero);
            const __m128i upper = _mm_unpackhi_epi8(bytes, zero);
            auto* out = reinterpret_cast<__m128i*>(to);
            _mm_storeu_si128(out, _mm_unpacklo_epi16(low, zero));
            _mm_storeu_si128(out + 1, _mm_unpackhi_epi16(low, zero));
            _mm_storeu_si128(out + 2, _mm_unpacklo_epi16(upper, zero));
            _mm_storeu_si128(out + 3, _mm_unpackhi_epi16(upper, zero));
        } else {
            for (unsigned i = 0; i < n; ++i)
                to[i] = static_cast<wchar_t>(from[i]);
        }
    }
    return n;
}

// Narrows the ASCII start of the 16 units at `from` into `to` (when Store).
template <bool Store>
unsigned takeAscii(const wchar_t* from, char* to) {
    static_assert(sizeof(wchar_t) == 4);
    const auto* in = reinterpret_cast<const __m128i*>(from);
    const __m128i a = _mm_loadu_si128(in);
    const __m128i b = _mm_loadu_si128(in + 1);
    const __m128i c = _mm_loadu_si128(in + 2);
    const __m128i d = _mm_loadu_si128(in + 3);
    const __m128i any = _mm_or_si128(_mm_or_si128(a, b), _mm_or_si128(c, d));
    const __m128i notAscii = _mm_andnot_si128(_mm_set1_epi32(0x7F), any);
    if (_mm_movemask_epi8(_mm_cmpeq_epi32(notAscii, _mm_setzero_si128())) == 0xFFFF) {
        if constexpr (Store) {
            const __m128i packed = _mm_packus_epi16(_mm_packs_epi32(a, b), _mm_packs_epi32(c, d));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(to), packed);
        }
        return kBlock;
    }
    unsigned n = 0;
    for (; unitValue(from[n]) < 0x80; ++n) {
        if constexpr (Store)
            to[n] = static_cast<char>(from[n]);
    }
    return n;
}

#else

// Copies the ASCII start of the 16 characters at `from` between the widths
// (when Store) and returns its length.
template <bool Store, class From, class To>
unsigned takeAscii(const From* from, To* to) {
    unsigned n = 0;
    for (; n < kBlock && unitValue(static_cast<wchar_t>(from[n])) < 0x80; ++n) {
        if constexpr (Store)
            to[n] = static_cast<To>(from[n]);
    }
    return n;
}

#endif

// Takes the ASCII characters at `p`, at least one: the ASCII start of a
// block when one remains, else one character. Returns how many.
template <bool Store, class From, class To>
unsigned takeAsciiAt(const From* p, const From* end, To* out) {
    if (end - p >= kBlock)
        return takeAscii<Store>(p, out);
    if constexpr (Store)
        *out = static_cast<To>(*p);
    return 1;
}

// The four bytes at `p` as a little-endian number: byte 0 in the low bits.
std::uint32_t load32(const unsigned char* p) {
    return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
           static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

// An ASCII character followed by a non-ASCII one, in a load32 word.
constexpr bool isLoneAscii(std::uint32_t w) {
    return (w & 0x8080u) == 0x8000u;
}

// A byte that cannot start a character: alone it is a maximal subpart.
constexpr bool isStrayByte(std::uint32_t byte) {
    return (byte >= 0x80 && byte < 0xC2) || byte > 0xF4;
}

// An ASCII unit at `p` followed by a non-ASCII one.
bool isLoneAscii(const wchar_t* p, const wchar_t* end) {
    return p + 1 != end && unitValue(p[1]) >= 0x80;
}

// A surrogate pair at `p`.
bool isPair(const wchar_t* p, const wchar_t* end) {
    return isHighSurrogate(unitValue(*p)) && p + 1 != end && isLowSurrogate(unitValue(p[1]));
}

constexpr bool isTwoByteLead(unsigned byte) {
    return byte >= 0xC2 && byte < 0xE0;
}

constexpr bool isThreeByteLead(unsigned byte) {
    return (byte & 0xF0) == 0xE0;
}

// A character of three bytes or fewer, outside the surrogates.
constexpr bool isPlainBmp(char32_t u) {
    return u < 0xD800 || (u > 0xDFFF && u <= 0xFFFF);
}

template <bool Store>
Utf16Count decode(const unsigned char* p, const unsigned char* const end, wchar_t* dst) {
    wchar_t* out = dst;
    std::size_t units = 0; // counted instead of stored when measuring
    bool valid = true;
    const auto put = [&](char32_t c) {
        if constexpr (Store)
            out += putUtf16(out, c);
        else
            units += unitsOf(c);
    };
    while (p != end) {
        const unsigned lead = *p;
        if (lead < 0x80) {
            const unsigned n = takeAsciiAt<Store>(p, end, out);
            p += n;
            if constexpr (Store)
                out += n;
            else
                units += n;
            continue;
        }
        // Runs of one length stay in their own loop: text in one script
        // repeats the same form, with single spaces or punctuation between
        // words. While four bytes remain, one load shows whether a
        // character is well-formed.
        const unsigned char* const start = p;
        if (isTwoByteLead(lead)) {
            while (end - p >= 4) {
                const std::uint32_t w = load32(p);
                if ((w & 0xC0E0u) == 0x80C0u && (w & 0x1Eu) != 0) {
                    put((w & 0x1Fu) << 6 | (w >> 8 & 0x3Fu));
                    p += 2;
                } else if (isLoneAscii(w)) {
                    put(w & 0x7Fu);
                    ++p;
                } else if (isStrayByte(w & 0xFFu)) {
                    put(kReplacementChar);
                    valid = false;
                    ++p;
                } else {
                    break;
                }
            }
        } else if (isThreeByteLead(lead)) {
            while (end - p >= 4) {
                const std::uint32_t w = load32(p);
                const std::uint32_t c = (w & 0x0Fu) << 12 | (w >> 2 & 0xFC0u) | (w >> 16 & 0x3Fu);
                if ((w & 0xC0C0F0u) == 0x8080E0u && c >= 0x800 && !isSurrogate(c)) {
                    put(c);
                    p += 3;
                } else if (isLoneAscii(w)) {
                    put(w & 0x7Fu);
                    ++p;
                } else if (isStrayByte(w & 0xFFu)) {
                    put(kReplacementChar);
                    valid = false;
                    ++p;
                } else {
                    break;
                }
            }
        } else if (lead >= 0xF0) {
            while (end - p >= 4) {
                const std::uint32_t w = load32(p);
                const std::uint32_t c = (w & 0x07u) << 18 | (w << 4 & 0x3F000u) |
                                        (w >> 10 & 0xFC0u) | (w >> 24 & 0x3Fu);
                if ((w & 0xC0C0C0F8u) == 0x808080F0u && c >= 0x10000 && c <= kMaxCodePoint) {
                    put(c);
                    p += 4;
                } else if (isLoneAscii(w)) {
                    put(w & 0x7Fu);
                    ++p;
                } else if (isStrayByte(w & 0xFFu)) {
                    put(kReplacementChar);
                    valid = false;
                    ++p;
                } else {
                    break;
                }
            }
        }
        if (p != start)
            continue;
        const Utf8Char c = decodeUtf8(p, end);
        valid &= c.status == Utf8Status::valid;
        put(c.codePoint);
        p += c.length;
    }
    if constexpr (Store)
        units = static_cast<std::size_t>(out - dst);
    return {units, valid};
}

template <bool Store>
std::size_t encode(const wchar_t* p, const wchar_t* const end, char* dst) {
    char* out = dst;
    std::size_t bytes = 0; // counted instead of stored when measuring
    const auto put = [&](char32_t c) {
        if constexpr (Store)
            out += encodeUtf8(out, c);
        else
            bytes += utf8Length(c);
    };
    while (p != end) {
        char32_t u = unitValue(*p);
        if (u < 0x80) {
            const unsigned n = takeAsciiAt<Store>(p, end, out);
            p += n;
            if constexpr (Store)
                out += n;
            else
                bytes += n;
            continue;
        }
        // As in decoding, a run of one form stays in its loop, taking along
        // single ASCII characters between words.
        if (u < 0x800) {
            do {
                if constexpr (Store) {
                    if (u < 0x80) {
                        *out++ = static_cast<char>(u);
                    } else {
                        out[0] = static_cast<char>(0xC0 | (u >> 6));
                        out[1] = static_cast<char>(0x80 | (u & 0x3F));
                        out += 2;
                    }
                } else {
                    bytes += u < 0x80 ? 1 : 2;
                }
            } while (++p != end && (u = unitValue(*p)) < 0x800 &&
                     (u >= 0x80 || isLoneAscii(p, end)));
            continue;
        }
        if (isPlainBmp(u)) {
            do {
                if constexpr (Store) {
                    if (u < 0x80) {
                        *out++ = static_cast<char>(u);
                    } else {
                        out[0] = static_cast<char>(0xE0 | (u >> 12));
                        out[1] = static_cast<char>(0x80 | ((u >> 6) & 0x3F));
                        out[2] = static_cast<char>(0x80 | (u & 0x3F));
                        out += 3;
                    }
                } else {
                    bytes += u < 0x80 ? 1 : 3;
                }
            } while (++p != end && isPlainBmp(u = unitValue(*p)) &&
                     (u >= 0x800 || (u < 0x80 && isLoneAscii(p, end))));
            continue;
        }
        if (isPair(p, end)) {
            for (;;) {
                put(u < 0x80 ? u : joinSurrogates(u, unitValue(*++p)));
                if (++p == end)
                    break;
                u = unitValue(*p);
                if (!isPair(p, end) && (u >= 0x80 || !isLoneAscii(p, end)))
                    break;
            }
            continue;
        }
        const char32_t c = readUtf16(p, end);
        put(isSurrogate(c) || c > kMaxCodePoint ? kReplacementChar : c);
    }
    if constexpr (Store)
        bytes = static_cast<std::size_t>(out - dst);
    return bytes;
}

} // namespace

Utf16Count utf8ToUtf16(const char* src, std::size_t size, wchar_t* dst) {
    const auto* p = reinterpret_cast<const unsigned char*>(src);
    return dst ? decode<true>(p, p + size, dst) : decode<false>(p, p + size, nullptr);
}

std::size_t utf16ToUtf8(const wchar_t* src, std::size_t size, char* dst) {
    return dst ? encode<true>(src, src + size, dst) : encode<false>(src, src + size, nullptr);
}

} // namespace kx::unicode
