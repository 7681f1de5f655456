#include <Base/String/IString.h>

#include "ScopedLocale.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <string>

using kxString::CString;
using kxString::Encoding;
using kxString::IString;

namespace {

constexpr unsigned int npos = IString::npos;

// U+00E9 and U+1F600 (a surrogate pair) in UTF-16 and in UTF-8.
const std::wstring kWide = {L'a', wchar_t(0xE9), wchar_t(0xD83D), wchar_t(0xDE00)};
const char* const kUtf8 = "a\xC3\xA9\xF0\x9F\x98\x80";

} // namespace

TEST(IString, NarrowCacheConvertsOncePerTextAndEncoding) {
    ScopedLocale ascii("C");
    IString s(L"caf\u00e9");
    EXPECT_STREQ(s.asMultibyte(), "caf?");

    // The cache is kept while the text does not change: with a UTF-8 locale
    // now, the same call still returns the old conversion.
    ScopedLocale utf8("C.UTF-8");
    EXPECT_STREQ(s.asMultibyte(), "caf?");
    // Asking whether it was exact, while that is unknown, converts again.
    bool ok = false;
    EXPECT_STREQ(s.asMultibyte(Encoding::systemCodePage, &ok), "caf\xC3\xA9");
    EXPECT_TRUE(ok);
    ok = false;
    EXPECT_STREQ(s.asMultibyte(Encoding::systemCodePage, &ok), "caf\xC3\xA9"); // known now
    EXPECT_TRUE(ok);

    // Another encoding, or a change of the text, converts again.
    EXPECT_STREQ(s.asUTF8(), "caf\xC3\xA9");
    s[0] = L'C';
    EXPECT_STREQ(s.asUTF8(), "Caf\xC3\xA9");
    s.append(L'!');
    EXPECT_STREQ(s.asChar(), "Caf\xC3\xA9!");
}

TEST(IString, KnownLossyConversionStaysCached) {
    ScopedLocale ascii("C");
    IString s(L"\u00e9");
    bool ok = true;
    EXPECT_STREQ(s.asMultibyte(Encoding::systemCodePage, &ok), "?");
    EXPECT_FALSE(ok);
    ScopedLocale utf8("C.UTF-8");
    ok = true;
    EXPECT_STREQ(s.asMultibyte(Encoding::systemCodePage, &ok), "?");
    EXPECT_FALSE(ok);
    EXPECT_EQ(s.asMultibyteStoreSize(), 2u);
}

