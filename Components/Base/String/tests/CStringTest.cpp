#include <Base/String/CString.h>

#include <Base/String/CharacterClass.h>
#include <Base/String/IString.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

using kxString::CString;
using kxString::IString;

namespace {

constexpr unsigned int npos = CString::npos;

bool isDigitChar(char c) {
    return c >= '0' && c <= '9';
}

unsigned int formatList(CString& s, const char* format, ...) {
    va_list args;
    va_start(args, format);
    s.vformat(format, args);
    const unsigned int n = s.vformat(format, args); // the list stays usable
    va_end(args);
    return n;
}

} // namespace

TEST(CString, EmptyNeedlesAndEmptyStringsAreNeverFound) {
    EXPECT_EQ(CString("abc").find(""), npos);
    EXPECT_EQ(CString("abc").rfind(""), npos);
    EXPECT_EQ(CString().find("x"), npos);
    EXPECT_EQ(CString().find('x'), npos);
    EXPECT_EQ(CString("abc").find(static_cast<const char*>(nullptr)), npos);

    const CString s("abcabc");
    EXPECT_EQ(s.find("bc"), 1u);
    EXPECT_EQ(s.find("bc", 2), 4u);
    EXPECT_EQ(s.find('c', 3), 5u);
    EXPECT_EQ(s.find(CString("ca")), 2u);
    EXPECT_EQ(s.find("bc", 10), npos);
    EXPECT_EQ(s.rfind("bc"), 4u);
    EXPECT_EQ(s.rfind("bc", 3), 1u);
    EXPECT_EQ(s.rfind('a', 2), 0u);
}

TEST(CString, PredicateSearchesScanFromThePosition) {
    const CString s("ab1cd2");
    EXPECT_EQ(s.find(isDigitChar), 2u);
    EXPECT_EQ(s.find(isDigitChar, 3), 5u);
    EXPECT_EQ(s.rfind(isDigitChar), 5u); // npos starts at the last character
    EXPECT_EQ(s.rfind(isDigitChar, 4), 2u);
    EXPECT_EQ(s.rfind(isDigitChar, 100), 5u);
    EXPECT_EQ(s.find(isDigitChar, 6), npos);
    EXPECT_EQ(CString().rfind(isDigitChar), npos);
    EXPECT_EQ(s.find(static_cast<bool (*)(char)>(nullptr)), npos);
}

TEST(CString, CompareByRawBytes) {
    EXPECT_EQ(CString("ab").compare("abc"), -1);
    EXPECT_EQ(CString("abc").compare(CString("ab")), 1);
    EXPECT_EQ(CString("abc").compare("abc"), 0);
    EXPECT_EQ(CString("b").compare("abc"), 1);
    EXPECT_EQ(CString("\xE9").compare("z"), 1); // bytes are unsigned
    EXPECT_EQ(CString().compare(static_cast<const char*>(nullptr)), 0);
    EXPECT_EQ(CString("ABC").compareNoCase(CString("abd")), -1);
    EXPECT_EQ(CString("ABC").compareNoCase(CString("abc")), 0);
    EXPECT_EQ(CString("b").collate(CString("a")), 1);
    EXPECT_EQ(CString("B").collateNoCase(CString("b")), 0);

    EXPECT_TRUE(kxString::less(CString("a"), CString("b")));
    EXPECT_TRUE(kxString::lessEqual(CString("a"), CString("a")));
    EXPECT_TRUE(kxString::greater(CString("b"), CString("a")));
    EXPECT_TRUE(kxString::greaterEqual(CString("b"), CString("b")));
    EXPECT_TRUE(kxString::notEqual(CString("a"), CString("b")));
    EXPECT_TRUE(kxString::equal(CString("a"), "a"));
    EXPECT_TRUE(CString("a") < CString("b"));
    EXPECT_TRUE(CString("a") == "a");
}

TEST(CString, TrimmingTakesWholeRuns) {
    CString s("  a b  ");
    EXPECT_STREQ(s.stripSpaces().asChar(), "a b  ");
    EXPECT_STREQ(s.rstripSpaces().asChar(), "a b");
    EXPECT_STREQ(CString("xxaxx").strip('x').asChar(), "axx");
    EXPECT_STREQ(CString("xxaxx").rstrip('x').asChar(), "xxa");
    EXPECT_STREQ(CString("xxx").strip('x').asChar(), "");
    EXPECT_STREQ(CString("\t\n").rstripSpaces().asChar(), "");
}

TEST(CString, PositionsPastTheEndAreHarmless) {
    CString s("abc");
    EXPECT_EQ(s[1], 'b');
    EXPECT_EQ(s.at(3), '\0');
    EXPECT_EQ(s.at(100), '\0');
    s.at(100) = 'z'; // discarded
    EXPECT_EQ(s.at(100), '\0');
    EXPECT_STREQ(s.asChar(), "abc");

    EXPECT_STREQ(CString("abc").insert(100, "d").asChar(), "abcd");
    EXPECT_STREQ(CString("abc").insert(1, 'x').asChar(), "axbc");
    EXPECT_STREQ(CString("abc").replace(100, 5, "d").asChar(), "abcd");
    EXPECT_STREQ(CString("abc").replace(1, 1, 'x').asChar(), "axc");
    EXPECT_STREQ(CString("abcdef").replace(1, npos, CString("Z")).asChar(), "aZ");
    EXPECT_STREQ(CString("abc").erase(100).asChar(), "abc");
    EXPECT_STREQ(CString("abc").erase(1, 1).asChar(), "ac");
    EXPECT_STREQ(CString("abc").remove(1).asChar(), "a");
    EXPECT_STREQ(CString().erase(0, 5).asChar(), "");
    EXPECT_STREQ(CString("abc").substr(100).asChar(), "");
    EXPECT_STREQ(CString("abcdef").substr(2, 3).asChar(), "cde");
}

