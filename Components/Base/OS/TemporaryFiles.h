// The temporary directory, unique temporary file names, and the clean-up
// of stale temporary files.
//
// A temporary name is the directory, the first three characters of the
// prefix, a hexadecimal number that the system's unique-name service
// handed out, and the process id, then "." and the suffix when one is
// given:
//
//     createTmpFilename(L"bak")                       => "\tmp\AST1A2B1234.bak"
//     createNewFilenameVariant(Filename("/data"), nullptr, L"bak")
//                                                     => "\data\rec1A2C1234.bak"
//
// The unique-name service creates a file of its own name exclusively and
// the file is deleted at once, so threads and processes never get the same
// number; the process id keeps processes apart once the file is gone.
// Nothing is left on disk: the caller creates the file it names.
#pragma once

#include <Base/OS/Filename.h>
#include <Base/String/IString.h>
#include <Base/Utility/Api.h>

namespace kxOS {

/// The system's directory for temporary files, without a trailing
/// separator: TMPDIR, TMP or TEMP, the first that is set, else "/tmp".
BASE_API Filename getTempDirectory();

/// A new temporary name in the temporary directory, from `prefix` ("ASTMP"
/// when null) and `suffix`; an empty Filename when the directory cannot
/// take a new file.
BASE_API Filename createTmpFilename(const kxString::IString& suffix,
                                    const wchar_t* prefix = nullptr);

/// The same in `directory`, with the default prefix "recover": the name
/// of a recovery copy.
BASE_API Filename createNewFilenameVariant(const Filename& directory,
                                           const wchar_t* prefix = nullptr,
                                           const kxString::IString& suffix = kxString::IString());

/// Deletes the stale temporary files of the temporary directory and, when
/// that is another directory, of "/tmp"; the number deleted.
BASE_API int cleanupTempDirectory();

/// Deletes the files of `directory` whose names temporary files of the
/// application take and that were last modified more than seven days ago;
/// the number deleted. The names are, with n their length:
///
///     n >= 13  "aru" ... ".unload"        n >= 10  "jam" ... "out" digit
///     n >= 15  "arubaTempWire." ...       n >= 14  "jam" ... "cmd" digit ".bat"
///     n >= 5   ... ".ac$"
///
/// Failures to list, query or delete are passed over.
BASE_API int cleanupTempDirectory(const kxString::IString& directory);

} // namespace kxOS

BASE_BEGIN_C

/// getTempDirectory() as text on the C heap; the caller frees it with free().
BASE_API char* kxOS_GetTemporaryDirectory(void);
BASE_API wchar_t* kxOS_GetTemporaryDirectoryW(void);
/// createTmpFilename(suffix) as text on the C heap, or null when there is
/// no name; the caller frees it with free().
BASE_API char* kxOS_CreateTemporaryFileName(const char* suffix);
BASE_API wchar_t* kxOS_CreateTemporaryFileNameW(const wchar_t* suffix);

BASE_END_C
