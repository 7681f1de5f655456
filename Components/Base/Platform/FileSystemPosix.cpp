// POSIX file-system operations. Paths arrive with Windows rules and leave
// as UTF-8 with "/": file names on Linux are bytes, and UTF-8 is what the
// rest of the system writes into them, whatever the process's locale.
#include <Base/Platform/FileSystem.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <unistd.h>

namespace kx::platform {
namespace {

using kxString::IString;

std::string native(const IString& path) {
    std::string text = path.asUTF8();
    std::replace(text.begin(), text.end(), '\\', '/');
    return text;
}

IString fromNative(const std::string& text) {
    return IString(text.c_str(), kxString::Encoding::utf8);
}

// File systems whose files live on another machine.
bool isRemoteFileSystem(const char* path) {
    struct statfs fs {};
    if (statfs(path, &fs) != 0)
        return false;
    switch (static_cast<unsigned long>(fs.f_type)) {
    case 0x6969:     // NFS
    case 0x517B:     // SMB
    case 0xFF534D42: // CIFS
    case 0xFE534D42: // SMB2
    case 0x5346414F: // AFS
    case 0x73757245: // Coda
    case 0x00C36400: // Ceph
    case 0x01021997: // 9P
    case 0x564C:     // NCP
        return true;
    default: return false;
    }
}

// The name of a user or group from the system's database; its number when
// the database has no entry.
template <class Entry, class Id>
kxString::CString databaseName(Id id, int (*lookup)(Id, Entry*, char*, std::size_t, Entry**),
                               char* Entry::*name) {
    std::vector<char> buffer(1024);
    Entry entry{};
    Entry* found = nullptr;
    while (lookup(id, &entry, buffer.data(), buffer.size(), &found) == ERANGE)
        buffer.resize(buffer.size() * 2);
    return found ? kxString::CString(found->*name) : kxString::CString(std::to_string(id).c_str());
}

// Closes a descriptor when it goes out of scope.
class Descriptor {
public:
    explicit Descriptor(int fd) : fd_(fd) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }
    int get() const { return fd_; }
    bool valid() const { return fd_ >= 0; }
    int close() {
        const int result = fd_ >= 0 ? ::close(fd_) : 0;
        fd_ = -1;
        return result;
    }

private:
    int fd_;
};

// Copies all of `in` to `out`: in the kernel where it can (copy_file_range,
// then sendfile), else through a buffer. Returns 0 or an errno value.
int copyContent(int in, int out) {
    constexpr std::size_t kChunk = std::size_t{1} << 30;
    bool offload = true;
    for (;;) {
        const ssize_t n = copy_file_range(in, nullptr, out, nullptr, kChunk, 0);
        if (n == 0)
            return 0;
        if (n > 0)
            continue;
        if (errno == EINTR)
            continue;
        if (errno == EXDEV || errno == ENOSYS || errno == EINVAL || errno == EOPNOTSUPP) {
            offload = false;
            break;
        }
        return errno;
    }
    if (!offload) {
        for (;;) {
            const ssize_t n = sendfile(out, in, nullptr, kChunk);
            if (n == 0)
                return 0;
            if (n > 0)
                continue;
            if (errno == EINTR)
                continue;
            if (errno != EINVAL && errno != ENOSYS)
                return errno;
            break;
        }
    }
    std::vector<char> buffer(std::size_t{1} << 20);
    for (;;) {
        const ssize_t n = ::read(in, buffer.data(), buffer.size());
        if (n == 0)
            return 0;
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return errno;
        }
        for (ssize_t done = 0; done < n;) {
            const ssize_t w =
                ::write(out, buffer.data() + done, static_cast<std::size_t>(n - done));
            if (w < 0) {
                if (errno == EINTR)
                    continue;
                return errno;
            }
            done += w;
        }
    }
}

} // namespace

FileError classify(int code) {
    switch (code) {
    case 0: return FileError::none;
    case ENOENT: return FileError::notFound;
    case EEXIST: return FileError::exists;
    case EACCES:
    case EPERM:
    case EROFS: return FileError::permission;
    case EINVAL:
    case ENAMETOOLONG:
    case EILSEQ: return FileError::invalidName;
    case ENOTDIR: return FileError::notDirectory;
    case EISDIR: return FileError::isDirectory;
    case ENOTEMPTY: return FileError::notEmpty;
    case ENOSPC:
    case EDQUOT:
    case EFBIG: return FileError::diskFull;
    case EMFILE:
    case ENFILE: return FileError::tooManyOpen;
    case ENETDOWN:
    case ENETUNREACH:
    case ENETRESET:
    case ECONNABORTED:
    case ECONNRESET:
    case ETIMEDOUT:
    case EHOSTDOWN:
    case EHOSTUNREACH:
    case ESTALE:
    case EREMOTEIO: return FileError::network;
    default: return FileError::other;
    }
}

int fileInfo(const IString& path, FileInfo& info) {
    info = FileInfo();
    const std::string p = native(path);
    struct statx st {};
    if (statx(AT_FDCWD, p.c_str(), 0, STATX_BASIC_STATS | STATX_BTIME, &st) != 0)
        return errno == ENOENT || errno == ENOTDIR ? 0 : errno;
    info.exists = true;
    info.readable = faccessat(AT_FDCWD, p.c_str(), R_OK, AT_EACCESS) == 0;
    info.writable = faccessat(AT_FDCWD, p.c_str(), W_OK, AT_EACCESS) == 0;
    info.directory = S_ISDIR(st.stx_mode);
    info.file = S_ISREG(st.stx_mode);
    info.remote = isRemoteFileSystem(p.c_str());
    info.size = static_cast<std::int64_t>(st.stx_size);
    info.modified = st.stx_mtime.tv_sec;
    // Not every file system records when a file was made.
    info.created = (st.stx_mask & STATX_BTIME) ? st.stx_btime.tv_sec : st.stx_mtime.tv_sec;
    info.owner = databaseName<passwd, uid_t>(st.stx_uid, getpwuid_r, &passwd::pw_name);
    info.group = databaseName<group, gid_t>(st.stx_gid, getgrgid_r, &group::gr_name);
    return 0;
}

