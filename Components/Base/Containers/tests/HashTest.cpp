// Properties of the hash mixing: the tables are internal, so this program
// compiles them itself.
#include <Base/Containers/Hash.h>

#include <Base/Containers/HashTables.h>
#include <Base/String/CString.h>
#include <Base/String/IString.h>

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <set>
#include <string>
#include <vector>

using kx::detail::kS1;
using kx::detail::kS2;
using kx::detail::kS3;
using kx::detail::kS4;

namespace {

std::uint32_t bytesHash(const std::string& bytes) {
    return kx::hashfunction(reinterpret_cast<const unsigned char*>(bytes.data()),
                            static_cast<int>(bytes.size()));
}

unsigned byteAt(const std::string& s, std::size_t i) {
    return static_cast<unsigned char>(s[i]);
}

} // namespace

TEST(Hash, TextMixesFourCharactersAtATime) {
    EXPECT_EQ(kx::hashfunction(""), 0u);
    EXPECT_EQ(kx::hashfunction(static_cast<const char*>(nullptr)), 0u);
    EXPECT_EQ(kx::hashfunction("a"), kS1['a']);
    EXPECT_EQ(kx::hashfunction("ab"), kS1['a'] + kS2['b']);
    EXPECT_EQ(kx::hashfunction("abcd"), ((kS1['a'] + kS2['b']) - kS3['c']) ^ kS4['d']);
    EXPECT_EQ(kx::hashfunction("abcde"), kx::hashfunction("abcd") ^ kS1['e']);
}

TEST(Hash, BytesRunTheUnevenCycle) {
    EXPECT_EQ(bytesHash(""), 0u);
    // A partial run takes the last steps of the cycle with t starting at 0.
    EXPECT_EQ(bytesHash("x"), kS3['x']);
    EXPECT_EQ(bytesHash("xy"), (0u - kS2['x']) + kS3['y']);
    // 16 bytes: one whole cycle, then step 15 alone on the last byte.
    const std::string sixteen = "0123456789abcdef";
    EXPECT_EQ(bytesHash(sixteen), bytesHash(sixteen.substr(0, 15)) ^ kS3['f']);
    // A whole cycle: four groups, the first of three steps.
    const std::string s = sixteen.substr(0, 15);
    std::uint32_t expected = (kS2[byteAt(s, 0)] ^ kS3[byteAt(s, 1)]) + kS4[byteAt(s, 2)];
    expected ^= ((kS2[byteAt(s, 3)] - kS3[byteAt(s, 4)]) + kS4[byteAt(s, 5)]) ^ kS1[byteAt(s, 6)];
    expected ^= ((kS3[byteAt(s, 7)] + kS4[byteAt(s, 8)]) ^ kS1[byteAt(s, 9)]) - kS2[byteAt(s, 10)];
    expected ^=
        ((kS4[byteAt(s, 11)] ^ kS1[byteAt(s, 12)]) - kS2[byteAt(s, 13)]) + kS3[byteAt(s, 14)];
    EXPECT_EQ(bytesHash(s), expected);
    // Whole cycles combine by XOR, whatever comes before them.
    EXPECT_EQ(bytesHash(s + s), 0u);
    EXPECT_EQ(kx::hashfunction(s.data(), s.data() + s.size()), expected);
}

TEST(Hash, WideTextHashesTwoBytesPerUnit) {
    const std::wstring wide = {L'a', wchar_t(0x263A), wchar_t(0xD83D), wchar_t(0xDE00), L'z'};
    std::string bytes;
    for (wchar_t unit : wide) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>((unit >> 8) & 0xFF);
    }
    EXPECT_EQ(kx::hashfunction(wide.data(), static_cast<int>(wide.size())), bytesHash(bytes));
    EXPECT_EQ(kxString::hashfunction(kxString::IString(wide.c_str())), bytesHash(bytes));
    // The string classes hash their whole length, past a NUL inside.
    const char text[] = {'a', '\0', 'b'};
    EXPECT_EQ(kxString::hashfunction(kxString::CString(text, 3)), bytesHash(std::string(text, 3)));
    EXPECT_NE(kxString::hashfunction(kxString::CString(text, 3)),
              kxString::hashfunction(kxString::CString(text, 1)));
}

TEST(Hash, WordsEnterMixedWithTheirPosition) {
    const unsigned int one[] = {7};
    EXPECT_EQ(kx::hashfunction(one, 1), kS3[0] ^ 7u);
    const unsigned int two[] = {7, 7};
    EXPECT_EQ(kx::hashfunction(two, 2), (0u - (kS2[0] ^ 7u)) + (kS3[1] ^ 7u));
    // Word 256 uses the tables' first entries again; word 0 differs from 1.
    std::vector<unsigned int> words(300, 5);
    const std::uint32_t h = kx::hashfunction(words.data(), 300);
    words[0] = 6;
    EXPECT_NE(kx::hashfunction(words.data(), 300), h);
    EXPECT_EQ(kx::hashfunction(words.data(), 0), 0u);
}

TEST(Hash, HasherMixesEachFullBufferAsBytes) {
    kx::Hasher empty;
    EXPECT_EQ(empty.getHash(), 0u);
    std::vector<std::uint64_t> words;
    for (std::uint64_t i = 0; i < 17; ++i)
        words.push_back(i * 0x0101010101010101ull);
    const auto asBytes = [&words](std::size_t first, std::size_t n) {
        return std::string(reinterpret_cast<const char*>(words.data() + first), n * 8);
    };
    kx::Hasher three;
    for (int i = 0; i < 3; ++i)
        three.add(words[static_cast<std::size_t>(i)]);
    EXPECT_EQ(three.getHash(), bytesHash(asBytes(0, 3)));
    // The 16th word flushes; the mix of a running value is an XOR into it.
    kx::Hasher seventeen;
    for (std::uint64_t w : words)
        seventeen.add(w);
    EXPECT_EQ(seventeen.getHash(), bytesHash(asBytes(0, 16)) ^ bytesHash(asBytes(16, 1)));
}

TEST(Hash, SpreadsShortKeys) {
    std::set<std::uint32_t> seen;
    for (int i = 0; i < 10000; ++i)
        seen.insert(bytesHash("key" + std::to_string(i)));
    EXPECT_GT(seen.size(), 9900u);
}
