#include <Base/Utility/Report.h>

#include "InChild.h"
#include "ScopedEnv.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

// What the callbacks received, in order, with the pointers they were given.
struct Received {
    std::string channel;
    std::string text;
    const char* pointer;
};
std::vector<Received> received;

void toError(const char* text) {
    received.push_back({"error", text, text});
}
void toStatus(const char* text) {
    received.push_back({"status", text, text});
}
void toUser(const char* text) {
    received.push_back({"user", text, text});
}
void toDebug(const char* text) {
    received.push_back({"debug", text, text});
}

int modifications = 0;
void countModification() {
    ++modifications;
}

std::string fileText(std::FILE* stream) {
    std::rewind(stream);
    std::string text;
    for (int c = std::fgetc(stream); c != EOF; c = std::fgetc(stream))
        text += static_cast<char>(c);
    return text;
}

// Leaves the process-wide slots as a fresh process has them.
class Report : public testing::Test {
protected:
    void SetUp() override { received.clear(); }
    void TearDown() override {
        rptInitialize(nullptr, stderr, nullptr, nullptr); // errors to stderr, as at first
        rptSetStatusCB(nullptr);
        rptSetUserCB(nullptr);
        rptSetDebugCB(nullptr);
        rptSetConfirmServer(nullptr);
        rptSetCheckAbortCB(nullptr);
        rptSetSleepCB(nullptr);
        rptDebugCodeClearAll();
    }
};

} // namespace

TEST_F(Report, WithoutCallbacksOnlyErrorsAreWritten) {
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    rptError("x%d\n", 1);
    rptStatus("status\n");
    rptUser("user\n");
    rptLog("log\n");
    rptDebug(0, "debug\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "x1\n");

    rptSetErrorCB(nullptr);
    testing::internal::CaptureStderr();
    rptError("silenced\n");
    rptErrorStr("silenced too\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(Report, ChannelsReachTheirCallbacksUnchanged) {
    rptSetErrorCB(toError);
    rptSetStatusCB(toStatus);
    rptSetUserCB(toUser);
    rptError("%s %d", "e", 1);
    rptStatus("s");
    rptUser("u\n");
    rptLog("log goes to the user");
    ASSERT_EQ(received.size(), 4u);
    EXPECT_EQ(received[0].text, "e 1");
    EXPECT_EQ(received[1].channel, "status");
    EXPECT_EQ(received[2].text, "u\n");
    EXPECT_EQ(received[3].channel, "user");

    // Long messages are cut at 2048 characters.
    const std::string long3000(3000, 'a');
    rptStatus("%s", long3000.c_str());
    EXPECT_EQ(received.back().text, long3000.substr(0, 2048));
    const std::string exact(2048, 'b');
    rptStatus("%s", exact.c_str());
    EXPECT_EQ(received.back().text, exact);
}

TEST_F(Report, ErrorTextGoesInPiecesWithTheLastInPlace) {
    rptSetErrorCB(toError);
    std::string text(5000, 'x');
    text[2048] = 'y';
    rptErrorStr(text.c_str());
    ASSERT_EQ(received.size(), 3u);
    EXPECT_EQ(received[0].text, std::string(2048, 'x'));
    EXPECT_EQ(received[1].text, 'y' + std::string(2047, 'x'));
    EXPECT_EQ(received[2].text.size(), 904u);
    EXPECT_EQ(received[2].pointer, text.c_str() + 4096);

    received.clear();
    const std::string exact(2048, 'e');
    rptErrorStr(exact.c_str());
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].pointer, exact.c_str());
    const std::string over(2049, 'o');
    rptErrorStr(over.c_str());
    ASSERT_EQ(received.size(), 3u);
    EXPECT_EQ(received[2].pointer, over.c_str() + 2048);
    rptErrorStr("");
    rptErrorStr(nullptr);
    EXPECT_EQ(received.size(), 3u);
}