int listDirectory(const IString& path, kx::vector<IString>& names) {
    names.clear();
    DIR* dir = opendir(native(path).c_str());
    if (!dir)
        return errno;
    std::vector<std::string> found;
    errno = 0;
    while (const dirent* entry = readdir(dir))
        found.emplace_back(entry->d_name);
    const int error = errno;
    closedir(dir);
    std::sort(found.begin(), found.end());
    for (const std::string& name : found)
        names.push_back(fromNative(name));
    return error;
}

int copyFile(const IString& from, const IString& to, bool overwrite) {
    Descriptor in(open(native(from).c_str(), O_RDONLY | O_CLOEXEC));
    if (!in.valid())
        return errno;
    struct stat source {};
    if (fstat(in.get(), &source) != 0)
        return errno;
    if (S_ISDIR(source.st_mode))
        return EISDIR;
    // Without overwrite the destination is created exclusively; with it, the
    // copy goes to a temporary name beside it and replaces it when complete.
    const std::string target = native(to);
    // A destination that may not be written is not replaced either.
    if (overwrite && faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0 && errno != ENOENT)
        return errno;
    std::string written = overwrite ? target + ".XXXXXX" : target;
    Descriptor out(overwrite ? mkostemp(written.data(), O_CLOEXEC)
                             : open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!out.valid())
        return errno;
    int error = copyContent(in.get(), out.get());
    if (error == 0 && fchmod(out.get(), source.st_mode & 07777) != 0)
        error = errno;
    const struct timespec times[2] = {source.st_atim, source.st_mtim};
    if (error == 0 && futimens(out.get(), times) != 0)
        error = errno;
    if (out.close() != 0 && error == 0)
        error = errno;
    if (error == 0 && overwrite && std::rename(written.c_str(), target.c_str()) != 0)
        error = errno;
    if (error != 0)
        unlink(written.c_str());
    return error;
}

int deleteFile(const IString& path) {
    return unlink(native(path).c_str()) == 0 ? 0 : errno;
}

int renameFile(const IString& from, const IString& to) {
    const std::string source = native(from);
    const std::string target = native(to);
    if (renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return -1;
    // File systems without the no-replace flag: the check leaves a window,
    // which is the best they allow.
    struct stat existing {};
    if (lstat(target.c_str(), &existing) == 0) {
        errno = EEXIST;
        return -1;
    }
    return std::rename(source.c_str(), target.c_str());
}

int makeDirectory(const IString& path) {
    return mkdir(native(path).c_str(), 0777) == 0 ? 0 : errno;
}

int changeDirectory(const IString& path) {
    return chdir(native(path).c_str()) == 0 ? 0 : errno;
}

IString currentDirectory() {
    std::vector<char> buffer(256);
    while (!getcwd(buffer.data(), buffer.size())) {
        if (errno != ERANGE)
            return IString();
        buffer.resize(buffer.size() * 2);
    }
    return fromNative(buffer.data());
}

IString temporaryDirectory() {
    for (const char* name : {"TMPDIR", "TMP", "TEMP"}) {
        const char* value = std::getenv(name);
        if (value && *value)
            return fromNative(value);
    }
    return IString(L"/tmp");
}

IString createUniqueFile(const IString& directory, const IString& prefix) {
    // One counter for the process, so that its threads never try the same
    // name; it starts from the clock and the process id, so that processes
    // start apart. The exclusive creation settles any remaining clash.
    static std::atomic<unsigned> counter{static_cast<unsigned>(std::time(nullptr)) ^
                                         (static_cast<unsigned>(getpid()) << 16)};
    std::string stem = native(directory);
    if (!stem.empty() && stem.back() != '/')
        stem += '/';
    stem += native(prefix.substr(0, 3));
    for (int attempt = 0; attempt < 1 << 16; ++attempt) {
        char number[16];
        std::snprintf(number, sizeof number, "%X.tmp", counter.fetch_add(1) & 0xFFFFFFFFu);
        const std::string path = stem + number;
        const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd >= 0) {
            ::close(fd);
            return fromNative(path);
        }
        if (errno != EEXIST)
            break;
    }
    return IString();
}

std::int64_t currentTime() {
    return static_cast<std::int64_t>(std::time(nullptr));
}

int processId() {
    return static_cast<int>(getpid());
}

ReadFile::~ReadFile() {
    close();
}

int ReadFile::open(const IString& path) {
    close();
    const int fd = ::open(native(path).c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return errno;
    handle_ = fd;
    return 0;
}

std::int64_t ReadFile::read(void* buffer, std::int64_t count, int& error) {
    error = 0;
    if (handle_ < 0) {
        error = EBADF;
        return 0;
    }
    auto* p = static_cast<char*>(buffer);
    std::int64_t done = 0;
    while (done < count) {
        const ssize_t n =
            ::read(static_cast<int>(handle_), p + done, static_cast<std::size_t>(count - done));
        if (n == 0)
            break;
        if (n < 0) {
            if (errno == EINTR)
                continue;
            error = errno;
            break;
        }
        done += n;
    }
    return done;
}

void ReadFile::close() {
    if (handle_ >= 0)
        ::close(static_cast<int>(handle_));
    handle_ = -1;
}

} // namespace kx::platform
