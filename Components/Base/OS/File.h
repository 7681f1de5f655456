// kxOS::File: a file object for a path, made by the process's file factory.
//
// It offers what the library's file services need: the status of the path,
// the listing of a directory, and reading. Results are kxUtil::Error values
// whose numbers and texts come from getError():
//
//      0 "No Error"             7 "Read Error"          14 "Directory Not Empty"
//      1 "Not Implemented"      8 "Write Error"         15 "Disk Full"
//      2 "File Exists"          9 "Seek Error"          16 "Too Many Open Files"
//      3 "End Of File"         10 "Permission Denied"   17 "Network Error"
//      4 "File Not Open"       11 "Invalid Name"        18 "File does not exist"
//      5 "File Already Open"   12 "Not A Directory"     19 "System Error"
//      6 "Bad Mode"            13 "Is A Directory"
//
// A failure that fits none of the numbers gets 19 with the system's own
// description as its message.
//
//     kxOS::FileStatus status;
//     if (!kxOS::File::query(kxOS::Filename("/etc/hosts"), status) && status.exists()) ...
//
// Thread safety: distinct objects may be used on distinct threads; the
// factory may be used from any thread.
#pragma once

#include <Base/Containers/Vector.h>
#include <Base/OS/FileStatus.h>
#include <Base/OS/Filename.h>
#include <Base/String/IString.h>
#include <Base/Utility/Api.h>
#include <Base/Utility/Error.h>

#include <cstdint>
#include <memory>

namespace kxOS {

class BASE_API File {
public:
    /// The mode for open(): reading.
    static constexpr int readMode = 4;

    explicit File(const kxString::IString& path);
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    /// Closes the file when it is open.
    ~File();

    /// A file object needs a path: one made for "" is not valid.
    bool valid() const { return !path_.isEmpty(); }
    const kxString::IString& name() const { return path_; }

    /// Fills `out` with the status of the path. A path that names nothing
    /// is no error: `out` then says it does not exist. On failure `out` is
    /// reset.
    kxUtil::Error query(FileStatus& out) const;

    /// The full paths of the directory's entries, "." and ".." included,
    /// sorted by name. Each is the path, a separator ("/" when the path
    /// uses only "/", else "\") unless the path ends in one, and the name.
    kxUtil::Error readDir(kx::vector<kxString::IString>& paths) const;

    /// Opens the file; readMode is the only mode.
    kxUtil::Error open(int mode);
    /// Reads up to `count` bytes into `buffer`; `done` receives the number
    /// read, fewer only at the end of the file.
    kxUtil::Error read(void* buffer, std::int64_t count, std::int64_t& done);
    void close();
    bool isOpen() const;

    /// The error with number `code` and its fixed text; a number outside 0
    /// to 19 gives 19 "System Error".
    static kxUtil::Error getError(int code);

    /// The status of `path` through a file object from the process's
    /// factory; getError(1) when the object is not valid.
    static kxUtil::Error query(const Filename& path, FileStatus& out);
    static kxUtil::Error query(const kxString::IString& path, FileStatus& out);

private:
    struct Handle;

    kxString::IString path_;
    std::unique_ptr<Handle> handle_;
};

/// Makes the file objects of the process: local files.
class BASE_API FileFactory {
public:
    /// The process's factory; never null.
    static FileFactory* getFileFactory();

    /// A new file object for `path`.
    std::unique_ptr<File> createFile(const kxString::IString& path) const;

private:
    FileFactory() = default;
};

} // namespace kxOS
