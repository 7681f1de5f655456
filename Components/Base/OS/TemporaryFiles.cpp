#include <Base/OS/TemporaryFiles.h>

#include <Base/Containers/Vector.h>
#include <Base/OS/File.h>
#include <Base/OS/FileOperations.h>
#include <Base/OS/FileStatus.h>
#include <Base/Platform/FileSystem.h>

#include <cstdint>

namespace kxOS {
namespace {

using kxString::IString;

constexpr std::int64_t kStaleAfter = std::int64_t{7} * 24 * 60 * 60;

bool startsWith(const IString& s, const wchar_t* start) {
    return s.find(start) == 0;
}

bool endsWith(const IString& s, const wchar_t* end) {
    const IString tail(end);
    return s.length() >= tail.length() && s.rfind(tail) == s.length() - tail.length();
}

bool isDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

// The names the application's temporary files take. The lengths are larger
// than the patterns need, so that a name has some text between its ends.
bool isTemporaryName(const IString& name) {
    const unsigned int n = name.length();
    if (n >= 13 && startsWith(name, L"aru") && endsWith(name, L".unload"))
        return true;
    if (n >= 15 && startsWith(name, L"arubaTempWire."))
        return true;
    if (n >= 5 && endsWith(name, L".ac$"))
        return true;
    if (n >= 10 && startsWith(name, L"jam") && isDigit(name[n - 1]) &&
        name.substr(n - 4, 3).compare(L"out") == 0)
        return true;
    return n >= 14 && startsWith(name, L"jam") && endsWith(name, L".bat") && isDigit(name[n - 5]) &&
           name.substr(n - 8, 3).compare(L"cmd") == 0;
}

Filename uniqueName(const Filename& directory, const wchar_t* prefix, const wchar_t* defaultPrefix,
                    const IString& suffix) {
    const IString created =
        kx::platform::createUniqueFile(directory.name(), IString(prefix ? prefix : defaultPrefix));
    if (created.isEmpty())
        return Filename();
    const Filename file(created);
    fileDelete(file);
    IString name = file.dirname();
    name.append(L'\\').append(file.baseTrunk());
    IString pid;
    pid.format("%d", kx::platform::processId());
    name.append(pid);
    if (!suffix.isEmpty())
        name.append(L'.').append(suffix);
    return Filename(name);
}

} // namespace

Filename getTempDirectory() {
    return Filename(kx::platform::temporaryDirectory());
}

Filename createTmpFilename(const IString& suffix, const wchar_t* prefix) {
    return uniqueName(getTempDirectory(), prefix, L"ASTMP", suffix);
}

Filename createNewFilenameVariant(const Filename& directory, const wchar_t* prefix,
                                  const IString& suffix) {
    return uniqueName(directory, prefix, L"recover", suffix);
}

int cleanupTempDirectory() {
    const Filename directory = getTempDirectory();
    int count = cleanupTempDirectory(directory.name());
    const IString& name = directory.name();
    if (name.compare(L"/tmp") != 0 && name.compare(L"\\tmp") != 0) {
        FileStatus status;
        if (!File::query(IString(L"/tmp"), status) && status.isDirectory())
            count += cleanupTempDirectory(IString(L"/tmp"));
    }
    return count;
}

int cleanupTempDirectory(const IString& directory) {
    kx::vector<IString> entries;
    if (File(directory).readDir(entries))
        return 0;
    const std::int64_t cutoff = kx::platform::currentTime() - kStaleAfter;
    const unsigned int length = directory.length();
    const bool separated =
        length > 0 && (directory[length - 1] == L'/' || directory[length - 1] == L'\\');
    const unsigned int start = separated ? length : length + 1;
    int count = 0;
    for (const IString& entry : entries) {
        if (!isTemporaryName(entry.substr(start)))
            continue;
        // A file whose date cannot be read is not known to be stale.
        FileStatus status;
        if (File::query(entry, status) || !status.exists())
            continue;
        if (status.getLastModifiedDate() < cutoff && !fileDelete(Filename(entry)))
            ++count;
    }
    return count;
}

} // namespace kxOS

char* kxOS_GetTemporaryDirectory(void) {
    return kxOS::getTempDirectory().name().copyAsMultibyte();
}

wchar_t* kxOS_GetTemporaryDirectoryW(void) {
    return kxOS::getTempDirectory().name().copyAsWChar();
}

char* kxOS_CreateTemporaryFileName(const char* suffix) {
    const kxOS::Filename name = kxOS::createTmpFilename(kxString::IString(suffix));
    return name.name().isEmpty() ? nullptr : name.name().copyAsMultibyte();
}

wchar_t* kxOS_CreateTemporaryFileNameW(const wchar_t* suffix) {
    const kxOS::Filename name = kxOS::createTmpFilename(kxString::IString(suffix));
    return name.name().isEmpty() ? nullptr : name.name().copyAsWChar();
}
