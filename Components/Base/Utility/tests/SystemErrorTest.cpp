// The system error text is internal: this test program compiles its sources
// itself.
#include <Base/Utility/SystemError.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

TEST(SystemError, TextOfKnownCodesComesFromTheSystem) {
    char expected[256];
    const char* text = strerror_r(ENOENT, expected, sizeof expected);
    EXPECT_STREQ(kxUtil::systemErrorText(ENOENT).asMultibyte(), text);

    errno = EACCES;
    const char* denied = strerror_r(EACCES, expected, sizeof expected);
    EXPECT_STREQ(kxUtil::lastSystemErrorText().asMultibyte(), denied);
    errno = EPIPE;
    const char* pipe = strerror_r(EPIPE, expected, sizeof expected);
    EXPECT_STREQ(kxUtil::lastSocketErrorText().asMultibyte(), pipe);
}

TEST(SystemError, UnknownCodesGetTheFallbackText) {
    EXPECT_STREQ(kxUtil::systemErrorText(123456).asWChar(),
                 L"An unknown WIN32 error occurred: 123456");
    EXPECT_STREQ(kxUtil::systemErrorText(-2147483647 - 1).asWChar(),
                 L"An unknown WIN32 error occurred: -2147483648");
}
