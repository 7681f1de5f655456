#include <Base/String/Encoding.h>

#include <Base/String/Unicode.h>

#include "ScopedLocale.h"

#include <gtest/gtest.h>

#include <iconv.h>

#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

using namespace kxString;

namespace {

std::wstring units(std::initializer_list<unsigned> values) {
    std::wstring text;
    for (unsigned v : values)
        text += static_cast<wchar_t>(v);
    return text;
}

std::wstring fromUtf8(const std::string& bytes, bool* ok = nullptr) {
    std::wstring text(bytes.size() + 1, L'#');
    const unsigned n = UTF8toWCS(bytes.data(), static_cast<unsigned>(bytes.size()), text.data(),
                                 static_cast<unsigned>(text.size()), false, ok);
    text.resize(n);
    return text;
}

std::string toUtf8(const std::wstring& text, bool* ok = nullptr) {
    std::string bytes(4 * text.size() + 1, '#');
    const unsigned n = WCStoUTF8(text.data(), static_cast<unsigned>(text.size()), bytes.data(),
                                 static_cast<unsigned>(bytes.size()), ok);
    bytes.resize(n);
    return bytes;
}

// glibc's converter as an independent reference: UTF-8 to UTF-16 units, or
// false where it finds the input ill-formed.
bool referenceToUtf16(const std::string& bytes, std::wstring& out) {
    iconv_t cd = iconv_open("UTF-16LE", "UTF-8");
    std::vector<char> buffer(2 * bytes.size() + 2);
    char* in = const_cast<char*>(bytes.data());
    std::size_t inLeft = bytes.size();
    char* outPtr = buffer.data();
    std::size_t outLeft = buffer.size();
    const bool ok = iconv(cd, &in, &inLeft, &outPtr, &outLeft) != static_cast<std::size_t>(-1);
    iconv_close(cd);
    out.clear();
    for (char* p = buffer.data(); p < outPtr; p += 2)
        out += static_cast<wchar_t>(static_cast<unsigned char>(p[0]) |
                                    static_cast<unsigned char>(p[1]) << 8);
    return ok;
}

} // namespace

TEST(MBStoWCS, LengthIsOnlyAGuardAndRoomIsNeededForTheTerminator) {
    bool ok = false;
    wchar_t dst[8];
    EXPECT_EQ(MBStoWCS("abc", 2, dst, 8, &ok), 0u);
    EXPECT_EQ(MBStoWCS("abc", 3, nullptr, 0, &ok), 3u);
    EXPECT_EQ(MBStoWCS("abc", wholeString, nullptr, 0, &ok), 3u);
    EXPECT_EQ(MBStoWCS("abc", 3, dst, 3, &ok), 0u);
    EXPECT_EQ(MBStoWCS("abc", 3, dst, 4, &ok), 3u);
    EXPECT_STREQ(dst, L"abc");
    EXPECT_TRUE(ok);
    EXPECT_EQ(MBStoWCS(nullptr, 3, dst, 4, &ok), 0u);
}

TEST(MBStoWCS, UndecodableBytesBecomeTheDefaultCharacter) {
    ScopedLocale ascii("C");
    bool ok = true;
    EXPECT_EQ(MBStoWCS("a\xFF"
                       "b",
                       3, nullptr, 0, &ok),
              3u);
    EXPECT_FALSE(ok);
    ok = true;
    EXPECT_EQ(MBStoWCS("a\xFF"
                       "b",
                       wholeString, nullptr, 0, &ok),
              0u); // the marker converts nothing
    EXPECT_FALSE(ok);

    wchar_t dst[8];
    std::wmemset(dst, L'#', 8);
    ok = true;
    EXPECT_EQ(MBStoWCS("a\xFF"
                       "b",
                       3, dst, 8, &ok),
              3u);
    EXPECT_FALSE(ok);
    EXPECT_EQ(std::wstring(dst, 4), std::wstring(L"a?b\0", 4));
    EXPECT_EQ(dst[4], L'#'); // zeros reach only to the counted position
}

