/* Where the application lies: its installation, executables, plug-ins,
 * resources and temporary directory, and its program name.
 *
 * The installation directory is the environment variable HERON_LOCATION.
 * When nobody has set it, the library sets it on first need, for the
 * process and its children, to the directory above the one that holds the
 * running executable: "/opt/suite/bin/modeler" gives "\opt\suite". Paths
 * are joined as kxOS::Filename joins them, with "\" (the operating-system
 * layer turns it into "/" when it opens files):
 *
 *     HERON_LOCATION=E:\Apps\Suite
 *     APP_getBinariesPath()       => "E:\Apps\Suite\bin"
 *     APP_getBinariesPath32Bit()  => "E:\Apps\Suite\bin\ia32"
 *     APP_getPluginsPath()        => "E:\Apps\Suite\ODS\OpenHeron\plugins"
 *
 * Texts are narrow, in the system code page. The returned pointers belong
 * to the library: the cached paths live as long as the process, the others
 * until the same function is called again (or the environment changes,
 * for those that return the environment's own text).
 *
 * Thread safety: the cached paths are made once, safely from any thread;
 * the rest is meant for the main thread during start-up. */
#ifndef BASE_OS_APPPATHS_H
#define BASE_OS_APPPATHS_H

#include <Base/Utility/Api.h>

#if defined(__cplusplus)
#    include <Base/String/CString.h>
#else
#    include <stdbool.h>
#endif

BASE_BEGIN_C

/* Sets HERON_LOCATION and the application path to the directory above the
 * executable's. When the executable cannot be found, both become empty. */
BASE_API void setHeronLocation(void);

#if defined(__cplusplus)
/* Overrides the application path; HERON_LOCATION and the cached paths stay
 * as they are. */
BASE_API void APP_setPath(const kxString::CString& path);
#endif

/* With false, the application path; with true, HERON_LOCATION. Either is
 * set first by setHeronLocation() when it is empty or unset. */
BASE_API const char* APP_getPath(bool fromEnvironment);
/* "<HERON_LOCATION>\bin", made on the first call. */
BASE_API const char* APP_getBinariesPath(void);
/* "<binaries path>\ia32", made on the first call. */
BASE_API const char* APP_getBinariesPath32Bit(void);
/* "<HERON_LOCATION>\ODS\OpenHeron\plugins", made on the first call. */
BASE_API const char* APP_getPluginsPath(void);
/* A copy of HERON_LOCATION, taken again on every call. */
BASE_API const char* APP_getResourcePath(void);
/* The first of HERON_TEMP_DIRECTORY, TMPDIR, TEMP and TMP that is set, as
 * it stands; else "<drive>:\temp" with the first character of SystemRoot;
 * else "\temp". */
BASE_API const char* APP_getTempPath(void);

/* Stores the text after the last "\" of `path` (all of it when there is
 * none; "/" is not a separator here). A null path stores "". Names longer
 * than 1023 bytes are cut. */
BASE_API void APP_setProgramName(const char* path);
/* The stored name, or "Application" when none is stored. */
BASE_API const char* APP_getProgramName(void);
BASE_API bool APP_isProgramNameDefined(void);

BASE_END_C

#endif
