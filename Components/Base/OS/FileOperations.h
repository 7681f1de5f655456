// Whole-file operations on paths: existence and writability, copying,
// deleting, moving and renaming, and C functions for callers with 8-bit or
// wide text.
//
// The operations return kxUtil::Error values with these numbers:
//
//     fileCopy    2 the source was not found, 3 the destination exists,
//                 1 anything else; the message is
//                 "Error copying <source> to <destination>: <system text>"
//     fileDelete  1 with the system's text
//     fileMove    the copy's result; the source is deleted after a good copy,
//                 and a failure to delete it is not reported, so that a
//                 move may leave both files
//     fileRename  within one directory 6 "Unkown system error." (the
//                 system's rename tells no reason); across directories it
//                 is fileMove(source, destination, true)
//
// A copy preserves the content exactly, never loads the file into memory
// and leaves no partial destination behind when it fails. A copy with
// `overwrite` replaces the destination only once the new content is
// complete. A rename within one directory never replaces an existing file.
//
// The text overloads build Filename values from their arguments, which
// canonicalises them ("/" becomes "\").
#pragma once

#include <Base/OS/Filename.h>
#include <Base/Utility/Api.h>
#include <Base/Utility/Error.h>

namespace kxOS {

/// The path names something.
BASE_API bool doesFileExist(const Filename& path);
/// The path names something that the caller may write.
BASE_API bool isFileWritable(const Filename& path);

BASE_API kxUtil::Error fileCopy(const Filename& source, const Filename& destination,
                                bool overwrite);
BASE_API kxUtil::Error fileCopy(const char* source, const char* destination, bool overwrite);
BASE_API kxUtil::Error fileCopy(const wchar_t* source, const wchar_t* destination, bool overwrite);

BASE_API kxUtil::Error fileDelete(const Filename& path);
BASE_API kxUtil::Error fileDelete(const char* path);
BASE_API kxUtil::Error fileDelete(const wchar_t* path);

BASE_API kxUtil::Error fileMove(const Filename& source, const Filename& destination,
                                bool overwrite);
BASE_API kxUtil::Error fileMove(const char* source, const char* destination, bool overwrite);
BASE_API kxUtil::Error fileMove(const wchar_t* source, const wchar_t* destination, bool overwrite);

BASE_API kxUtil::Error fileRename(const Filename& source, const Filename& destination);
BASE_API kxUtil::Error fileRename(const char* source, const char* destination);
BASE_API kxUtil::Error fileRename(const wchar_t* source, const wchar_t* destination);

} // namespace kxOS

BASE_BEGIN_C

/// 1 when the status query succeeds and the path exists, else 0.
BASE_API int kxOS_DoesFileExist(const char* path);
BASE_API int kxOS_DoesFileExistW(const wchar_t* path);
/// 1 when the status query succeeds and the path is writable, else 0.
BASE_API int kxOS_IsFileWriteable(const char* path);
BASE_API int kxOS_IsFileWriteableW(const wchar_t* path);
/// The status query's "exists", whatever the query returned: a plain file
/// counts as a directory here.
BASE_API int kxOS_DoesDirectoryExist(const char* path);
/// Reads up to `count` bytes from the start of the file into `buffer`:
/// the number read, or -1 when the file cannot be opened or read, or when
/// `buffer` is null or `count` negative. A `count` of 0 returns 0 without
/// touching the file.
BASE_API int kxOS_ReadHeaderFromFile(const char* path, void* buffer, int count);
BASE_API int kxOS_ReadHeaderFromFileW(const wchar_t* path, void* buffer, int count);

BASE_END_C
