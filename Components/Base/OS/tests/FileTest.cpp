#include <Base/OS/File.h>
#include <Base/OS/FileOperations.h>
#include <Base/OS/FileStatus.h>

#include "TempDir.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

using kxOS::File;
using kxOS::Filename;
using kxOS::FileStatus;
using kxString::IString;
namespace fs = std::filesystem;

namespace {

Filename name(const std::string& path) {
    return Filename(IString(path.c_str()));
}

std::string randomBytes(std::size_t n) {
    std::mt19937_64 random(n);
    std::string bytes(n, '\0');
    for (char& c : bytes)
        c = static_cast<char>(random());
    return bytes;
}

// Whether permissions hold for this process: they do not for the superuser.
bool permissionsApply(const TempDir& dir) {
    const std::string locked = dir / "probe";
    fs::create_directory(locked);
    fs::permissions(locked, fs::perms::owner_read | fs::perms::owner_exec);
    const bool applies = !std::ofstream(locked + "/x");
    fs::permissions(locked, fs::perms::owner_all);
    fs::remove_all(locked);
    return applies;
}

} // namespace

TEST(File, QueryDescribesFilesDirectoriesAndMissingPaths) {
    TempDir dir;
    const std::string file = dir.write("a.txt", "hello");
    FileStatus status;
    EXPECT_FALSE(File::query(name(file), status));
    EXPECT_TRUE(status.exists());
    EXPECT_TRUE(status.isFile());
    EXPECT_FALSE(status.isDirectory());
    EXPECT_TRUE(status.isReadable());
    EXPECT_TRUE(status.isWritable());
    EXPECT_FALSE(status.isRemote());
    EXPECT_FALSE(status.isCheckedout());
    EXPECT_EQ(status.getSize(), 5);
    EXPECT_FALSE(status.getOwner().isEmpty());
    EXPECT_FALSE(status.getGroup().isEmpty());
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const std::int64_t seconds = std::chrono::duration_cast<std::chrono::seconds>(now).count();
    EXPECT_NEAR(static_cast<double>(status.getLastModifiedDate()), static_cast<double>(seconds),
                60);
    EXPECT_LE(status.getCreationDate(), status.getLastModifiedDate() + 1);

    EXPECT_FALSE(File::query(IString(dir.path().c_str()), status));
    EXPECT_TRUE(status.isDirectory());
    EXPECT_FALSE(status.isFile());

    // A missing path is no error, but a status that says so.
    EXPECT_FALSE(File::query(name(dir / "missing"), status));
    EXPECT_FALSE(status.exists());
    EXPECT_EQ(status.getSize(), 0);
    EXPECT_TRUE(status.getOwner().isEmpty());

    // A file object needs a path.
    const kxUtil::Error none = File::query(IString(), status);
    EXPECT_EQ(none.num(), 1);
    EXPECT_STREQ(none.message(), "Not Implemented");

    // Sizes beyond 32 bits come through whole.
    const std::string big = dir / "big";
    std::ofstream(big).close();
    fs::resize_file(big, std::uintmax_t{5} << 30);
    EXPECT_FALSE(File::query(name(big), status));
    EXPECT_EQ(static_cast<std::int64_t>(status.getSize()), std::int64_t{5} << 30);
}

TEST(File, ErrorTextsAreFixed) {
    EXPECT_EQ(File::getError(0).num(), 0);
    EXPECT_STREQ(File::getError(0).message(), "No Error");
    EXPECT_STREQ(File::getError(3).message(), "End Of File");
    EXPECT_STREQ(File::getError(18).message(), "File does not exist");
    EXPECT_EQ(File::getError(42).num(), 19);
    EXPECT_STREQ(File::getError(-1).message(), "System Error");
}

TEST(File, ListsDirectoriesWithFullPathsInTheirOwnStyle) {
    TempDir dir;
    dir.write("b", "");
    dir.write("a", "");
    const std::string root = dir.path().string();
    std::vector<std::string> names;
    kx::vector<IString> paths;
    EXPECT_FALSE(File(IString(root.c_str())).readDir(paths));
    for (const IString& path : paths)
        names.push_back(path.asUTF8());
    EXPECT_EQ(names,
              (std::vector<std::string>{root + "/.", root + "/..", root + "/a", root + "/b"}));

    // A canonical name lists with backslashes, and a trailing separator is
    // not doubled.
    const IString canonical = name(root).name();
    EXPECT_FALSE(File(IString(canonical).append(L'\\')).readDir(paths));
    ASSERT_EQ(paths.size(), 4);
    EXPECT_EQ(paths[2].compare(IString(canonical).append(L"\\a")), 0);

    EXPECT_EQ(File(IString((dir / "a").c_str())).readDir(paths).num(), 12);
    EXPECT_EQ(File(IString((dir / "none").c_str())).readDir(paths).num(), 18);
    EXPECT_TRUE(paths.empty());
}

