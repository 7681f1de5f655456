#include <Base/Utility/Format.h>

#include "ScopedLocale.h"

#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

extern "C" int formatFromC(char* buffer, size_t size);

namespace {

// Formats with the library and with the C runtime; the two must agree.
template <class... Args>
void expectSameAsRuntime(const char* format, Args... args) {
    char ours[1024];
    char theirs[1024];
    const int n = HN_snprintf(ours, sizeof ours, format, args...);
    const int m = std::snprintf(theirs, sizeof theirs, format, args...);
    ASSERT_LT(m, static_cast<int>(sizeof theirs) - 1) << format;
    EXPECT_EQ(n, m) << format;
    EXPECT_STREQ(ours, theirs) << format;
}

template <class... Args>
std::wstring wideFormat(const wchar_t* format, Args... args) {
    wchar_t buffer[256];
    const int n = HN_swprintf(buffer, 256, format, args...);
    return n < 0 ? L"<failed>" : std::wstring(buffer, static_cast<std::size_t>(n));
}

int formatTwice(char* first, char* second, const char* format, ...) {
    va_list args;
    va_start(args, format);
    HN_vsnprintf(first, 32, format, args);
    const int n = HN_vsnprintf(second, 32, format, args);
    va_end(args);
    return n;
}

// A format of six conversions, with random flags, widths, precisions and
// literal text, that takes the arguments of formatSix in this order: int,
// long long, double, narrow text, wide text, character.
std::string randomSixFormat(std::mt19937& random) {
    const char* flags[] = {"", "-", "+", " ", "#", "0", "-0"};
    const char* widths[] = {"", "3", "12"};
    const char* precisions[] = {"", ".0", ".2", ".9"};
    const char* conversions[][3] = {{"d", "x", "o"}, {"lld", "llu", "llX"}, {"f", "e", "g"},
                                    {"s", "s", "s"}, {"S", "ls", "S"},      {"c", "c", "c"}};
    const char* literals[] = {"", "-", "ab", " text "};
    std::string format;
    for (int kind = 0; kind < 6; ++kind) {
        const bool numeric = kind < 3;
        format += literals[random() % 4];
        format += '%';
        format += numeric ? flags[random() % 7] : random() % 2 ? "-" : "";
        format += widths[random() % 3];
        format += kind == 5 ? "" : precisions[random() % 4];
        format += conversions[kind][random() % 3];
    }
    return format;
}

} // namespace

TEST(BoundedFormat, ResultIsLengthOnlyWithRoomToSpare) {
    char b[16];
    std::memset(b, 'x', sizeof b);
    EXPECT_EQ(HN_snprintf(b, 10, "%s", "abc"), 3);
    EXPECT_STREQ(b, "abc");

    std::memset(b, 'x', sizeof b);
    EXPECT_EQ(HN_snprintf(b, 4, "%s", "abc"), -1); // fits with terminator, none to spare
    EXPECT_STREQ(b, "abc");

    std::memset(b, 'x', sizeof b);
    EXPECT_EQ(HN_snprintf(b, 3, "%s", "abc"), -1); // no room for the terminator
    EXPECT_EQ(std::string(b, 4), "abcx");

    std::memset(b, 'x', sizeof b);
    EXPECT_EQ(HN_snprintf(b, 5, "%d", 1234567), -1); // cut inside a conversion
    EXPECT_EQ(std::string(b, 6), "12345x");
}

TEST(BoundedFormat, NothingIsStoredPastTheCut) {
    // Every kind of conversion after the buffer is already full.
    char b[8];
    std::memset(b, 'x', sizeof b);
    EXPECT_EQ(HN_snprintf(b, 4, "%s%d%5.2f%c%S%10s%%", "abcdef", -12, 1.5, 'c', L"w", "s"), -1);
    EXPECT_EQ(std::string(b, 8), "abcdxxxx");

    wchar_t w[8];
    std::wmemset(w, L'x', 8);
    EXPECT_EQ(HN_swprintf(w, 4, L"%S%d%5.2f%Lg%c%s%10S", L"abcdef", -12, 1.5, 2.5L, 'c', "n", L"w"),
              -1);
    EXPECT_EQ(std::wstring(w, 8), L"abcdxxxx");
}

