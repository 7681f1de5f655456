#include <Base/Utility/Report.h>

#include <Base/Containers/Map.h>
#include <Base/Platform/Process.h>
#include <Base/Utility/DebugCodeList.h>
#include <Base/Utility/Format.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>

namespace {

// Messages are cut to this many characters; the buffers hold one more for
// the terminator.
constexpr std::size_t kMessageLength = 2048;

void writeToStandardError(const char* text) {
    std::fputs(text, stderr);
    std::fflush(stderr);
}

int answerDefault(int /*x*/, int /*y*/, int /*buttons*/, int defaultAnswer,
                  const char* /*message*/) {
    return defaultAnswer;
}

// The slots are single words, set by the host and read on any thread.
constinit std::atomic<rptCallback> errorSlot{writeToStandardError};
constinit std::atomic<rptCallback> statusSlot{nullptr};
constinit std::atomic<rptCallback> userSlot{nullptr};
constinit std::atomic<rptCallback> debugSlot{nullptr};
constinit std::atomic<rptCheckAbortCallback> checkAbortSlot{nullptr};
constinit std::atomic<rptSleepCallback> sleepSlot{nullptr};
constinit std::atomic<rptConfirmServerCallback> confirmSlot{answerDefault};

// The streams of the writers that rptInitialize installs.
constinit std::atomic<FILE*> userStream{nullptr};
constinit std::atomic<FILE*> errorStream{nullptr};
constinit std::atomic<FILE*> statusStream{nullptr};
constinit std::atomic<FILE*> debugStream{nullptr};

void writeTo(const std::atomic<FILE*>& slot, const char* text) {
    if (FILE* stream = slot.load(std::memory_order_relaxed)) {
        std::fputs(text, stream);
        std::fflush(stream);
    }
}

void writeUser(const char* text) {
    writeTo(userStream, text);
}
void writeError(const char* text) {
    writeTo(errorStream, text);
}
void writeStatus(const char* text) {
    writeTo(statusStream, text);
}
void writeDebug(const char* text) {
    writeTo(debugStream, text);
}

rptCallback callbackOf(const std::atomic<rptCallback>& slot) {
    return slot.load(std::memory_order_relaxed);
}

// Formats into a buffer on this call's stack and hands it to `callback`.
void deliver(rptCallback callback, const char* format, va_list args) {
    char buffer[kMessageLength + 1];
    HN_vsnprintf(buffer, kMessageLength, format, args);
    buffer[kMessageLength] = '\0';
    callback(buffer);
}

// Whether HERON_DEBUG was present when first asked: -1 until then.
constinit std::atomic<int> debugEnvironment{-1};

bool debugEnabled() {
    int present = debugEnvironment.load(std::memory_order_relaxed);
    if (present < 0) {
        present = std::getenv("HERON_DEBUG") != nullptr ? 1 : 0;
        debugEnvironment.store(present, std::memory_order_relaxed);
    }
    return present != 0;
}

// The process-wide objects are never destroyed, so that reports from other
// objects' destructors at exit still find them.
kx::vector<int>& debugCodes() {
    static auto* codes = new kx::vector<int>;
    return *codes;
}

// The set is rewritten whole through an ordered set, which keeps it sorted
// and free of duplicates.
template <class Change>
void rewriteDebugCodes(Change change) {
    kx::vector<int>& codes = debugCodes();
    kx::set<int> ordered(codes.begin(), codes.end());
    change(ordered);
    codes.assign(ordered.begin(), ordered.end());
}

} // namespace

#define BASE_REPORT_FORWARD(channel, slot)                                                         \
    void rpt##channel(const char* format, ...) {                                                   \
        if (rptCallback callback = callbackOf(slot)) {                                             \
            va_list args;                                                                          \
            va_start(args, format);                                                                \
            deliver(callback, format, args);                                                       \
            va_end(args);                                                                          \
        }                                                                                          \
    }                                                                                              \
    void rptV##channel(const char* format, va_list args) {                                         \
        if (rptCallback callback = callbackOf(slot))                                               \
            deliver(callback, format, args);                                                       \
    }

BASE_REPORT_FORWARD(Error, errorSlot)
BASE_REPORT_FORWARD(Status, statusSlot)
BASE_REPORT_FORWARD(User, userSlot)
BASE_REPORT_FORWARD(Log, userSlot)

#undef BASE_REPORT_FORWARD

void rptErrorStr(const char* text) {
    const rptCallback callback = callbackOf(errorSlot);
    if (!callback || !text)
        return;
    std::size_t left = std::strlen(text);
    if (left > kMessageLength) {
        char* piece = static_cast<char*>(std::malloc(kMessageLength + 1));
        if (!piece)
            return;
        for (; left > kMessageLength; left -= kMessageLength, text += kMessageLength) {
            std::memcpy(piece, text, kMessageLength);
            piece[kMessageLength] = '\0';
            callback(piece);
        }
        std::free(piece);
    }
    if (left > 0)
        callback(text); // the last piece in place
}

