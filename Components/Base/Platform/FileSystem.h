// Internal header of libBase: not installed.
//
// The file-system operations of the operating-system services. Paths are
// the library's wide text with Windows rules; each implementation turns them
// into what its system takes (on POSIX: "\" becomes "/", text becomes
// UTF-8). Results are the system's error codes, 0 for success; classify()
// tells the kinds that callers distinguish.
#pragma once

#include <Base/Containers/Vector.h>
#include <Base/String/IString.h>

#include <cstdint>

namespace kx::platform {

enum class FileError {
    none,
    notFound,
    exists,
    permission,
    invalidName,
    notDirectory,
    isDirectory,
    notEmpty,
    diskFull,
    tooManyOpen,
    network,
    other
};

/// The kind of a system error code from the functions below.
FileError classify(int code);

struct FileInfo {
    bool exists = false;
    bool readable = false;
    bool writable = false;
    bool directory = false;
    bool file = false;
    bool remote = false; ///< on a network file system
    std::int64_t size = 0;
    std::int64_t created = 0;  ///< seconds since 1970-01-01 UTC
    std::int64_t modified = 0; ///< seconds since 1970-01-01 UTC
    kxString::CString owner;
    kxString::CString group;
};

/// The status of `path`; a missing path gives 0 with `exists` false.
int fileInfo(const kxString::IString& path, FileInfo& info);

/// The names in a directory, "." and ".." included, sorted so that listings
/// come out the same on every run.
int listDirectory(const kxString::IString& path, kx::vector<kxString::IString>& names);

/// Copies a file's content and permissions. Without `overwrite` an existing
/// destination fails with an "exists" error; with it, the destination is
/// replaced only once the copy is complete. A failed copy leaves no partial
/// destination behind.
int copyFile(const kxString::IString& from, const kxString::IString& to, bool overwrite);

int deleteFile(const kxString::IString& path);

/// Renames without replacing an existing destination, as the Windows C
/// runtime's rename does: 0, or -1 on failure.
int renameFile(const kxString::IString& from, const kxString::IString& to);

/// Creates one directory level; 0 on success.
int makeDirectory(const kxString::IString& path);

int changeDirectory(const kxString::IString& path);

/// The process's current directory, or "" when it cannot be read.
kxString::IString currentDirectory();

/// The directory for temporary files, as the system names it; never empty
/// (the system's default when nothing names one).
kxString::IString temporaryDirectory();

/// Creates an empty file with a name no other caller gets, in `directory`,
/// from the first three characters of `prefix` and a hexadecimal number,
/// ending in ".tmp". Returns its path, or "" on failure.
kxString::IString createUniqueFile(const kxString::IString& directory,
                                   const kxString::IString& prefix);

/// Seconds since 1970-01-01 UTC.
std::int64_t currentTime();

int processId();

/// A file opened for reading; closed by its destructor.
class ReadFile {
public:
    ReadFile() = default;
    ReadFile(const ReadFile&) = delete;
    ReadFile& operator=(const ReadFile&) = delete;
    ~ReadFile();

    /// 0 on success, else the system's error code.
    int open(const kxString::IString& path);
    /// Reads up to `count` bytes, fewer only at the end of the file, and
    /// returns the number read; `error` receives 0 or the system's code of
    /// the failure that stopped it.
    std::int64_t read(void* buffer, std::int64_t count, int& error);
    void close();
    bool isOpen() const { return handle_ >= 0; }

private:
    std::int64_t handle_ = -1;
};

} // namespace kx::platform