TEST(MBStoWCS, Utf8LocaleGivesSurrogatePairs) {
    ScopedLocale utf8("C.UTF-8");
    bool ok = false;
    wchar_t dst[8];
    EXPECT_EQ(MBStoWCS("\xC3\xA9\xF0\x9F\x98\x80", wholeString, dst, 8, &ok), 3u);
    EXPECT_TRUE(ok);
    EXPECT_EQ(std::wstring(dst), units({0xE9, 0xD83D, 0xDE00}));
    EXPECT_EQ(getMultiByteStringSize(nullptr, "\xF0\x9F\x98\x80", 0), 2u);
    EXPECT_EQ(getMultiByteStringSize(nullptr, "\xED\xA0\x80", 0), 0xFFFFFFFFu); // encoded surrogate
    dst[3] = L'#';
    EXPECT_EQ(getMultiByteStringSize(dst, "abcdef", 3), 3u);
    EXPECT_EQ(std::wstring(dst, 4), L"abc#"); // no room: not terminated
    EXPECT_EQ(getMultiByteStringSize(nullptr, nullptr, 0), 0u);
}

TEST(WCStoMBS, MissingCharactersMakeQuestionMarks) {
    ScopedLocale ascii("C");
    bool ok = true;
    char dst[8];
    EXPECT_EQ(WCStoMBS(L"caf\u00e9", wholeString, dst, 8, &ok), 4u);
    EXPECT_FALSE(ok);
    EXPECT_STREQ(dst, "caf?");
    ok = false;
    EXPECT_EQ(WCStoMBS(L"abc", 3, dst, 4, &ok), 3u);
    EXPECT_TRUE(ok);
    EXPECT_EQ(WCStoMBS(L"abc", 3, dst, 3, &ok), 0u);
    EXPECT_EQ(WCStoMBS(L"abc", 2, dst, 8, &ok), 0u);
}

TEST(WCStoMBS, Utf8LocaleJoinsPairsAndFallbackLosesMultibyteCharacters) {
    ScopedLocale utf8("C.UTF-8");
    bool ok = false;
    char dst[16];
    const std::wstring pair = units({0xE9, 0xD83D, 0xDE00});
    EXPECT_EQ(WCStoMBS(pair.c_str(), wholeString, nullptr, 0, &ok), 6u);
    EXPECT_EQ(WCStoMBS(pair.c_str(), wholeString, dst, 16, &ok), 6u);
    EXPECT_TRUE(ok);
    EXPECT_STREQ(dst, "\xC3\xA9\xF0\x9F\x98\x80");

    // A lone surrogate sends the whole text through the one-byte fallback,
    // where the two-byte U+00E9 is lost as well.
    const std::wstring lone = units({'a', 0xD800, 0xE9});
    EXPECT_EQ(WCStoMBS(lone.c_str(), wholeString, dst, 16, &ok), 3u);
    EXPECT_FALSE(ok);
    EXPECT_STREQ(dst, "a??");
}

TEST(UTF8toWCS, ByteOrderMarkAndTerminator) {
    bool ok = false;
    EXPECT_EQ(UTF8toWCS("\xEF\xBB\xBF"
                        "A",
                        4, nullptr, 0, false, &ok),
              1u);
    EXPECT_EQ(UTF8toWCS("\xEF\xBB\xBF"
                        "A",
                        4, nullptr, 0, true, &ok),
              2u);
    EXPECT_EQ(UTF8toWCS("\xEF\xBB\xBF"
                        "A",
                        wholeString, nullptr, 0, false, &ok),
              2u);
    EXPECT_EQ(UTF8toWCS("A", wholeString, nullptr, 0, false, &ok), 2u);
    EXPECT_TRUE(ok);

    wchar_t dst[4] = {L'#', L'#', L'#', L'#'};
    EXPECT_EQ(UTF8toWCS("\xEF\xBB\xBF"
                        "AB",
                        5, dst, 3, true, &ok),
              3u); // exact size suffices
    EXPECT_EQ(std::wstring(dst, 4), units({0xFEFF, 'A', 'B', '#'}));
    EXPECT_EQ(UTF8toWCS("AB", 2, dst, 1, false, &ok), 0u);
    EXPECT_TRUE(ok); // undersized: ok keeps what measuring found

    ok = true;
    EXPECT_EQ(UTF8toWCS("\xEF\xBB\xBF", 3, nullptr, 0, false, &ok), 0u); // only a mark
    EXPECT_FALSE(ok);
    ok = false;
    EXPECT_EQ(UTF8toWCS("", wholeString, dst, 4, false, &ok), 0u);
    EXPECT_TRUE(ok);
    EXPECT_EQ(UTF8toWCS(nullptr, 3, dst, 4, false, &ok), 0u);
    EXPECT_FALSE(ok);
}

