#include <Base/OS/DirectoryIterator.h>
#include <Base/OS/FileOperations.h>
#include <Base/OS/TemporaryFiles.h>

#include "ScopedEnv.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

using kxOS::Filename;
using kxString::IString;
namespace fs = std::filesystem;

namespace {

Filename name(const std::string& path) {
    return Filename(IString(path.c_str()));
}

// The process id, as the kernel names the process's own entry.
std::string pidText() {
    return fs::read_symlink("/proc/self").string();
}

void age(const std::string& path, std::chrono::hours by) {
    fs::last_write_time(path, fs::file_time_type::clock::now() - by);
}

std::vector<std::string> walk(kxOS::DirectoryIterator& it, const std::string& pruned = "") {
    std::vector<std::string> seen;
    for (; it.valid(); it.next()) {
        const std::string path = it.getName().asUTF8();
        seen.push_back(path + (it.onDirectory() ? "/" : ""));
        EXPECT_NE(it.onDirectory(), it.onFile());
        if (!pruned.empty() && path.ends_with(pruned))
            it.prune();
    }
    return seen;
}

} // namespace

TEST(TemporaryFiles, TemporaryDirectoryComesFromTheEnvironment) {
    ScopedEnv tmpdir("TMPDIR", "/var/x/");
    EXPECT_EQ(kxOS::getTempDirectory().name().asUTF8(), std::string(R"(\var\x)"));
    char* narrow = kxOS_GetTemporaryDirectory();
    EXPECT_STREQ(narrow, R"(\var\x)");
    std::free(narrow);
    wchar_t* wide = kxOS_GetTemporaryDirectoryW();
    EXPECT_STREQ(wide, LR"(\var\x)");
    std::free(wide);

    ScopedEnv empty("TMPDIR", "");
    ScopedEnv tmp("TMP", "/from/tmp");
    EXPECT_EQ(kxOS::getTempDirectory().name().asUTF8(), std::string(R"(\from\tmp)"));
}