TEST(File, ReadsOnlyWhenOpenForReading) {
    TempDir dir;
    const std::string path = dir.write("data", "0123456789");
    File file(IString(path.c_str()));
    char buffer[16] = {};
    std::int64_t done = -1;
    EXPECT_EQ(file.read(buffer, 4, done).num(), 4);
    EXPECT_EQ(file.open(1).num(), 6);
    EXPECT_FALSE(file.open(File::readMode));
    EXPECT_EQ(file.open(File::readMode).num(), 5);
    EXPECT_FALSE(file.read(buffer, 4, done));
    EXPECT_EQ(done, 4);
    EXPECT_FALSE(file.read(buffer + 4, 100, done));
    EXPECT_EQ(done, 6);
    EXPECT_STREQ(buffer, "0123456789");
    file.close();
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(File(IString((dir / "none").c_str())).open(File::readMode).num(), 18);

    // Reading a directory fails as a read.
    File folder(IString(dir.path().c_str()));
    ASSERT_FALSE(folder.open(File::readMode));
    EXPECT_EQ(folder.read(buffer, 4, done).num(), 13);
}

TEST(FileOperations, CopyPreservesContentAndReportsFailures) {
    TempDir dir;
    const std::string content = randomBytes(3 << 20);
    const std::string source = dir.write("source", content);
    const std::string target = dir / "target";
    EXPECT_FALSE(kxOS::fileCopy(source.c_str(), target.c_str(), false));
    EXPECT_EQ(readAll(target), content);

    dir.write("old", "old content");
    kxUtil::Error exists = kxOS::fileCopy(name(source), name(dir / "old"), false);
    EXPECT_EQ(exists.num(), 3);
    EXPECT_EQ(std::string(exists.message())
                  .rfind(std::string("Error copying ") + name(source).name().asUTF8(), 0),
              0u)
        << exists.message();
    EXPECT_EQ(readAll(dir / "old"), "old content");
    EXPECT_FALSE(kxOS::fileCopy(name(source), name(dir / "old"), true));
    EXPECT_EQ(readAll(dir / "old"), content);

    const kxUtil::Error missing = kxOS::fileCopy(name(dir / "none"), name(dir / "x"), true);
    EXPECT_EQ(missing.num(), 2);
    EXPECT_FALSE(fs::exists(dir / "x"));
    EXPECT_EQ(kxOS::fileCopy(name(dir.path().string()), name(dir / "y"), true).num(), 1);

    // Wide paths, and an empty file.
    dir.write("empty", "");
    const std::wstring from = fs::path(dir / "empty").wstring();
    const std::wstring to = fs::path(dir / "empty2").wstring();
    EXPECT_FALSE(kxOS::fileCopy(from.c_str(), to.c_str(), false));
    EXPECT_EQ(readAll(dir / "empty2"), "");
    // Nothing but the files themselves remains: no temporary copies.
    EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), fs::directory_iterator()), 5);
}

TEST(FileOperations, ReadOnlyTargetsFailWithoutLeftovers) {
    TempDir dir;
    if (!permissionsApply(dir))
        GTEST_SKIP() << "permissions do not apply to this user";
    const std::string source = dir.write("source", "content");
    fs::create_directory(dir / "locked");
    const std::string kept = dir.write("locked/kept", "kept");
    fs::permissions(dir / "locked", fs::perms::owner_read | fs::perms::owner_exec);

    EXPECT_EQ(kxOS::fileCopy(name(source), name(dir / "locked/new"), false).num(), 1);
    EXPECT_EQ(kxOS::fileCopy(name(source), name(kept), true).num(), 1);
    EXPECT_EQ(readAll(kept), "kept");
    EXPECT_EQ(kxOS::fileDelete(name(kept)).num(), 1);
    const std::string readOnly = dir.write("readonly", "mine");
    fs::permissions(readOnly, fs::perms::owner_read);
    EXPECT_EQ(kxOS::fileCopy(name(source), name(readOnly), true).num(), 1);
    EXPECT_EQ(readAll(readOnly), "mine");
    EXPECT_FALSE(kxOS::isFileWritable(name(dir / "locked")));
    EXPECT_EQ(kxOS_IsFileWriteable((dir / "locked").c_str()), 0);

    // A move whose source cannot be deleted still succeeds, with both files.
    EXPECT_FALSE(kxOS::fileMove(name(kept), name(dir / "moved"), false));
    EXPECT_EQ(readAll(kept), "kept");
    EXPECT_EQ(readAll(dir / "moved"), "kept");
    fs::permissions(dir / "locked", fs::perms::owner_all);
    EXPECT_EQ(std::distance(fs::directory_iterator(dir / "locked"), fs::directory_iterator()), 1);
}

