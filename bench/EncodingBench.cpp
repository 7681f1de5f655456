// UTF8toWCS and WCStoUTF8 into preallocated buffers, against ICU, utfcpp and
// glibc's iconv, on four classes of text and on ill-formed input, at 64 KiB
// and at 32 bytes. Bytes per second count the UTF-8 side in both
// directions. The peers write and read 16-bit units; libBase's wide text has
// one unit per 32-bit wchar_t on Linux.
#include "Compare.h"

#include <Base/String/Encoding.h>

#include <benchmark/benchmark.h>

#include <iconv.h>

#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#if BASE_BENCH_HAVE_ICU
#    include <unicode/ustring.h>
#endif
#if BASE_BENCH_HAVE_UTFCPP
#    include <utf8.h>
#endif

namespace {

void appendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// Text of one class, words of 3 to 8 characters between spaces, at most
// `bytes` long; "invalid" mixes Cyrillic with stray bytes.
std::string makeText(const std::string& kind, std::size_t bytes) {
    std::mt19937 random(3);
    std::string text;
    for (int i = 0;; ++i) {
        std::string piece;
        if (i % 6 == 5)
            piece = " ";
        else if (kind == "ascii")
            appendUtf8(piece, 'a' + random() % 26);
        else if (kind == "cyrillic")
            appendUtf8(piece, 0x430 + random() % 32);
        else if (kind == "cjk")
            appendUtf8(piece, 0x4E00 + random() % 0x5000);
        else if (kind == "emoji")
            appendUtf8(piece, 0x1F600 + random() % 0x50);
        else if (random() % 8 == 0)
            piece = random() % 2 ? "\xFF" : "\x80";
        else
            appendUtf8(piece, 0x430 + random() % 32);
        if (text.size() + piece.size() > bytes)
            return text;
        text += piece;
    }
}

struct Input {
    std::string utf8;
    std::wstring wide;    // libBase's form
    std::u16string utf16; // the peers' form
};

Input makeInput(const std::string& kind, std::size_t bytes) {
    Input in;
    in.utf8 = makeText(kind, bytes);
    const auto size = static_cast<unsigned>(in.utf8.size());
    in.wide.resize(size);
    in.wide.resize(kxString::UTF8toWCS(in.utf8.data(), size, in.wide.data(), size, true, nullptr));
    if (kind == "invalid") {
        // Wide text's ill-formed input: lone surrogates in place of the U+FFFD.
        for (wchar_t& c : in.wide) {
            if (c == 0xFFFD)
                c = 0xD800;
        }
    }
    for (wchar_t c : in.wide)
        in.utf16 += static_cast<char16_t>(c);
    return in;
}

template <class Body>
void add(const std::string& key, const std::string& implementation, std::size_t bytes, Body body) {
    benchmark::RegisterBenchmark(
        (key + "/" + implementation).c_str(), [=](benchmark::State& state) {
            for (auto _ : state) {
                benchmark::DoNotOptimize(body());
                benchmark::ClobberMemory();
            }
            state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
        });
}

std::size_t viaIconv(iconv_t cd, const char* src, std::size_t size, char* dst, std::size_t room) {
    char* in = const_cast<char*>(src);
    char* out = dst;
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    iconv(cd, &in, &size, &out, &room);
    return static_cast<std::size_t>(out - dst);
}

void registerClass(const std::string& kind, std::size_t bytes, const std::string& label) {
    const auto in = std::make_shared<Input>(makeInput(kind, bytes));
    const bool valid = kind != "invalid";
    const std::size_t n8 = in->utf8.size();
    const std::size_t n16 = in->wide.size();
    auto wideOut = std::make_shared<std::vector<wchar_t>>(n8 + 1);
    auto utf16Out = std::make_shared<std::vector<char16_t>>(n8 + 1);
    auto utf8Out = std::make_shared<std::vector<char>>(4 * n16 + 4);

    const std::string decode = "UTF8toWCS/" + kind + "/" + label;
    add(decode, bench::kOurs, n8, [=] {
        return kxString::UTF8toWCS(in->utf8.data(), static_cast<unsigned>(n8), wideOut->data(),
                                   static_cast<unsigned>(wideOut->size()), false, nullptr);
    });
#if BASE_BENCH_HAVE_ICU
    add(decode, "ICU", n8, [=] {
        UErrorCode error = U_ZERO_ERROR;
        int32_t length = 0;
        u_strFromUTF8WithSub(reinterpret_cast<UChar*>(utf16Out->data()),
                             static_cast<int32_t>(utf16Out->size()), &length, in->utf8.data(),
                             static_cast<int32_t>(n8), 0xFFFD, nullptr, &error);
        return length;
    });
#endif
#if BASE_BENCH_HAVE_UTFCPP
    if (valid) {
        add(decode, "utfcpp", n8,
            [=] { return utf8::utf8to16(in->utf8.begin(), in->utf8.end(), utf16Out->data()); });
    }
#endif
    if (valid) {
        auto cd = std::shared_ptr<void>(iconv_open("UTF-16LE", "UTF-8"), iconv_close);
        add(decode, "iconv", n8, [=] {
            return viaIconv(cd.get(), in->utf8.data(), n8,
                            reinterpret_cast<char*>(utf16Out->data()), 2 * utf16Out->size());
        });
    }

    const std::string encode = "WCStoUTF8/" + kind + "/" + label;
    add(encode, bench::kOurs, n8, [=] {
        return kxString::WCStoUTF8(in->wide.data(), static_cast<unsigned>(n16), utf8Out->data(),
                                   static_cast<unsigned>(utf8Out->size()), nullptr);
    });
#if BASE_BENCH_HAVE_ICU
    add(encode, "ICU", n8, [=] {
        UErrorCode error = U_ZERO_ERROR;
        int32_t length = 0;
        u_strToUTF8WithSub(utf8Out->data(), static_cast<int32_t>(utf8Out->size()), &length,
                           reinterpret_cast<const UChar*>(in->utf16.data()),
                           static_cast<int32_t>(n16), 0xFFFD, nullptr, &error);
        return length;
    });
#endif
#if BASE_BENCH_HAVE_UTFCPP
    if (valid) {
        add(encode, "utfcpp", n8,
            [=] { return utf8::utf16to8(in->utf16.begin(), in->utf16.end(), utf8Out->data()); });
    }
#endif
    if (valid) {
        auto cd = std::shared_ptr<void>(iconv_open("UTF-8", "UTF-16LE"), iconv_close);
        add(encode, "iconv", n8, [=] {
            return viaIconv(cd.get(), reinterpret_cast<const char*>(in->utf16.data()), 2 * n16,
                            utf8Out->data(), utf8Out->size());
        });
    }
}

} // namespace

int main(int argc, char** argv) {
#if !BASE_BENCH_HAVE_ICU
    std::printf("ICU not found (package libicu-dev): its comparisons are skipped.\n");
#endif
#if !BASE_BENCH_HAVE_UTFCPP
    std::printf("utfcpp not found (package libutfcpp-dev): its comparisons are skipped.\n");
#endif
    for (const char* kind : {"ascii", "cyrillic", "cjk", "emoji", "invalid"}) {
        registerClass(kind, 64 * 1024, "64KiB");
        registerClass(kind, 32, "32B");
    }
    return bench::runAndCompare(argc, argv);
}