TEST_F(Report, StreamsReplaceTheCallbacks) {
    std::FILE* out = std::tmpfile();
    rptInitialize(out, nullptr, out, out);
    testing::internal::CaptureStderr();
    rptError("vanishes\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    rptUser("u;");
    rptLog("l;");
    rptStatus("s;");
    rptDebugCodeSet(5);
    rptDebug(5, "d;"); // HERON_DEBUG is not set for this process
    EXPECT_EQ(fileText(out), "u;l;s;");
    std::fclose(out);
}

TEST_F(Report, QuestionsAndHostHooks) {
    EXPECT_EQ(rptConfirmOK("Overwrite?"), 8);
    EXPECT_EQ(rptConfirm(3, 2, "Save?"), 2);
    EXPECT_EQ(rptCheckAbort(), 0);
    EXPECT_EQ(rptSleep(10), 0);

    static std::vector<int> asked;
    asked.clear();
    rptSetConfirmServer([](int x, int y, int buttons, int answer, const char* message) {
        asked = {x, y, buttons, answer, static_cast<int>(std::string(message).size())};
        return 42;
    });
    EXPECT_EQ(rptConfirm(3, 2, "Save?"), 42);
    EXPECT_EQ(asked, (std::vector<int>{-1, -1, 3, 2, 5}));
    EXPECT_EQ(rptConfirmXY(10, 20, 1, 0, ""), 42);
    EXPECT_EQ(asked, (std::vector<int>{10, 20, 1, 0, 0}));
    rptSetConfirmServer(nullptr);
    EXPECT_EQ(rptConfirmOK(""), 8);

    rptSetCheckAbortCB([] { return 1; });
    rptSetSleepCB([](int ms) { return ms * 2; });
    EXPECT_EQ(rptCheckAbort(), 1);
    EXPECT_EQ(rptSleep(21), 42);
}

TEST_F(Report, DebugCodesStaySortedAndSignalChanges) {
    kxRTB::Connection* connection = rptDebugCodeGetModifiedSignal().connect(countModification);
    modifications = 0;
    rptDebugCodeSet(300);
    rptDebugCodeSet(5);
    rptDebugCodeSet(40);
    rptDebugCodeSet(40);
    EXPECT_EQ(modifications, 4);
    EXPECT_EQ(std::vector<int>(rptDebugCodeGet().begin(), rptDebugCodeGet().end()),
              (std::vector<int>{5, 40, 300}));
    rptDebugCodeUnset(9);
    EXPECT_EQ(modifications, 4);
    rptDebugCodeUnset(40);
    EXPECT_EQ(modifications, 5);
    EXPECT_EQ(rptDebugCodeGet().size(), 2);
    rptDebugCodeClearAll();
    rptDebugCodeClearAll();
    EXPECT_EQ(modifications, 7);
    EXPECT_TRUE(rptDebugCodeGet().empty());
    rptDebugCodeGetModifiedSignal().disconnect(connection);

    const auto& table = rptDebugCodeGetTable();
    EXPECT_EQ(&table, &rptDebugCodeGetTable());
    EXPECT_EQ(table.size(), 7);
    EXPECT_STREQ(table.find(3333)->second, "Forge Packet File Read/Write:");
    EXPECT_EQ(table.begin()->first, 50);
}

TEST_F(Report, ConsolePrintBypassesTheCallbacks) {
    rptSetUserCB(toUser);
    testing::internal::CaptureStdout();
    EXPECT_NE(kxUtilPrint("%d parts\n", 12), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "12 parts\n");
    EXPECT_TRUE(received.empty());
}

// HERON_DEBUG is read once per process: each case runs in a child.
TEST(ReportDeathTest, DebugNeedsTheEnvironment) {
    EXPECT_IN_CHILD({
        ::unsetenv("HERON_DEBUG");
        rptSetDebugCB(toDebug);
        rptDebugCodeSet(7);
        EXPECT_FALSE(rptDebugCodeIsSet(0));
        EXPECT_FALSE(rptDebugCodeIsSet(7));
        rptDebug(7, "never");
        rptDebug(0, "never");
        EXPECT_TRUE(received.empty());
        ::setenv("HERON_DEBUG", "1", 1);
        EXPECT_FALSE(rptDebugCodeIsSet(0)); // the first answer holds
    });
    EXPECT_IN_CHILD({
        ::setenv("HERON_DEBUG", "", 1);
        EXPECT_TRUE(rptDebugCodeIsSet(0));
        EXPECT_FALSE(rptDebugCodeIsSet(7));
        rptDebug(7, "without a callback");
        rptSetDebugCB(toDebug);
        rptDebug(7, "not set");
        rptDebugCodeSet(7);
        rptDebug(7, "code %d", 7);
        rptDebug(0, "any");
        ::unsetenv("HERON_DEBUG");
        EXPECT_TRUE(rptDebugCodeIsSet(7));
        ASSERT_EQ(received.size(), 2u);
        EXPECT_EQ(received[0].text, "code 7");
        EXPECT_EQ(received[1].text, "any");
    });
}

TEST(ReportDeathTest, ConsolePrintFailsWithoutOutput) {
    EXPECT_IN_CHILD({
        std::fclose(stdout);
        EXPECT_EQ(kxUtilPrint("lost"), 0);
    });
}