TEST(BoundedFormat, RandomFormatsKeepTheTruncationRule) {
    // The cut falls anywhere: in every kind of conversion and between them.
    // The stored text must be the runtime's text cut to the buffer, and
    // nothing may be written past the buffer.
    std::mt19937 random(17);
    for (int i = 0; i < 3000; ++i) {
        const std::string format = randomSixFormat(random);
        const std::wstring wideFormat(format.begin(), format.end());
        const long long big = static_cast<long long>(random()) * -1000003;
        const double real = static_cast<double>(big) / 977.0;
        char whole[512];
        const int length =
            std::snprintf(whole, sizeof whole, format.c_str(), 42, big, real, "text", L"wide", 'k');
        wchar_t wideWhole[512];
        ASSERT_EQ(
            std::swprintf(wideWhole, 512, wideFormat.c_str(), 42, big, real, "text", L"wide", 'k'),
            length);

        const auto size = static_cast<std::size_t>(random() % (length + 3));
        const auto stored = std::min<std::size_t>(size, static_cast<std::size_t>(length));
        const int expected = static_cast<std::size_t>(length) + 1 < size ? length : -1;
        std::vector<char> b(size + 4, '#');
        EXPECT_EQ(HN_snprintf(b.data(), size, format.c_str(), 42, big, real, "text", L"wide", 'k'),
                  expected)
            << format << " " << size;
        EXPECT_EQ(std::string(b.data(), stored), std::string(whole, stored)) << format;
        // After the text: its terminator when it fits, then untouched bytes.
        std::string tail(b.size() - stored, '#');
        if (stored < size)
            tail[0] = '\0';
        EXPECT_EQ(std::string(b.data() + stored, tail.size()), tail) << format << " " << size;

        std::vector<wchar_t> w(size + 4, L'#');
        EXPECT_EQ(
            HN_swprintf(w.data(), size, wideFormat.c_str(), 42, big, real, "text", L"wide", 'k'),
            expected)
            << format << " " << size;
        EXPECT_EQ(std::wstring(w.data(), stored), std::wstring(wideWhole, stored)) << format;
        EXPECT_EQ(w[size + 3], L'#');
    }
}

TEST(BoundedFormat, ZeroSizeOnlyMeasuresEmptyText) {
    EXPECT_EQ(HN_snprintf(nullptr, 0, "%s", ""), 0);
    EXPECT_EQ(HN_snprintf(nullptr, 0, "%s", "a"), -1);
    char b[1] = {'x'};
    EXPECT_EQ(HN_snprintf(b, 1, "%s", ""), -1); // "" and its terminator leave nothing spare
    EXPECT_EQ(b[0], '\0');
}

// These tests pass formats that the compiler's printf checks reject on purpose.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat"
#pragma GCC diagnostic ignored "-Wformat-extra-args"
#pragma GCC diagnostic ignored "-Wformat-overflow"

TEST(BoundedFormat, BadInputGivesEmptyTextAndMinusOne) {
    char b[16];
    const char* noFormat = nullptr;
    EXPECT_EQ(HN_snprintf(b, sizeof b, noFormat), -1);
    EXPECT_STREQ(b, "");
    EXPECT_EQ(HN_snprintf(nullptr, 8, "%s", "abc"), -1);

    const std::string trailing = "abc%";
    const std::string writeBack = "%n";
    const std::string positional = "%1$d";
    const std::string starPositional = "%*1$d";
    for (const std::string& format : {trailing, writeBack, positional, starPositional}) {
        std::strcpy(b, "old");
        int count = 0;
        EXPECT_EQ(HN_snprintf(b, sizeof b, format.c_str(), &count), -1) << format;
        EXPECT_STREQ(b, "") << format;
    }
    EXPECT_EQ(HN_snprintf(b, sizeof b, "%2147483648d", 1), -1);
}

TEST(BoundedFormat, HugeWidthIsCountedNotWritten) {
    char b[8];
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(HN_snprintf(b, sizeof b, "%2147483646d", 1), -1);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_EQ(std::string(b, 8), "        ");
}

TEST(BoundedFormat, UnknownConversionIsCopied) {
    char b[32];
    EXPECT_EQ(HN_snprintf(b, sizeof b, "[%-5y|%5%|%%]"), 10);
    EXPECT_STREQ(b, "[%-5y|%|%]");
}

