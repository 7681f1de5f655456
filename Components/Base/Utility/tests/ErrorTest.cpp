#include <Base/Utility/Error.h>

#include <Base/Containers/Pair.h>
#include <Base/String/IString.h>

#include <gtest/gtest.h>

#include <cstdarg>
#include <utility>

using kxString::IString;
using kxUtil::Error;

namespace {

Error fromList(int num, const char* format, ...) {
    va_list args;
    va_start(args, format);
    Error error(num, format, args);
    va_end(args);
    return error;
}

Error fromWideList(int num, const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    Error error(num, format, args);
    va_end(args);
    return error;
}

} // namespace

TEST(Error, DefaultIsSuccessWithoutMessage) {
    const Error ok;
    EXPECT_FALSE(ok);
    EXPECT_EQ(ok.num(), 0);
    EXPECT_STREQ(ok.message(), "");
    EXPECT_TRUE(ok == Error());
}

// An empty format, which the compiler's printf check reports, is a rule here.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-zero-length"

TEST(Error, NoMessageDiffersFromAnEmptyOne) {
    const Error noText(5, "");
    const Error nullText(5, static_cast<const char*>(nullptr));
    const Error emptyText(5, IString());
    EXPECT_STREQ(noText.message(), "");
    EXPECT_STREQ(emptyText.message(), "");
    EXPECT_TRUE(noText == nullText);
    EXPECT_FALSE(noText == emptyText);
    EXPECT_TRUE(noText != emptyText);
    EXPECT_TRUE(emptyText == Error(5, IString()));
    EXPECT_FALSE(Error(5, "a") == Error(6, "a"));
    EXPECT_FALSE(Error(5, "a") == Error(5, "b"));
}

TEST(Error, NumberAloneDecidesFailure) {
    const Error success(0, "all went well");
    EXPECT_FALSE(success);
    EXPECT_STREQ(success.message(), "all went well");
    EXPECT_TRUE(Error(-1, ""));
}

#pragma GCC diagnostic pop

TEST(Error, MessagesAreFormats) {
    EXPECT_STREQ(Error(2, "%d files", 3).message(), "3 files");
    EXPECT_STREQ(Error(2, L"%d of %s", 4, "five").message(), "4 of five");
    EXPECT_STREQ(fromList(1, "%s:%d", "line", 12).message(), "line:12");
    EXPECT_STREQ(fromWideList(1, L"%S", L"wide").message(), "wide");
    EXPECT_STREQ(Error(1, "100%% done").message(), "100% done"); // ready-made text is a format too
    EXPECT_STREQ(Error(3, IString(L"50%")).message(), "50%");
}

TEST(Error, CopiesAreDeepAndAssignmentSwaps) {
    Error a(7, "first");
    Error b(a);
    EXPECT_TRUE(a == b);
    EXPECT_NE(a.message(), b.message());
    b = Error(8, "second");
    EXPECT_EQ(b.num(), 8);
    EXPECT_STREQ(b.message(), "second");
    const Error& self = a;
    a = self;
    EXPECT_EQ(a.num(), 7);
    EXPECT_STREQ(a.message(), "first");

    a.swap(b);
    EXPECT_EQ(a.num(), 8);
    EXPECT_STREQ(b.message(), "first");
    Error moved(std::move(a));
    EXPECT_STREQ(moved.message(), "second");
    EXPECT_FALSE(a); // NOLINT(bugprone-use-after-move): moved-from is success
    EXPECT_STREQ(a.message(), "");
}

TEST(Error, ReturnedBesideAResult) {
    const kx::pair<IString, Error> result(IString(L"name"), Error(3, "host not found"));
    const auto& [name, error] = result;
    EXPECT_STREQ(name.asWChar(), L"name");
    EXPECT_EQ(error.num(), 3);
    EXPECT_TRUE(result == kx::make_pair(IString(L"name"), Error(3, "host not found")));
}
