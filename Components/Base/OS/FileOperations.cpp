#include <Base/OS/FileOperations.h>

#include <Base/OS/File.h>
#include <Base/OS/FileStatus.h>
#include <Base/Platform/FileSystem.h>
#include <Base/Utility/SystemError.h>

namespace kxOS {
namespace {

using kx::platform::FileError;
using kxString::IString;

// The message of a failed same-directory rename, chosen by the value that
// the rename returned. That value is -1 on every failure, so the message
// is always the last one; the numbers are the C runtime's error codes.
kxUtil::Error renameFailure(int result, const Filename& destination) {
    IString message;
    switch (result) {
    case 2:
        message.format(L"File or path specified by %S name not found.",
                       destination.name().asWChar());
        break;
    case 13: message = L"A component of either path prefix deniessearch permission"; break;
    case 22:
        message = L"source is a parent directory of target, or an attempt is made to rename "
                  L"the .  or ..  directory.";
        break;
    default: message = L"Unkown system error."; break;
    }
    return kxUtil::Error(6, message);
}

} // namespace

bool doesFileExist(const Filename& path) {
    FileStatus status;
    return !File::query(path, status) && status.exists();
}

bool isFileWritable(const Filename& path) {
    FileStatus status;
    return !File::query(path, status) && status.isWritable();
}

kxUtil::Error fileCopy(const Filename& source, const Filename& destination, bool overwrite) {
    const int code = kx::platform::copyFile(source.name(), destination.name(), overwrite);
    if (code == 0)
        return kxUtil::Error();
    IString message;
    message.format(L"Error copying %S to %S: %S", source.name().asWChar(),
                   destination.name().asWChar(), kxUtil::systemErrorText(code).asWChar());
    switch (kx::platform::classify(code)) {
    case FileError::notFound: return kxUtil::Error(2, message);
    case FileError::exists: return kxUtil::Error(3, message);
    default: return kxUtil::Error(1, message);
    }
}

kxUtil::Error fileCopy(const char* source, const char* destination, bool overwrite) {
    return fileCopy(Filename(IString(source)), Filename(IString(destination)), overwrite);
}

kxUtil::Error fileCopy(const wchar_t* source, const wchar_t* destination, bool overwrite) {
    return fileCopy(Filename(IString(source)), Filename(IString(destination)), overwrite);
}

kxUtil::Error fileDelete(const Filename& path) {
    const int code = kx::platform::deleteFile(path.name());
    return code == 0 ? kxUtil::Error() : kxUtil::Error(1, kxUtil::systemErrorText(code));
}

kxUtil::Error fileDelete(const char* path) {
    return fileDelete(Filename(IString(path)));
}

kxUtil::Error fileDelete(const wchar_t* path) {
    return fileDelete(Filename(IString(path)));
}

kxUtil::Error fileMove(const Filename& source, const Filename& destination, bool overwrite) {
    kxUtil::Error result = fileCopy(source, destination, overwrite);
    if (!result)
        fileDelete(source); // a source that stays behind does not undo the move
    return result;
}

kxUtil::Error fileMove(const char* source, const char* destination, bool overwrite) {
    return fileMove(Filename(IString(source)), Filename(IString(destination)), overwrite);
}

kxUtil::Error fileMove(const wchar_t* source, const wchar_t* destination, bool overwrite) {
    return fileMove(Filename(IString(source)), Filename(IString(destination)), overwrite);
}

kxUtil::Error fileRename(const Filename& source, const Filename& destination) {
    if (source.dirname() != destination.dirname())
        return fileMove(source, destination, true);
    const int result = kx::platform::renameFile(source.name(), destination.name());
    return result == 0 ? kxUtil::Error() : renameFailure(result, destination);
}

kxUtil::Error fileRename(const char* source, const char* destination) {
    return fileRename(Filename(IString(source)), Filename(IString(destination)));
}

kxUtil::Error fileRename(const wchar_t* source, const wchar_t* destination) {
    return fileRename(Filename(IString(source)), Filename(IString(destination)));
}

} // namespace kxOS

namespace {

using kxString::IString;

int readHeader(const IString& path, void* buffer, int count) {
    if (!buffer || count < 0)
        return -1;
    if (count == 0)
        return 0;
    const std::unique_ptr<kxOS::File> file = kxOS::FileFactory::getFileFactory()->createFile(path);
    if (file->open(kxOS::File::readMode))
        return -1;
    std::int64_t done = 0;
    if (file->read(buffer, count, done))
        return -1;
    return static_cast<int>(done);
}

} // namespace

int kxOS_DoesFileExist(const char* path) {
    return kxOS::doesFileExist(kxOS::Filename(IString(path))) ? 1 : 0;
}

int kxOS_DoesFileExistW(const wchar_t* path) {
    return kxOS::doesFileExist(kxOS::Filename(IString(path))) ? 1 : 0;
}

int kxOS_IsFileWriteable(const char* path) {
    return kxOS::isFileWritable(kxOS::Filename(IString(path))) ? 1 : 0;
}

int kxOS_IsFileWriteableW(const wchar_t* path) {
    return kxOS::isFileWritable(kxOS::Filename(IString(path))) ? 1 : 0;
}

int kxOS_DoesDirectoryExist(const char* path) {
    kxOS::FileStatus status;
    kxOS::File::query(kxOS::Filename(IString(path)), status); // its error does not matter here
    return status.exists() ? 1 : 0;
}

int kxOS_ReadHeaderFromFile(const char* path, void* buffer, int count) {
    return readHeader(IString(path), buffer, count);
}

int kxOS_ReadHeaderFromFileW(const wchar_t* path, void* buffer, int count) {
    return readHeader(IString(path), buffer, count);
}