TEST(IString, Utf8OfSurrogatePairsRoundTrips) {
    const IString s(kWide.c_str());
    bool ok = false;
    EXPECT_STREQ(s.asUTF8(&ok), kUtf8);
    EXPECT_TRUE(ok);
    EXPECT_EQ(s.asUTF8StoreSize(), 8u);
    const IString back(kUtf8, Encoding::utf8, &ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(std::wstring(back.asWChar()), kWide);
    EXPECT_EQ(back.length(), 4u);

    const IString bom("\xEF\xBB\xBFhi", Encoding::utf8);
    EXPECT_STREQ(bom.asWChar(), L"hi");
    const IString repaired("a\xFF", Encoding::utf8, &ok);
    EXPECT_FALSE(ok);
    EXPECT_STREQ(repaired.asWChar(), L"a\uFFFD");
}

TEST(IString, NarrowTextThatConvertsToNothingStoresNothing) {
    IString s(L"kept");
    bool ok = true;
    s.assign("\xEF\xBB\xBF", Encoding::utf8, &ok); // a lone byte-order mark
    EXPECT_STREQ(s.asWChar(), L"kept");
    EXPECT_FALSE(ok);
    s.assign("", Encoding::utf8, &ok);
    EXPECT_STREQ(s.asWChar(), L"");
    EXPECT_TRUE(ok);

    ScopedLocale ascii("C");
    const IString lossy("a\xE9", Encoding::systemCodePage, &ok);
    EXPECT_FALSE(ok);
    EXPECT_STREQ(lossy.asWChar(), L"a?");
    EXPECT_STREQ(IString(3, 'x').asWChar(), L"xxx");
    EXPECT_STREQ(IString('y').asWChar(), L"y");
    EXPECT_STREQ(IString(CString("from narrow")).asWChar(), L"from narrow");
}

TEST(IString, GlobalReplacementNeverSearchesReplacedText) {
    IString s(L"aaa");
    EXPECT_STREQ(s.replace(IString(L"a"), IString(L"aa")).asWChar(), L"aaaaaa");
    EXPECT_STREQ(IString(L"abab").replace(IString(L"b"), IString(L"")).asWChar(), L"aa");
    EXPECT_STREQ(IString(L"abc").replace(IString(L""), IString(L"x")).asWChar(), L"abc");
    EXPECT_STREQ(IString(L"abc").replace(IString(L"z"), IString(L"x")).asWChar(), L"abc");
    IString self(L"xyx");
    EXPECT_STREQ(self.replace(self, IString(L"-")).asWChar(), L"-");
}

TEST(IString, SearchesOverUnits) {
    const IString s(L"path/to\\file.txt");
    EXPECT_EQ(s.findAny(IString(L"/\\")), 4u);
    EXPECT_EQ(s.rfindAny(IString(L"/\\")), 7u);
    EXPECT_EQ(s.rfindAny(IString(L"/\\"), 6), 4u);
    EXPECT_EQ(s.findAny(IString()), npos);
    EXPECT_EQ(IString().findAny(IString(L"/")), npos);
    EXPECT_EQ(s.find(L"file"), 8u);
    EXPECT_EQ(s.find(L""), npos);
    EXPECT_EQ(s.rfind(L't'), 15u);
    EXPECT_EQ(s.find([](wchar_t c) { return c == L'.'; }), 12u);
    EXPECT_EQ(s.rfind([](wchar_t c) { return c == L'/'; }, 3), npos);
}

TEST(IString, CompareByUnitsAndFormat) {
    EXPECT_EQ(IString(L"\xD800").compare(IString(L"\xFFFD")), -1);
    EXPECT_EQ(IString(L"ab").compare(L"abc"), -1);
    EXPECT_EQ(IString(L"ABC").compareNoCase(IString(L"abc")), 0);
    EXPECT_TRUE(IString(L"a") == "a");
    EXPECT_TRUE(IString(L"a") < IString(L"b"));
    EXPECT_TRUE(kxString::less(IString(L"a"), IString(L"ab")));

    IString s(L"old");
    EXPECT_EQ(s.format(L"%s=%S %d", "narrow", L"wide", 3), 13u);
    EXPECT_STREQ(s.asWChar(), L"narrow=wide 3");
    EXPECT_EQ(s.format("%s/%S", "n", L"w"), 3u); // a narrow format
    EXPECT_STREQ(s.asWChar(), L"n/w");
    const IString format(L"<%d>");
    EXPECT_EQ(s.format(&format, 9), 3u);
    EXPECT_EQ(s.format(1u, L"%ls", std::wstring(3000, L'w').c_str()), 3000u);
    EXPECT_EQ(s.format(L"%s", ""), npos);
    EXPECT_EQ(s.length(), 3000u);
}

TEST(IString, FormatFollowsTheWideFormatterRules) {
    IString s(L"old");
    // Forms that the format rewrite leaves alone take wide arguments.
    EXPECT_EQ(s.format(L"[%.*s|%+s|%#c]", 2, L"abc", L"w", L'c'), 8u);
    EXPECT_STREQ(s.asWChar(), L"[ab|w|c]");
    EXPECT_EQ(s.format(L"x%cy", 0), 1u); // a "%c" of 0 ends the text
    EXPECT_STREQ(s.asWChar(), L"x");
}

TEST(IString, UndecodableFormatArgumentFailsPromptly) {
    ScopedLocale ascii("C");
    IString s(L"kept");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(s.format(L"%s", "caf\xC3\xA9"), npos);
    EXPECT_EQ(s.format("%s", "caf\xC3\xA9"), npos);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_STREQ(s.asWChar(), L"kept");
}

TEST(IString, CopiesViewsAndConversions) {
    ScopedLocale utf8("C.UTF-8");
    IString s(kWide.c_str());
    IString copy(s);
    copy.append(L"!");
    EXPECT_EQ(s.length(), 4u);
    EXPECT_EQ(s.asWCharStoreSize(), 5u * sizeof(wchar_t));
    wchar_t* wide = s.copyAsWChar();
    EXPECT_EQ(std::wstring(wide), kWide);
    std::free(wide);
    char* narrow = s.copyAsMultibyte(Encoding::utf8);
    EXPECT_STREQ(narrow, kUtf8);
    std::free(narrow);
    EXPECT_STREQ(s.convertToCString().asChar(), kUtf8);
    EXPECT_STREQ(static_cast<CString>(s).asChar(), kUtf8);
    EXPECT_FALSE(s.isAscii());
    EXPECT_TRUE(IString(L"abc").isAscii());

    IString moved(std::move(copy));
    EXPECT_EQ(moved.length(), 5u);
    EXPECT_TRUE(copy.isEmpty()); // NOLINT(bugprone-use-after-move): moved-from is empty
    kxString::String& base = moved;
    base.append(CString("x"));
    EXPECT_EQ(moved.length(), 6u);
    IString part;
    moved.substr(part, 1, 1);
    EXPECT_EQ(part.at(0), wchar_t(0xE9));
    EXPECT_EQ(part.at(1), L'\0');
    EXPECT_STREQ(IString(L"  x ").stripSpaces().rstripSpaces().asWChar(), L"x");
    EXPECT_STREQ(IString(L"\u00c9").toLowerCase().asWChar(), L"\u00e9");
}
