#include <Base/String/CharacterClass.h>

#include "ScopedLocale.h"

#include <gtest/gtest.h>

using namespace kxString;

TEST(CharacterClass, LetterModifiersCountAsLetters) {
    EXPECT_TRUE(isAlpha(L'\u2460'));
    EXPECT_TRUE(isAlnum(L'\u2460'));
    EXPECT_TRUE(isGraph(L'\u25A0'));
    EXPECT_FALSE(isPunct(L'\uFF04'));
    EXPECT_FALSE(isLetterModifier('a'));
    EXPECT_FALSE(isLetterModifier(L'\u2104'));
    EXPECT_FALSE(isLetterModifier(L'\u2474'));
    EXPECT_FALSE(isLetterModifier(L'\uFFE6'));

    // The table must stay sorted and whole for its search to find every entry.
    int members = 0;
    for (unsigned c = 0; c <= 0xFFFF; ++c)
        members += isLetterModifier(static_cast<wchar_t>(c));
    EXPECT_EQ(members, 178);
}

TEST(CharacterClass, RuntimeClassesWithTheLibrarysChanges) {
    ScopedLocale utf8("C.UTF-8");
    EXPECT_FALSE(isPrint(L'\t'));
    EXPECT_FALSE(isPrint('\t'));
    EXPECT_TRUE(isPrint(L'\u00e9'));
    EXPECT_TRUE(isAlpha(L'\u00e9'));
    EXPECT_FALSE(isAlpha(L'7'));
    EXPECT_TRUE(isAlnum(L'7'));
    EXPECT_TRUE(isPunct(L'!'));
    EXPECT_TRUE(isSpace(L'\u3000'));
    EXPECT_TRUE(isUpper(L'\u00c9'));
    EXPECT_TRUE(isXDigit('f'));
    EXPECT_FALSE(isXDigit(L'g'));
    EXPECT_EQ(toLower(L'\u00c9'), L'\u00e9');
    EXPECT_EQ(toUpper('q'), 'Q');
    EXPECT_EQ(toLower('Q'), 'q');
    EXPECT_EQ(toUpper(L'\u00e9'), L'\u00c9');
}

TEST(CharacterClass, HighBytesAreUnsignedAndNotAscii) {
    ScopedLocale ascii("C");
    const char high = static_cast<char>(0xE9);
    EXPECT_FALSE(isAlpha(high));
    EXPECT_FALSE(isPrint(high));
    EXPECT_FALSE(isAscii(high));
    EXPECT_TRUE(isAscii('\x7F'));
    EXPECT_TRUE(isAscii(L'\x7F'));
    EXPECT_FALSE(isAscii(L'\x80'));
    EXPECT_FALSE(isAscii(static_cast<wchar_t>(-1)));
    EXPECT_TRUE(isAscii(static_cast<const char*>(nullptr)));
    EXPECT_TRUE(isAscii(""));
    EXPECT_TRUE(isAscii("plain"));
    EXPECT_FALSE(isAscii("caf\xC3\xA9"));
    EXPECT_EQ(toUpper(high), high);
}

TEST(CharacterClass, LineBreaksAndTabs) {
    EXPECT_TRUE(isNewLine('\n'));
    EXPECT_TRUE(isNewLine(L'\r'));
    EXPECT_FALSE(isNewLine(L'\u2028'));
    EXPECT_FALSE(isNewLine(' '));
    EXPECT_TRUE(isTab('\t'));
    EXPECT_TRUE(isTab(L'\t'));
    EXPECT_FALSE(isTab(L'\v'));
    EXPECT_TRUE(isCntrl('\t'));
    EXPECT_TRUE(isDigit('0'));
    EXPECT_TRUE(isLower(L'z'));
}