void rptDebug(int code, const char* format, ...) {
    if (!callbackOf(debugSlot) || !rptDebugCodeIsSet(code))
        return;
    va_list args;
    va_start(args, format);
    rptVDebug(code, format, args);
    va_end(args);
}

void rptVDebug(int code, const char* format, va_list args) {
    const rptCallback callback = callbackOf(debugSlot);
    if (callback && rptDebugCodeIsSet(code))
        deliver(callback, format, args);
}

void rptSetErrorCB(rptCallback callback) {
    errorSlot.store(callback, std::memory_order_relaxed);
}

void rptSetStatusCB(rptCallback callback) {
    statusSlot.store(callback, std::memory_order_relaxed);
}

void rptSetUserCB(rptCallback callback) {
    userSlot.store(callback, std::memory_order_relaxed);
}

void rptSetDebugCB(rptCallback callback) {
    debugSlot.store(callback, std::memory_order_relaxed);
}

void rptSetCheckAbortCB(rptCheckAbortCallback callback) {
    checkAbortSlot.store(callback, std::memory_order_relaxed);
}

void rptSetSleepCB(rptSleepCallback callback) {
    sleepSlot.store(callback, std::memory_order_relaxed);
}

void rptSetConfirmServer(rptConfirmServerCallback server) {
    confirmSlot.store(server ? server : answerDefault, std::memory_order_relaxed);
}

void rptInitialize(FILE* user, FILE* error, FILE* status, FILE* debug) {
    userStream.store(user, std::memory_order_relaxed);
    errorStream.store(error, std::memory_order_relaxed);
    statusStream.store(status, std::memory_order_relaxed);
    debugStream.store(debug, std::memory_order_relaxed);
    rptSetUserCB(writeUser);
    rptSetErrorCB(writeError);
    rptSetStatusCB(writeStatus);
    rptSetDebugCB(writeDebug);
}

int rptConfirm(int buttons, int defaultAnswer, const char* message) {
    return rptConfirmXY(-1, -1, buttons, defaultAnswer, message);
}

int rptConfirmOK(const char* message) {
    return rptConfirm(8, 8, message);
}

int rptConfirmXY(int x, int y, int buttons, int defaultAnswer, const char* message) {
    return confirmSlot.load(std::memory_order_relaxed)(x, y, buttons, defaultAnswer, message);
}

int rptCheckAbort(void) {
    const rptCheckAbortCallback callback = checkAbortSlot.load(std::memory_order_relaxed);
    return callback ? callback() : 0;
}

int rptSleep(int milliseconds) {
    const rptSleepCallback callback = sleepSlot.load(std::memory_order_relaxed);
    return callback ? callback(milliseconds) : 0;
}

void rptDebugCodeSet(int code) {
    rewriteDebugCodes([code](kx::set<int>& ordered) { ordered.insert(code); });
    rptDebugCodeGetModifiedSignal().emit();
}

void rptDebugCodeUnset(int code) {
    const kx::vector<int>& codes = debugCodes();
    if (!std::binary_search(codes.begin(), codes.end(), code))
        return;
    rewriteDebugCodes([code](kx::set<int>& ordered) { ordered.erase(code); });
    rptDebugCodeGetModifiedSignal().emit();
}

void rptDebugCodeClearAll(void) {
    debugCodes().clear();
    rptDebugCodeGetModifiedSignal().emit();
}

bool rptDebugCodeIsSet(int code) {
    if (!debugEnabled())
        return false;
    if (code == 0)
        return true;
    const kx::vector<int>& codes = debugCodes();
    const auto found = std::lower_bound(codes.begin(), codes.end(), code);
    return found != codes.end() && *found == code;
}

int kxUtilPrint(const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int written = kxUtilVPrint(format, args);
    va_end(args);
    return written;
}

int kxUtilVPrint(const char* format, va_list args) {
    char buffer[kMessageLength + 1];
    HN_vsnprintf(buffer, kMessageLength, format, args);
    buffer[kMessageLength] = '\0';
    return kx::platform::writeStandardOutput(buffer, std::strlen(buffer)) ? 1 : 0;
}

const kx::vector<int>& rptDebugCodeGet() {
    return debugCodes();
}

const kx::map<int, const char*, kx::less<int>>& rptDebugCodeGetTable() {
    static const auto* table = [] {
        auto* map = new kx::map<int, const char*, kx::less<int>>;
        for (const kx::detail::DebugCodeRow* row = kx::detail::kDebugCodeList; row->code != -1;
             ++row)
            map->insert({row->code, row->description});
        return map;
    }();
    return *table;
}

kxRTB::SignalVoid& rptDebugCodeGetModifiedSignal() {
    static auto* signal = new kxRTB::SignalVoid;
    return *signal;
}
