// Internal header of libBase: not installed.
//
// One character at a time between the current C locale's multibyte text and
// code points, with the C runtime's results (as mbrtowc and wcrtomb), but
// without a call into the runtime for ASCII or UTF-8 locales. A codec reads
// the locale when it is made; make one per conversion.
#pragma once

#include <Base/Platform/Locale.h>
#include <Base/String/Unicode.h>

namespace kx::detail {

class LocaleCodec {
public:
    LocaleCodec() : encoding_(platform::localeEncoding()) {}

    /// Decodes the character at `text` (`size` >= 1 bytes readable, or the
    /// text ends in a terminator): the bytes taken, 0 for the terminator,
    /// platform::kInvalidSequence or platform::kIncompleteSequence.
    std::ptrdiff_t decode(char32_t& codePoint, const char* text, std::size_t size) {
        const auto lead = static_cast<unsigned char>(*text);
        if (lead < 0x80 && encoding_ != platform::LocaleEncoding::other) {
            codePoint = lead;
            return lead != 0;
        }
        switch (encoding_) {
        case platform::LocaleEncoding::ascii: return platform::kInvalidSequence;
        case platform::LocaleEncoding::utf8: {
            const auto* p = reinterpret_cast<const unsigned char*>(text);
            const unicode::Utf8Char c = unicode::decodeUtf8(p, p + size);
            if (c.status == unicode::Utf8Status::valid) {
                codePoint = c.codePoint;
                return c.length;
            }
            return c.status == unicode::Utf8Status::truncated ? platform::kIncompleteSequence
                                                              : platform::kInvalidSequence;
        }
        case platform::LocaleEncoding::other: break;
        }
        return platform::decodeLocaleChar(codePoint, text, size, state_);
    }

    /// Encodes `codePoint` into `out` (room for MB_LEN_MAX bytes): the bytes
    /// written, or -1 when the locale has no such character.
    std::ptrdiff_t encode(char* out, char32_t codePoint) {
        if (codePoint < 0x80 && encoding_ != platform::LocaleEncoding::other) {
            *out = static_cast<char>(codePoint);
            return 1;
        }
        switch (encoding_) {
        case platform::LocaleEncoding::ascii: return -1;
        case platform::LocaleEncoding::utf8:
            if (unicode::isSurrogate(codePoint) || codePoint > unicode::kMaxCodePoint)
                return -1;
            return unicode::encodeUtf8(out, codePoint);
        case platform::LocaleEncoding::other: break;
        }
        return platform::encodeLocaleChar(out, codePoint, state_);
    }

private:
    platform::LocaleEncoding encoding_;
    std::mbstate_t state_{};
};

} // namespace kx::detail