TEST(UTF8toWCS, IllFormedInputTakesMaximalSubparts) {
    bool ok = true;
    EXPECT_EQ(fromUtf8("A\xFF"
                       "B",
                       &ok),
              units({'A', 0xFFFD, 'B'}));
    EXPECT_FALSE(ok);
    // The Unicode standard's example: a F1 80 80 E1 80 C2 b 80 c 80 BF d.
    EXPECT_EQ(fromUtf8("a\xF1\x80\x80\xE1\x80\xC2"
                       "b\x80"
                       "c\x80\xBF"
                       "d"),
              units({'a', 0xFFFD, 0xFFFD, 0xFFFD, 'b', 0xFFFD, 'c', 0xFFFD, 0xFFFD, 'd'}));
    EXPECT_EQ(fromUtf8("\xC0\x80"), units({0xFFFD, 0xFFFD}));                         // overlong
    EXPECT_EQ(fromUtf8("\xED\xA0\x80"), units({0xFFFD, 0xFFFD, 0xFFFD}));             // surrogate
    EXPECT_EQ(fromUtf8("\xF4\x90\x80\x80"), units({0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD})); // > U+10FFFF
    EXPECT_EQ(fromUtf8("x\xE2\x82"), units({'x', 0xFFFD})); // cut at the end
    EXPECT_EQ(fromUtf8("\xF0\x9F\x98\x80"), units({0xD83D, 0xDE00}));
}

TEST(UTF8toWCS, AgreesWithReferenceOnRandomInput) {
    // Bytes drawn mostly from lead and continuation ranges, so that most
    // strings come close to well-formed and the rules at the edges are hit.
    const unsigned char pool[] = {'a',  'Z',  0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0,
                                  0xBF, 0xC1, 0xC2, 0xDF, 0xE0, 0xE1, 0xEC, 0xED,
                                  0xEE, 0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xFF};
    std::mt19937 random(11);
    int wellFormed = 0;
    for (int i = 0; i < 20000; ++i) {
        std::string bytes(random() % 40, ' ');
        for (char& b : bytes)
            b = static_cast<char>(pool[random() % sizeof pool]);
        std::wstring expected;
        const bool valid = referenceToUtf16(bytes, expected);
        bool ok = false;
        const std::wstring got = fromUtf8(bytes, &ok);
        ASSERT_EQ(ok, valid) << i;
        if (valid) {
            ASSERT_EQ(got, expected) << i;
            ++wellFormed;
        }
    }
    EXPECT_GT(wellFormed, 100);
}

TEST(UTF8toWCS, FastPathsAgreeWithOneCharacterAtATime) {
    // Runs of every form, single spaces, stray and cut-off bytes, at random
    // offsets from the block and word boundaries of the fast paths.
    const std::string pieces[] = {"a",
                                  "abcdefghijklmnopq",
                                  " ",
                                  "\xD0\xB6",
                                  "\xE4\xB8\xAD",
                                  "\xF0\x9F\x98\x80",
                                  "\x80",
                                  "\xFF",
                                  "\xC3",
                                  "\xE4\xB8",
                                  "\xF0\x9F",
                                  "\xED\xA0\x80",
                                  "\xC0\xAF",
                                  "\xF4\x90\x80\x80"};
    std::mt19937 random(5);
    for (int i = 0; i < 5000; ++i) {
        std::string bytes;
        for (int n = static_cast<int>(random() % 24); n > 0; --n)
            bytes += pieces[random() % std::size(pieces)];
        std::wstring expected;
        bool valid = true;
        const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
        for (const auto* end = p + bytes.size(); p != end;) {
            const kx::unicode::Utf8Char c = kx::unicode::decodeUtf8(p, end);
            valid &= c.status == kx::unicode::Utf8Status::valid;
            wchar_t units[2];
            expected.append(units, kx::unicode::putUtf16(units, c.codePoint));
            p += c.length;
        }
        bool ok = false;
        ASSERT_EQ(fromUtf8(bytes, &ok), expected) << i;
        ASSERT_EQ(ok, valid) << i;

        std::string encoded;
        for (const wchar_t *q = expected.data(), *end = q + expected.size(); q != end;) {
            char out[4];
            encoded.append(out, kx::unicode::encodeUtf8(out, kx::unicode::readUtf16(q, end)));
        }
        ASSERT_EQ(toUtf8(expected), encoded) << i;
    }
}

