/* The report channel: how the library and its host application tell the
 * user something.
 *
 * Each kind of message goes to one callback that the host installs at
 * start-up. Until it does, errors go to the standard error stream and
 * everything else is dropped. Debug messages also need their debug code to
 * be enabled and the environment variable HERON_DEBUG to be present (read
 * once, on first need). A message reaches its callback exactly as the
 * caller formatted it, cut at 2048 characters; no prefix or newline is
 * added:
 *
 *     rptSetStatusCB(showInStatusBar);
 *     rptStatus("Loaded %d of %d parts\n", done, total);
 *     rptDebug(4000, "redraw took %.1f ms\n", ms);   // needs code 4000 set
 *
 * A closed channel costs a test and nothing else: the format is not
 * expanded. Formatting uses a buffer on the caller's stack.
 *
 * Thread safety: messages may be sent from any thread; callbacks must
 * cope with that. The callbacks, the debug codes and the confirm server
 * are meant to be set from one thread, at start-up or from the host's user
 * interface.
 *
 * The C functions are valid C; the three debug-code accessors at the end
 * are C++. */
#ifndef BASE_UTILITY_REPORT_H
#define BASE_UTILITY_REPORT_H

#include <Base/Utility/Api.h>

#include <stdarg.h>
#include <stdio.h>

#if defined(__cplusplus)
#    include <Base/Containers/Map.h>
#    include <Base/Containers/Vector.h>
#    include <Base/Signal/Signal.h>
#else
#    include <stdbool.h>
#endif

BASE_BEGIN_C

/* A channel's callback: receives one message. */
typedef void (*rptCallback)(const char* text);
/* Asked by rptCheckAbort: nonzero when the user wants to abort. */
typedef int (*rptCheckAbortCallback)(void);
/* Asked by rptSleep with the caller's argument. */
typedef int (*rptSleepCallback)(int);
/* Answers a question: x and y place it (-1 for no position), buttons and
 * defaultAnswer are the host's codes (8 is the OK button). */
typedef int (*rptConfirmServerCallback)(int x, int y, int buttons, int defaultAnswer,
                                        const char* message);

/* Errors: the error callback, by default a writer to standard error. */
BASE_API void rptError(const char* format, ...) BASE_PRINTF_FORMAT(1, 2);
BASE_API void rptVError(const char* format, va_list args) BASE_PRINTF_FORMAT(1, 0);
/* Passes `text` (not a format) of any length to the error callback, in
 * pieces of at most 2048 characters; the last piece is a pointer into
 * `text` itself. Empty text makes no call. */
BASE_API void rptErrorStr(const char* text);
BASE_API void rptStatus(const char* format, ...) BASE_PRINTF_FORMAT(1, 2);
BASE_API void rptVStatus(const char* format, va_list args) BASE_PRINTF_FORMAT(1, 0);
BASE_API void rptUser(const char* format, ...) BASE_PRINTF_FORMAT(1, 2);
BASE_API void rptVUser(const char* format, va_list args) BASE_PRINTF_FORMAT(1, 0);
/* Log messages share the user callback. */
BASE_API void rptLog(const char* format, ...) BASE_PRINTF_FORMAT(1, 2);
BASE_API void rptVLog(const char* format, va_list args) BASE_PRINTF_FORMAT(1, 0);
/* Debug messages: the debug callback, when rptDebugCodeIsSet(code). */
BASE_API void rptDebug(int code, const char* format, ...) BASE_PRINTF_FORMAT(2, 3);
BASE_API void rptVDebug(int code, const char* format, va_list args) BASE_PRINTF_FORMAT(2, 0);

/* Installation; null uninstalls (for errors, it silences them). */
BASE_API void rptSetErrorCB(rptCallback callback);
BASE_API void rptSetStatusCB(rptCallback callback);
BASE_API void rptSetUserCB(rptCallback callback);
BASE_API void rptSetDebugCB(rptCallback callback);
BASE_API void rptSetCheckAbortCB(rptCheckAbortCallback callback);
BASE_API void rptSetSleepCB(rptSleepCallback callback);
/* Null restores the default server, which answers defaultAnswer. */
BASE_API void rptSetConfirmServer(rptConfirmServerCallback server);

/* Sends each channel to a stream (note the order: user, error, status,
 * debug), written with fputs and flushed per message. A null stream
 * silences its channel, errors included. */
BASE_API void rptInitialize(FILE* userStream, FILE* errorStream, FILE* statusStream,
                            FILE* debugStream);

/* Questions, answered by the confirm server. */
BASE_API int rptConfirm(int buttons, int defaultAnswer, const char* message);
/* rptConfirm(8, 8, message): 8 without a host server. */
BASE_API int rptConfirmOK(const char* message);
BASE_API int rptConfirmXY(int x, int y, int buttons, int defaultAnswer, const char* message);

/* The host's answers, or 0 when it installed no callback. */
BASE_API int rptCheckAbort(void);
BASE_API int rptSleep(int milliseconds);

/* The set of enabled debug codes. Each change emits the modified signal,
 * except removing a code that is not there. */
BASE_API void rptDebugCodeSet(int code);
BASE_API void rptDebugCodeUnset(int code);
BASE_API void rptDebugCodeClearAll(void);
/* False without HERON_DEBUG; with it, true for code 0 and for codes in
 * the set. */
BASE_API bool rptDebugCodeIsSet(int code);

/* Writes formatted text (cut at 2048 characters) to standard output past
 * the C library's buffering and every callback: nonzero when written. */
BASE_API int kxUtilPrint(const char* format, ...) BASE_PRINTF_FORMAT(1, 2);
BASE_API int kxUtilVPrint(const char* format, va_list args) BASE_PRINTF_FORMAT(1, 0);

BASE_END_C

#if defined(__cplusplus)
/// The enabled debug codes, ascending.
BASE_API const kx::vector<int>& rptDebugCodeGet();
/// The host application's known debug codes and their descriptions.
BASE_API const kx::map<int, const char*, kx::less<int>>& rptDebugCodeGetTable();
/// Emitted on the changing thread after each change of the enabled codes.
BASE_API kxRTB::SignalVoid& rptDebugCodeGetModifiedSignal();
#endif

#endif
