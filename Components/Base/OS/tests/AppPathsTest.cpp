#include <Base/OS/AppPaths.h>
#include <Base/OS/Environment.h>

#include "InChild.h"
#include "ScopedEnv.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

using kxString::IString;

namespace {

std::string text(const char* s) {
    return s ? s : "<null>";
}

// The installation directory that the library finds for this program: the
// directory above its own, with Windows separators.
std::string expectedLocation() {
    std::string path =
        std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path().string();
    for (char& c : path)
        c = c == '/' ? '\\' : c;
    return path;
}

} // namespace

TEST(Environment, ReadsTextNumbersAndFlags) {
    const ScopedEnv unset("LIBBASE_TEST_UNSET", nullptr);
    const ScopedEnv empty("LIBBASE_TEST_EMPTY", "");
    IString value(L"old");
    EXPECT_FALSE(kxOS::GetEnv(IString(L"LIBBASE_TEST_UNSET"), value));
    EXPECT_TRUE(value.isEmpty());
    EXPECT_TRUE(kxOS::GetEnv(IString(L"LIBBASE_TEST_EMPTY")));
    EXPECT_TRUE(kxOS::GetEnvExists(IString(L"LIBBASE_TEST_EMPTY")));
    EXPECT_FALSE(kxOS::GetEnvExists(IString(L"LIBBASE_TEST_UNSET")));

    int number = 0;
    EXPECT_FALSE(kxOS::GetEnv(IString(L"LIBBASE_TEST_UNSET"), number, 7));
    EXPECT_EQ(number, 7);
    for (const auto& [raw, expected] : {std::pair<const char*, int>{"12x", 12},
                                        {"abc", 0},
                                        {" -3", -3},
                                        {"99999999999", 2147483647},
                                        {"", 0}}) {
        const ScopedEnv set("LIBBASE_TEST_NUMBER", raw);
        EXPECT_TRUE(kxOS::GetEnv(IString(L"LIBBASE_TEST_NUMBER"), number, 7));
        EXPECT_EQ(number, expected) << raw;
    }

    bool flag = true;
    EXPECT_FALSE(kxOS::GetEnv(IString(L"LIBBASE_TEST_UNSET"), flag, false));
    EXPECT_FALSE(flag);
    for (const char* yes : {"  Yes ", "1", "t", "TRUE", "on"}) {
        const ScopedEnv set("LIBBASE_TEST_FLAG", yes);
        EXPECT_TRUE(kxOS::GetEnv(IString(L"LIBBASE_TEST_FLAG"), flag, false));
        EXPECT_TRUE(flag) << yes;
    }
    for (const char* no : {"y", "0", "off", "false", "", "yes please"}) {
        const ScopedEnv set("LIBBASE_TEST_FLAG", no);
        EXPECT_TRUE(kxOS::GetEnv(IString(L"LIBBASE_TEST_FLAG"), flag, true));
        EXPECT_FALSE(flag) << no;
    }
}

TEST(AppPaths, TemporaryPathTakesTheFirstVariableSet) {
    const ScopedEnv heron("HERON_TEMP_DIRECTORY", nullptr);
    const ScopedEnv tmpdir("TMPDIR", nullptr);
    const ScopedEnv temp("TEMP", nullptr);
    const ScopedEnv tmp("TMP", "/scratch/");
    EXPECT_EQ(text(APP_getTempPath()), "/scratch/");
    {
        const ScopedEnv first("TEMP", "");
        EXPECT_EQ(text(APP_getTempPath()), ""); // set, though empty
    }
    const ScopedEnv none("TMP", nullptr);
    {
        const ScopedEnv root("SystemRoot", "D:\\Windows");
        EXPECT_EQ(text(APP_getTempPath()), "D:\\temp");
    }
    const ScopedEnv emptyRoot("SystemRoot", "");
    EXPECT_EQ(text(APP_getTempPath()), "\\temp");
    const ScopedEnv own("HERON_TEMP_DIRECTORY", "/own");
    const ScopedEnv other("TMPDIR", "/other");
    EXPECT_EQ(text(APP_getTempPath()), "/own");
}

TEST(AppPathsDeathTest, ProgramName) {
    EXPECT_IN_CHILD({
        EXPECT_EQ(text(APP_getProgramName()), "Application");
        EXPECT_FALSE(APP_isProgramNameDefined());
        APP_setProgramName("C:\\x\\tool.exe");
        EXPECT_EQ(text(APP_getProgramName()), "tool.exe");
        EXPECT_TRUE(APP_isProgramNameDefined());
        APP_setProgramName("/usr/bin/tool");
        EXPECT_EQ(text(APP_getProgramName()), "/usr/bin/tool");
        APP_setProgramName(std::string(5000, 'n').c_str());
        EXPECT_EQ(std::string(APP_getProgramName()).size(), 1023u);
        APP_setProgramName("dir\\");
        EXPECT_FALSE(APP_isProgramNameDefined());
        EXPECT_EQ(text(APP_getProgramName()), "Application");
    });
}

TEST(AppPathsDeathTest, PathsFromAGivenLocationAreKept) {
    EXPECT_IN_CHILD({
        ::setenv("HERON_LOCATION", "E:\\Apps\\Suite", 1);
        EXPECT_EQ(text(APP_getPluginsPath()), "E:\\Apps\\Suite\\ODS\\OpenHeron\\plugins");
        EXPECT_EQ(text(APP_getBinariesPath32Bit()), "E:\\Apps\\Suite\\bin\\ia32");
        EXPECT_EQ(text(APP_getResourcePath()), "E:\\Apps\\Suite");
        EXPECT_EQ(text(APP_getPath(true)), "E:\\Apps\\Suite");
        ::setenv("HERON_LOCATION", "/moved", 1);
        EXPECT_EQ(text(APP_getBinariesPath()), "E:\\Apps\\Suite\\bin"); // made before the move
        EXPECT_EQ(text(APP_getPluginsPath()), "E:\\Apps\\Suite\\ODS\\OpenHeron\\plugins");
        EXPECT_EQ(text(APP_getResourcePath()), "/moved");
        // The stored path is another thing: it comes from the executable.
        EXPECT_EQ(text(APP_getPath(false)), expectedLocation());
        EXPECT_EQ(text(std::getenv("HERON_LOCATION")), expectedLocation());
        APP_setPath(kxString::CString("C:\\override"));
        EXPECT_EQ(text(APP_getPath(false)), "C:\\override");
        EXPECT_EQ(text(APP_getPath(true)), expectedLocation());
    });
}

TEST(AppPathsDeathTest, LocationComesFromTheExecutable) {
    EXPECT_IN_CHILD({
        ::unsetenv("HERON_LOCATION");
        EXPECT_EQ(text(APP_getBinariesPath()), expectedLocation() + "\\bin");
        EXPECT_EQ(text(std::getenv("HERON_LOCATION")), expectedLocation());
        EXPECT_EQ(text(APP_getPath(false)), expectedLocation());
    });
    EXPECT_IN_CHILD({
        ::unsetenv("HERON_LOCATION");
        EXPECT_EQ(text(APP_getPath(false)), expectedLocation());
        EXPECT_EQ(text(APP_getPath(true)), expectedLocation());
        EXPECT_EQ(text(APP_getResourcePath()), expectedLocation());
    });
}