TEST(BoundedFormat, WindowsSizePrefixes) {
    char b[128];
    const int n = HN_snprintf(b, sizeof b, "%I64d|%I64u|%I64x|%-22I64d|%020I64X|%I32d|%Id",
                              INT64_MIN, UINT64_MAX, std::uint64_t{255}, std::int64_t{-5},
                              std::uint64_t{0xABC}, -7, std::ptrdiff_t{-9});
    EXPECT_STREQ(b, "-9223372036854775808|18446744073709551615|ff|-5                    |"
                    "00000000000000000ABC|-7|-9");
    EXPECT_EQ(n, static_cast<int>(std::strlen(b)));
    wchar_t w[64];
    EXPECT_EQ(HN_swprintf(w, 64, L"%I64d|%5I64u", INT64_MAX, std::uint64_t{3}), 25);
    EXPECT_STREQ(w, L"9223372036854775807|    3");
}

TEST(BoundedFormat, StringsAndCharacters) {
    expectSameAsRuntime("[%s|%8s|%-8s|%.2s|%8.3s|%c|%3c|%-3c]", "text", "right", "left", "cut",
                        "abcdef", 'x', 'y', 'z');
    char b[32];
    EXPECT_EQ(HN_snprintf(b, sizeof b, "[%s|%.3s]", static_cast<char*>(nullptr),
                          static_cast<char*>(nullptr)),
              12);
    EXPECT_STREQ(b, "[(null)|(nu]");
    EXPECT_EQ(HN_snprintf(b, sizeof b, "%S|%ls|%C|%5hs", L"wide", L"text", L'w', "n"), 17);
    EXPECT_STREQ(b, "wide|text|w|    n");
}

#pragma GCC diagnostic pop

TEST(BoundedFormat, VaListStaysUsable) {
    char first[32];
    char second[32];
    EXPECT_EQ(formatTwice(first, second, "%d %s", 7, "seven"), 7);
    EXPECT_STREQ(first, "7 seven");
    EXPECT_STREQ(second, "7 seven");
}

TEST(BoundedFormat, CallableFromC) {
    char b[16];
    EXPECT_EQ(formatFromC(b, sizeof b), 4);
    EXPECT_STREQ(b, "c-42");
}

TEST(BoundedFormat, IntegersMatchRuntime) {
    const char* flags[] = {"",   "-",  "+",  " ",  "#",  "0",    "-0",
                           "+0", " 0", "#0", "-#", "+ ", "-+ #0"};
    const char* widths[] = {"", "1", "5", "25"};
    const char* precisions[] = {"", ".", ".0", ".1", ".5", ".22"};
    const char* conversions = "diuoxX";
    const long long values[] = {0, 1, -1, 42, -42, 255, INT_MAX, INT_MIN, LLONG_MAX, LLONG_MIN};
    for (const char* flag : flags) {
        for (const char* width : widths) {
            for (const char* precision : precisions) {
                for (const char* c = conversions; *c; ++c) {
                    const std::string spec = std::string("<%") + flag + width + precision;
                    for (long long v : values) {
                        expectSameAsRuntime((spec + *c + ">").c_str(), static_cast<int>(v));
                        expectSameAsRuntime((spec + "ll" + *c + ">").c_str(), v);
                        expectSameAsRuntime((spec + "hh" + *c + ">").c_str(), static_cast<int>(v));
                        expectSameAsRuntime((spec + "h" + *c + ">").c_str(), static_cast<int>(v));
                        expectSameAsRuntime((spec + "z" + *c + ">").c_str(), static_cast<long>(v));
                    }
                }
            }
        }
    }
    expectSameAsRuntime("%*d|%-*d|%.*d|%*.*x", -6, 1, 4, 2, -3, 5, 8, 4, 255);
    expectSameAsRuntime("%'d|%'15.3d|%'-12u", 1234567, -7654321, 99999999u);
}