TEST(TemporaryFiles, NamesAreUniqueAndLeaveNothingBehind) {
    TempDir dir;
    ScopedEnv tmpdir("TMPDIR", dir.path().c_str());
    const Filename first = kxOS::createTmpFilename(IString(L"bak"));
    EXPECT_EQ(first.dirname().compare(name(dir.path().string()).name()), 0);
    const std::string base = first.basename().asUTF8();
    EXPECT_TRUE(base.starts_with("AST")) << base;
    EXPECT_TRUE(base.ends_with(pidText() + ".bak")) << base;
    EXPECT_TRUE(fs::is_empty(dir.path()));

    const Filename plain = kxOS::createTmpFilename(IString(), L"xy");
    EXPECT_TRUE(std::string(plain.basename().asUTF8()).starts_with("xy"));
    EXPECT_TRUE(plain.baseSuffix().isEmpty());

    const Filename variant =
        kxOS::createNewFilenameVariant(name(dir.path().string()), nullptr, IString(L"bak"));
    EXPECT_TRUE(std::string(variant.basename().asUTF8()).starts_with("rec"));
    EXPECT_EQ(variant.dirname().compare(first.dirname()), 0);
    EXPECT_TRUE(kxOS::createNewFilenameVariant(name(dir / "none")).name().isEmpty());

    char* narrow = kxOS_CreateTemporaryFileName("txt");
    ASSERT_NE(narrow, nullptr);
    EXPECT_TRUE(std::string(narrow).ends_with(".txt"));
    std::free(narrow);
    wchar_t* wide = kxOS_CreateTemporaryFileNameW(nullptr);
    ASSERT_NE(wide, nullptr);
    std::free(wide);
    {
        ScopedEnv missing("TMPDIR", (dir / "none").c_str());
        EXPECT_EQ(kxOS_CreateTemporaryFileName("txt"), nullptr);
    }

    // Threads of one process never get the same name.
    std::set<std::string> names;
    std::mutex lock;
    std::vector<std::thread> threads(4);
    for (std::thread& thread : threads) {
        thread = std::thread([&] {
            for (int i = 0; i < 200; ++i) {
                const std::string made = kxOS::createTmpFilename(IString()).name().asUTF8();
                const std::lock_guard<std::mutex> guard(lock);
                EXPECT_TRUE(names.insert(made).second) << made;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_TRUE(fs::is_empty(dir.path()));
}

TEST(TemporaryFiles, CleanupDeletesOnlyStaleTemporaryNames) {
    TempDir dir;
    const std::vector<std::string> stale = {"aruXYZ.unload", "arubaTempWire.1", "abcd.ac$",
                                            "jamXYZout3", "jamXYZcmd7.bat"};
    const std::vector<std::string> kept = {
        "aru.unload",     // too short for its pattern
        "jamcmd7.bat",    // likewise
        "jamXYZcmdX.bat", // no digit
        "jamXYZout",      // no digit
        "other.txt",
        "Jamxyzout3", // the case matters
    };
    for (const std::string& file : stale)
        age(dir.write(file, "x"), std::chrono::hours(24 * 8));
    for (const std::string& file : kept)
        age(dir.write(file, "x"), std::chrono::hours(24 * 8));
    dir.write("jamout33fresh1", "x");
    age(dir.write("arubaTempWire.recent", "x"), std::chrono::hours(24 * 6));

    EXPECT_EQ(kxOS::cleanupTempDirectory(IString((dir.path().string() + "/").c_str())), 5);
    for (const std::string& file : stale)
        EXPECT_FALSE(fs::exists(dir / file)) << file;
    for (const std::string& file : kept)
        EXPECT_TRUE(fs::exists(dir / file)) << file;
    EXPECT_TRUE(fs::exists(dir / "jamout33fresh1"));
    EXPECT_TRUE(fs::exists(dir / "arubaTempWire.recent"));
    EXPECT_EQ(kxOS::cleanupTempDirectory(name(dir.path().string()).name()), 0);
    EXPECT_EQ(kxOS::cleanupTempDirectory(IString((dir / "none").c_str())), 0);
}

TEST(DirectoryIterator, WalksBreadthFirstAndPrunes) {
    TempDir dir;
    const std::string root = dir.path().string();
    fs::create_directories(dir / "a/deep");
    fs::create_directories(dir / "b");
    dir.write("a/deep/x", "");
    dir.write("a/f", "");
    dir.write("b/g", "");
    dir.write("z", "");

    kxOS::DirectoryIterator all(IString((root + "//").c_str()));
    EXPECT_EQ(walk(all), (std::vector<std::string>{root + "/", root + "/a/", root + "/b/",
                                                   root + "/z", root + "/a/deep/", root + "/a/f",
                                                   root + "/b/g", root + "/a/deep/x"}));
    EXPECT_FALSE(all.valid());
    EXPECT_TRUE(all.getName().isEmpty());
    all.next();
    all.prune();
    EXPECT_FALSE(all.onDirectory());

    kxOS::DirectoryIterator pruned(IString(root.c_str()));
    EXPECT_EQ(walk(pruned, "/a"), (std::vector<std::string>{root + "/", root + "/a/", root + "/b/",
                                                            root + "/z", root + "/b/g"}));

    // A canonical root walks with backslashes; a file is a walk of one.
    const IString canonical = name(root).name();
    kxOS::DirectoryIterator backslashes(canonical);
    backslashes.next();
    EXPECT_EQ(backslashes.getName().compare(IString(canonical).append(L"\\a")), 0);
    kxOS::DirectoryIterator file(IString((dir / "z").c_str()));
    EXPECT_EQ(walk(file), (std::vector<std::string>{root + "/z"}));

    EXPECT_FALSE(kxOS::DirectoryIterator(IString((dir / "none").c_str())).valid());
    EXPECT_FALSE(kxOS::DirectoryIterator(IString()).valid());
}