TEST(UTF8toWCS, AsciiBlocksMeetOtherText) {
    // Non-ASCII text at every offset around the 16-byte ASCII blocks.
    for (std::size_t at = 0; at < 40; ++at) {
        std::string bytes(40, 'x');
        bytes.replace(at, 0, "\xC3\xA9\xF0\x9F\x98\x80");
        std::wstring expected(40, L'x');
        expected.replace(at, 0, units({0xE9, 0xD83D, 0xDE00}));
        EXPECT_EQ(fromUtf8(bytes), expected) << at;
        EXPECT_EQ(toUtf8(expected), bytes) << at;
    }
}

TEST(WCStoUTF8, EveryCharacterRoundTrips) {
    std::wstring all;
    for (char32_t c = 1; c <= 0x10FFFF; ++c) {
        if (c >= 0xD800 && c <= 0xDFFF)
            continue;
        if (c > 0xFFFF) {
            all += static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
            all += static_cast<wchar_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else {
            all += static_cast<wchar_t>(c);
        }
    }
    bool ok = false;
    const std::string bytes = toUtf8(all, &ok);
    EXPECT_TRUE(ok);
    std::wstring reference;
    ASSERT_TRUE(referenceToUtf16(bytes, reference));
    EXPECT_TRUE(reference == all);
    EXPECT_TRUE(fromUtf8(bytes, &ok) == all);
    EXPECT_TRUE(ok);
}

TEST(WCStoUTF8, LoneSurrogatesAndWideLiterals) {
    bool ok = false;
    EXPECT_EQ(toUtf8(units({'a', 0xD800, 'b', 0xDC00}), &ok), "a\xEF\xBF\xBD"
                                                              "b\xEF\xBF\xBD");
    EXPECT_TRUE(ok);                                    // unpaired surrogates are not reported
    EXPECT_EQ(toUtf8(units({0xD83D})), "\xEF\xBF\xBD"); // a high half at the very end
    EXPECT_EQ(toUtf8(units({0x1F600, 0x110000})), "\xF0\x9F\x98\x80\xEF\xBF\xBD");

    char dst[8];
    EXPECT_EQ(WCStoUTF8(L"ab", wholeString, nullptr, 0, &ok), 3u);
    EXPECT_EQ(WCStoUTF8(L"ab", wholeString, dst, 3, &ok), 3u);
    EXPECT_STREQ(dst, "ab");
    EXPECT_EQ(WCStoUTF8(L"\u00e9", 1, dst, 1, &ok), 0u);
    EXPECT_TRUE(ok);
    EXPECT_EQ(WCStoUTF8(L"", wholeString, dst, 8, &ok), 0u);
    EXPECT_TRUE(ok);
    EXPECT_EQ(WCStoUTF8(nullptr, 1, dst, 8, &ok), 0u);
    EXPECT_FALSE(ok);
}

TEST(DetectUTF8BOM, NeedsThreeBytesOrATerminatedText) {
    EXPECT_EQ(detectUTF8BOM("\xEF\xBB\xBF", 3), 3);
    EXPECT_EQ(detectUTF8BOM("\xEF\xBB\xBF", -1), 3);
    EXPECT_EQ(detectUTF8BOM("\xEF\xBB\xBF", 2), 0);
    EXPECT_EQ(detectUTF8BOM("\xEF\xBB", -1), 0);
    EXPECT_EQ(detectUTF8BOM(nullptr, -1), 0);
    EXPECT_EQ(getDefaultMBChar(), '?');
    EXPECT_EQ(getDefaultWChar(), L'?');
}