TEST(BoundedFormat, FloatingPointMatchesRuntime) {
    const char* flags[] = {"", "-", "+", " ", "#", "0", "+0", "-+", " 0", "#0", "'"};
    const char* widths[] = {"", "8", "30"};
    const char* precisions[] = {"", ".0", ".1", ".3", ".17", ".40", ".200"};
    const char* conversions = "fFeEgGaA";
    std::vector<double> values = {0.0,
                                  -0.0,
                                  1.0,
                                  0.5,
                                  2.5,
                                  -1.5,
                                  123456.789,
                                  1e21,
                                  1e-5,
                                  0.0001,
                                  1e-300,
                                  5e-324,
                                  std::numeric_limits<double>::max(),
                                  std::numeric_limits<double>::infinity(),
                                  -std::numeric_limits<double>::infinity(),
                                  std::nan(""),
                                  -std::nan("")};
    std::mt19937_64 random(7);
    for (int i = 0; i < 40; ++i) {
        const std::uint64_t bits = random();
        double v = 0;
        std::memcpy(&v, &bits, sizeof v);
        values.push_back(v);
    }
    for (const char* flag : flags) {
        for (const char* width : widths) {
            for (const char* precision : precisions) {
                for (const char* c = conversions; *c; ++c) {
                    const std::string spec =
                        std::string("<%") + flag + width + precision + *c + ">";
                    for (double v : values)
                        expectSameAsRuntime(spec.c_str(), v);
                }
            }
        }
    }
    expectSameAsRuntime("%Lf|%-+20.5Le|%#Lg|%La", 3.25L, -1e100L, 2.0L, 0.1L);
    expectSameAsRuntime("%p|%20p|%-20p|%p", static_cast<void*>(&values),
                        static_cast<void*>(&values), static_cast<void*>(&values),
                        static_cast<void*>(nullptr));
}

TEST(BoundedFormat, HugeFloatingPointPrecisionIsRejected) {
    char b[64];
    EXPECT_EQ(HN_snprintf(b, sizeof b, "%.70000Lf", 1.0L), -1);
    EXPECT_STREQ(b, "");
}

TEST(BoundedFormat, WideArgumentsAreEncodedInTheLocale) {
    ScopedLocale utf8("C.UTF-8");
    char b[32];
    // U+00E9, then U+1F600 as a surrogate pair: joined into one 4-byte character.
    EXPECT_EQ(HN_snprintf(b, sizeof b, "%S", L"\u00e9\xD83D\xDE00"), 6);
    EXPECT_STREQ(b, "\xC3\xA9\xF0\x9F\x98\x80");
    EXPECT_EQ(
        HN_snprintf(b, sizeof b, "[%8S][%-4S][%.5S]", L"\u00e9", L"\u00e9", L"\u00e9\xD83D\xDE00"),
        20);
    EXPECT_STREQ(b, "[      \xC3\xA9][\xC3\xA9  ][\xC3\xA9]");

    std::strcpy(b, "old");
    EXPECT_EQ(HN_snprintf(b, sizeof b, "%S", L"a\xD800z"), -1); // lone surrogate
    EXPECT_STREQ(b, "");

    ScopedLocale ascii("C");
    EXPECT_EQ(HN_snprintf(b, sizeof b, "%S", L"caf\u00e9"), -1);
    EXPECT_EQ(HN_snprintf(b, sizeof b, "%C", L'\u00e9'), -1);
}

TEST(WideFormat, NarrowConversionsTakeNarrowArguments) {
    EXPECT_EQ(wideFormat(L"%s and %S, %c%C", "narrow", L"wide", 'n', L'w'), L"narrow and wide, nw");
    EXPECT_EQ(wideFormat(L"[%6s|%-6S|%.2s|%d]", "ab", L"cd", "efg", -3), L"[    ab|cd    |ef|-3]");
    EXPECT_EQ(wideFormat(L"%.3f|%e|%g|%a", 2.0, 1.5, 1e-10, 1.0),
              L"2.000|1.500000e+00|1e-10|0x1p+0");

    wchar_t b[4];
    EXPECT_EQ(HN_swprintf(b, 4, L"%ls", L"abc"), -1);
    EXPECT_STREQ(b, L"abc");
    EXPECT_EQ(HN_swprintf(b, 3, L"%ls", L"abc"), -1);
    EXPECT_EQ(std::wstring(b, 3), L"abc");
}