TEST(FileOperations, DeleteMoveAndRename) {
    TempDir dir;
    const std::string a = dir.write("a", "A");
    const kxUtil::Error missing = kxOS::fileDelete(name(dir / "none"));
    EXPECT_EQ(missing.num(), 1);
    EXPECT_STRNE(missing.message(), "");

    EXPECT_FALSE(kxOS::fileMove(name(a), name(dir / "b"), false));
    EXPECT_FALSE(fs::exists(a));
    EXPECT_EQ(readAll(dir / "b"), "A");
    dir.write("c", "C");
    EXPECT_EQ(kxOS::fileMove(name(dir / "b"), name(dir / "c"), false).num(), 3);
    EXPECT_EQ(readAll(dir / "b"), "A");

    // Within one directory: a rename, which never replaces a file.
    EXPECT_FALSE(kxOS::fileRename((dir / "b").c_str(), (dir / "d").c_str()));
    EXPECT_EQ(readAll(dir / "d"), "A");
    const kxUtil::Error taken = kxOS::fileRename(name(dir / "d"), name(dir / "c"));
    EXPECT_EQ(taken.num(), 6);
    EXPECT_STREQ(taken.message(), "Unkown system error.");
    EXPECT_EQ(readAll(dir / "c"), "C");
    EXPECT_EQ(kxOS::fileRename(name(dir / "none"), name(dir / "e")).num(), 6);

    // Across directories: a move that replaces.
    fs::create_directory(dir / "sub");
    dir.write("sub/c", "old");
    EXPECT_FALSE(kxOS::fileRename(name(dir / "c"), name(dir / "sub/c")));
    EXPECT_FALSE(fs::exists(dir / "c"));
    EXPECT_EQ(readAll(dir / "sub/c"), "C");
    const std::wstring from = fs::path(dir / "sub/c").wstring();
    const std::wstring to = fs::path(dir / "f").wstring();
    EXPECT_FALSE(kxOS::fileRename(from.c_str(), to.c_str()));
    EXPECT_FALSE(kxOS::fileDelete(to.c_str()));
    EXPECT_FALSE(fs::exists(dir / "f"));
}

TEST(FileOperations, CFunctionsAnswerStatusQuestions) {
    TempDir dir;
    const std::string file = dir.write("f", "0123456789");
    const std::wstring wide = fs::path(file).wstring();
    EXPECT_EQ(kxOS_DoesFileExist(file.c_str()), 1);
    EXPECT_EQ(kxOS_DoesFileExistW(wide.c_str()), 1);
    EXPECT_EQ(kxOS_DoesFileExist((dir / "none").c_str()), 0);
    EXPECT_EQ(kxOS_DoesFileExist(nullptr), 0);
    EXPECT_EQ(kxOS_IsFileWriteable(file.c_str()), 1);
    EXPECT_EQ(kxOS_IsFileWriteableW(wide.c_str()), 1);
    EXPECT_TRUE(kxOS::doesFileExist(name(dir.path().string())));
    // A plain file counts as an existing directory.
    EXPECT_EQ(kxOS_DoesDirectoryExist(file.c_str()), 1);
    EXPECT_EQ(kxOS_DoesDirectoryExist((dir / "none").c_str()), 0);

    char buffer[8] = {};
    EXPECT_EQ(kxOS_ReadHeaderFromFile(file.c_str(), buffer, 4), 4);
    EXPECT_EQ(std::string(buffer, 4), "0123");
    EXPECT_EQ(kxOS_ReadHeaderFromFileW(wide.c_str(), buffer, 8), 8);
    EXPECT_EQ(kxOS_ReadHeaderFromFile(file.c_str(), nullptr, 4), -1);
    EXPECT_EQ(kxOS_ReadHeaderFromFile(file.c_str(), buffer, -1), -1);
    EXPECT_EQ(kxOS_ReadHeaderFromFile((dir / "none").c_str(), buffer, 0), 0);
    EXPECT_EQ(kxOS_ReadHeaderFromFile((dir / "none").c_str(), buffer, 4), -1);
    dir.write("short", "ab");
    EXPECT_EQ(kxOS_ReadHeaderFromFile((dir / "short").c_str(), buffer, 8), 2);
}
