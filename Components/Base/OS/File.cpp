#include <Base/OS/File.h>

#include <Base/Platform/FileSystem.h>
#include <Base/Utility/SystemError.h>

#include <array>
#include <climits>

namespace kxOS {
namespace {

using kx::platform::FileError;
using kxString::IString;

constexpr std::array<const char*, 20> kTexts = {"No Error",
                                                "Not Implemented",
                                                "File Exists",
                                                "End Of File",
                                                "File Not Open",
                                                "File Already Open",
                                                "Bad Mode",
                                                "Read Error",
                                                "Write Error",
                                                "Seek Error",
                                                "Permission Denied",
                                                "Invalid Name",
                                                "Not A Directory",
                                                "Is A Directory",
                                                "Directory Not Empty",
                                                "Disk Full",
                                                "Too Many Open Files",
                                                "Network Error",
                                                "File does not exist",
                                                "System Error"};

constexpr int kSystemError = 19;

// The error for a system code; `fallback` names the operation's own failure
// (reading, writing) for codes that fit no other number.
kxUtil::Error errorOf(int code, int fallback = kSystemError) {
    switch (kx::platform::classify(code)) {
    case FileError::none: return kxUtil::Error();
    case FileError::notFound: return File::getError(18);
    case FileError::exists: return File::getError(2);
    case FileError::permission: return File::getError(10);
    case FileError::invalidName: return File::getError(11);
    case FileError::notDirectory: return File::getError(12);
    case FileError::isDirectory: return File::getError(13);
    case FileError::notEmpty: return File::getError(14);
    case FileError::diskFull: return File::getError(15);
    case FileError::tooManyOpen: return File::getError(16);
    case FileError::network: return File::getError(17);
    case FileError::other: break;
    }
    if (fallback != kSystemError)
        return File::getError(fallback);
    return kxUtil::Error(kSystemError, kxUtil::systemErrorText(code));
}

// The separator style of a directory's listing follows the directory's own.
wchar_t listingSeparator(const IString& path) {
    return path.find(L'\\') == IString::npos && path.find(L'/') != IString::npos ? L'/' : L'\\';
}

} // namespace

struct File::Handle {
    kx::platform::ReadFile file;
};

File::File(const IString& path) : path_(path) {}

File::~File() = default;

kxUtil::Error File::query(FileStatus& out) const {
    out.reset();
    kx::platform::FileInfo info;
    if (kxUtil::Error error = errorOf(kx::platform::fileInfo(path_, info)))
        return error;
    out.setExists(info.exists);
    out.setIsReadable(info.readable);
    out.setIsWritable(info.writable);
    out.setIsDirectory(info.directory);
    out.setIsFile(info.file);
    out.setIsRemote(info.remote);
    // long is as wide as the file offsets where the system's are 64-bit;
    // elsewhere sizes beyond its range saturate.
    out.setSize(info.size > LONG_MAX ? LONG_MAX : static_cast<long>(info.size));
    out.setCreationDate(info.created);
    out.setLastModification(info.modified);
    out.setOwner(info.owner);
    out.setGroup(info.group);
    return kxUtil::Error();
}

kxUtil::Error File::readDir(kx::vector<IString>& paths) const {
    paths.clear();
    kx::vector<IString> names;
    if (kxUtil::Error error = errorOf(kx::platform::listDirectory(path_, names)))
        return error;
    const wchar_t last = path_.isEmpty() ? L'\0' : path_[path_.length() - 1];
    IString base = path_;
    if (last != L'\\' && last != L'/')
        base.append(listingSeparator(path_));
    paths.reserve(names.size());
    for (const IString& name : names)
        paths.push_back(IString(base).append(name));
    return kxUtil::Error();
}

kxUtil::Error File::open(int mode) {
    if (mode != readMode)
        return getError(6);
    if (isOpen())
        return getError(5);
    auto handle = std::make_unique<Handle>();
    if (kxUtil::Error error = errorOf(handle->file.open(path_)))
        return error;
    handle_ = std::move(handle);
    return kxUtil::Error();
}

kxUtil::Error File::read(void* buffer, std::int64_t count, std::int64_t& done) {
    done = 0;
    if (!isOpen())
        return getError(4);
    if (count <= 0)
        return kxUtil::Error();
    int code = 0;
    done = handle_->file.read(buffer, count, code);
    return errorOf(code, 7);
}

void File::close() {
    handle_.reset();
}

bool File::isOpen() const {
    return handle_ != nullptr;
}

kxUtil::Error File::getError(int code) {
    if (code < 0 || code >= static_cast<int>(kTexts.size()))
        code = kSystemError;
    return kxUtil::Error(code, IString(kTexts[static_cast<std::size_t>(code)]));
}

kxUtil::Error File::query(const Filename& path, FileStatus& out) {
    return query(path.name(), out);
}

kxUtil::Error File::query(const IString& path, FileStatus& out) {
    out.reset();
    const std::unique_ptr<File> file = FileFactory::getFileFactory()->createFile(path);
    if (!file->valid())
        return getError(1);
    return file->query(out);
}

FileFactory* FileFactory::getFileFactory() {
    static FileFactory factory;
    return &factory;
}

std::unique_ptr<File> FileFactory::createFile(const IString& path) const {
    return std::make_unique<File>(path);
}

} // namespace kxOS