TEST(WideFormat, FormsTheRewriteLeavesAloneTakeWideArguments) {
    EXPECT_EQ(wideFormat(L"[%.*s]", 2, L"abc"), L"[ab]");
    EXPECT_EQ(wideFormat(L"[%*s|%+s|% s|%#s]", 3, L"a", L"b", L"c", L"d"), L"[  a|b|c|d]");
    EXPECT_EQ(wideFormat(L"[%#c|%ls|%lc|%hs|%hc]", L'w', L"l", L'x', "h", 'y'), L"[w|l|x|h|y]");
    // "%-%s" becomes "%-%S": "%-%" prints "%", then the rewritten letter.
    EXPECT_EQ(wideFormat(L"%-%s"), L"%S");
}

TEST(WideFormat, NarrowArgumentsDecodeToUtf16) {
    ScopedLocale utf8("C.UTF-8");
    EXPECT_EQ(wideFormat(L"%s", "na\xC3\xAFve"), L"na\u00efve");
    EXPECT_EQ(wideFormat(L"%s", "\xF0\x9F\x98\x80"),
              std::wstring({wchar_t(0xD83D), wchar_t(0xDE00)}));
    EXPECT_EQ(wideFormat(L"[%.1s][%.2s][%4s]", "\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80", "\xC3\xA9"),
              std::wstring(L"[][") + wchar_t(0xD83D) + wchar_t(0xDE00) + L"][   \u00e9]");
}

TEST(WideFormat, UndecodableArgumentFailsAtOnce) {
    ScopedLocale ascii("C");
    std::vector<wchar_t> big(1 << 20);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(HN_swprintf(big.data(), big.size(), L"%s", "caf\xC3\xA9"), -1);
    EXPECT_EQ(big[0], L'\0');
    EXPECT_EQ(HN_swprintf(big.data(), big.size(), L"%c", 0xE9), -1);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

TEST(ConvertStringFormat, SwapsOnlyPlainStringAndCharacterConversions) {
    const auto convert = [](const wchar_t* format) {
        wchar_t* copy = HN_convert_string_format(format);
        std::wstring result = copy;
        std::free(copy);
        return result;
    };
    EXPECT_EQ(convert(L"100%% %s %-5.2S %c %ls"), L"100%% %S %-5.2s %C %ls");
    EXPECT_EQ(convert(L"%+s %#c %*s %ls %hs"), L"%+s %#c %*s %ls %hs");
    EXPECT_EQ(convert(L"%5.2s%C%-10c"), L"%5.2S%c%-10C");
    EXPECT_EQ(convert(L"%-%s"), L"%-%S"); // the second "%" is found again
    EXPECT_EQ(convert(L"no conversions"), L"no conversions");
    EXPECT_EQ(convert(L"%"), L"%");
    EXPECT_EQ(HN_convert_string_format(nullptr), nullptr);
}

TEST(NumberText, RingsKeepThreeResultsEach) {
    char* a = int64ToAscii(INT64_MIN, 0);
    char* b = uint64ToAscii(UINT64_MAX, 1);
    char* c = int64ToAscii(42, 1);
    EXPECT_STREQ(a, "-9223372036854775808");
    EXPECT_STREQ(b, "18446744073709551615");
    EXPECT_STREQ(c, "42");
    EXPECT_STREQ(int64ToAscii(7, 0), "7");
    EXPECT_STREQ(a, "7"); // slot 0 reused
    EXPECT_STREQ(b, "18446744073709551615");
    EXPECT_EQ(int64ToAscii(1, 3), int64ToAscii(1, 0)); // slots wrap around the ring
}

TEST(NumberText, ReadsAsScanfDoes) {
    EXPECT_EQ(asciiToInt64("  -42abc"), -42);
    EXPECT_EQ(asciiToInt64("abc"), 0);
    EXPECT_EQ(asciiToInt64("\t\n+17"), 17);
    EXPECT_EQ(asciiToInt64("-"), 0);
    EXPECT_EQ(asciiToInt64(nullptr), 0);
    EXPECT_EQ(asciiToInt64("-9223372036854775808"), INT64_MIN);
    EXPECT_EQ(asciiToInt64("9223372036854775808"), INT64_MAX);
    EXPECT_EQ(asciiToInt64("-99999999999999999999"), INT64_MIN);
    EXPECT_EQ(asciiToUInt64("18446744073709551615"), UINT64_MAX);
    EXPECT_EQ(asciiToUInt64("18446744073709551616"), UINT64_MAX);
    EXPECT_EQ(asciiToUInt64("-1"), UINT64_MAX);
    EXPECT_EQ(asciiToUInt64(" 0x10"), 0u);
}