TEST(CString, GrowthAndConstruction) {
    CString s('b');
    s.append("cd").append('e').prepend('a').prepend("<").append(CString(">"));
    s.append(static_cast<const char*>(nullptr)).prepend(static_cast<const char*>(nullptr));
    EXPECT_STREQ(s.asChar(), "<abcde>");
    EXPECT_STREQ(CString(3, 'z').asChar(), "zzz");
    EXPECT_STREQ(CString("abcdef", 3).asChar(), "abc");
    EXPECT_STREQ(CString("abcdef", -1).asChar(), "abcdef");
    EXPECT_STREQ(CString(static_cast<const char*>(nullptr)).asChar(), "");
    EXPECT_STREQ(CString(nullptr, 4).asChar(), "");

    kxString::String& base = s;
    base.append(IString(L"w")); // the other class, through the system code page
    EXPECT_STREQ(s.asChar(), "<abcde>w");
    EXPECT_GE(s.reserve(100), 100u);
    EXPECT_GE(s.capacity(), 100u);
}

TEST(CString, BaseOperations) {
    const CString empty;
    EXPECT_TRUE(empty.isNull());
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_EQ(empty.last(), 0u);
    EXPECT_EQ(CString("abc").last(), 2u);
    EXPECT_EQ(CString("abc").first(), 0u);
    EXPECT_EQ(empty.maxSize(), 0xFFFFFFFEu);
    EXPECT_EQ(CString::npos, 0xFFFFFFFFu);
}

TEST(CString, ValuesAreIndependentCopies) {
    CString a("one");
    CString b(a);
    b.append("!");
    EXPECT_STREQ(a.asChar(), "one");
    a = b;
    EXPECT_STREQ(a.asChar(), "one!");
    CString c(std::move(a));
    EXPECT_STREQ(c.asChar(), "one!");
    EXPECT_STREQ(a.asChar(), ""); // NOLINT(bugprone-use-after-move): moved-from is empty
    kxString::swap(b, a);
    EXPECT_STREQ(a.asChar(), "one!");
    EXPECT_STREQ(b.asChar(), "");
    a = "x";
    EXPECT_STREQ(a.asChar(), "x");
    a.assign(CString("y"));
    EXPECT_STREQ(a.asChar(), "y");
}

TEST(CString, FormatGrowsAndFailsWithoutChangingTheText) {
    CString s("old");
    EXPECT_EQ(s.format("%s", ""), npos);
    EXPECT_STREQ(s.asChar(), "old");
    EXPECT_EQ(s.format("%S", L"\xD800"), npos); // cannot be converted: fails at once
    EXPECT_STREQ(s.asChar(), "old");

    EXPECT_EQ(s.format("%d-%s", 7, "x"), 3u);
    EXPECT_STREQ(s.asChar(), "7-x");
    const std::string longText(5000, 'q');
    EXPECT_EQ(s.format("%s!", longText.c_str()), 5001u);
    EXPECT_EQ(s.format(0u, "%s", "hint 0"), 6u);
    EXPECT_EQ(s.format(2u, "%s", "tiny hint"), 9u);
    const CString format("%d%%");
    EXPECT_EQ(s.format(&format, 50), 3u);
    EXPECT_STREQ(s.asChar(), "50%");
    EXPECT_EQ(s.format(static_cast<const CString*>(nullptr), 1), npos);
    EXPECT_STREQ(s.asChar(), "50%");
    EXPECT_EQ(formatList(s, "%s and %s", "a", "b"), 7u);
    EXPECT_STREQ(s.asChar(), "a and b");
}

TEST(CString, FormatKeepsTheTextUpToItsTerminator) {
    CString s("old");
    EXPECT_EQ(s.format("a%cb", 0), 1u);
    EXPECT_EQ(s.length(), 1u);
    EXPECT_STREQ(s.asChar(), "a");
    EXPECT_EQ(s.format("%c", 0), 0u); // formatted one character, so not a failure
    EXPECT_EQ(s.length(), 0u);
}

TEST(CString, ViewsCopiesAndCEntryPoints) {
    const CString s("caf\xC3\xA9");
    EXPECT_EQ(s.asCharStoreSize(), 6u);
    EXPECT_EQ(s.asMultibyteStoreSize(), 6u);
    EXPECT_EQ(s.asMultibyte(), s.asChar());
    char* copy = s.copyAsChar();
    EXPECT_STREQ(copy, s.asChar());
    EXPECT_NE(copy, s.asChar());
    std::free(copy);
    EXPECT_FALSE(s.isAscii());
    EXPECT_TRUE(CString("plain").isAscii());
    EXPECT_TRUE(CString().isAscii());
    EXPECT_STREQ(CString("MiXeD").toLowerCase().asChar(), "mixed");
    EXPECT_STREQ(CString("MiXeD").toUpperCase().asChar(), "MIXED");

    CString* c = CString_create("from C");
    EXPECT_STREQ(c->asChar(), "from C");
    CString_delete(c);
    CString* empty = CString_create(nullptr);
    EXPECT_TRUE(empty->isEmpty());
    CString_delete(empty);
    CString_delete(nullptr);
}
