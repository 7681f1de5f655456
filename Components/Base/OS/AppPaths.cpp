#include <Base/OS/AppPaths.h>

#include <Base/OS/Filename.h>
#include <Base/Platform/Process.h>
#include <Base/String/IString.h>

#include <cstdlib>
#include <cstring>

namespace {

using kxString::CString;
using kxString::IString;

constexpr const char* kLocation = "HERON_LOCATION";

CString& applicationPath() {
    static CString path;
    return path;
}

char programName[1024] = "";

// HERON_LOCATION, set from the executable first when it is unset.
const char* location() {
    if (!std::getenv(kLocation))
        setHeronLocation();
    return std::getenv(kLocation);
}

CString narrow(const IString& path) {
    return CString(path.asMultibyte());
}

} // namespace

void setHeronLocation(void) {
    const kxOS::Filename executable(kx::platform::executablePath());
    const kxOS::Filename directory(executable.dirname());
    const CString text = narrow(directory.dirname());
    kx::platform::setEnvironmentVariable(kLocation, text.asChar());
    APP_setPath(text);
}

void APP_setPath(const CString& path) {
    applicationPath() = path;
}

const char* APP_getPath(bool fromEnvironment) {
    if (fromEnvironment)
        return location();
    if (applicationPath().isEmpty())
        setHeronLocation();
    return applicationPath().asChar();
}

// The cached paths are statics made on first use, under the language's
// thread-safe initialisation, and kept for the life of the process.
const char* APP_getBinariesPath(void) {
    static const CString path = narrow(kxOS::Filename::join(IString(location()), IString(L"bin")));
    return path.asChar();
}

const char* APP_getBinariesPath32Bit(void) {
    static const CString path =
        narrow(kxOS::Filename::join(IString(APP_getBinariesPath()), IString(L"ia32")));
    return path.asChar();
}

const char* APP_getPluginsPath(void) {
    static const CString path = narrow(kxOS::Filename::join(
        IString(location()), IString(L"ODS"), IString(L"OpenHeron"), IString(L"plugins")));
    return path.asChar();
}

const char* APP_getResourcePath(void) {
    static CString path;
    path = location();
    return path.asChar();
}

const char* APP_getTempPath(void) {
    for (const char* name : {"HERON_TEMP_DIRECTORY", "TMPDIR", "TEMP", "TMP"}) {
        if (const char* value = std::getenv(name))
            return value;
    }
    static char fallback[] = "C:\\temp";
    const char* root = std::getenv("SystemRoot");
    if (root && *root) {
        fallback[0] = root[0];
        return fallback;
    }
    return fallback + 2;
}

void APP_setProgramName(const char* path) {
    const char* name = path ? std::strrchr(path, '\\') : nullptr;
    name = name ? name + 1 : path ? path : "";
    std::strncpy(programName, name, sizeof programName - 1);
}

const char* APP_getProgramName(void) {
    return programName[0] ? programName : "Application";
}

bool APP_isProgramNameDefined(void) {
    return programName[0] != '\0';
}
