// Thread-local keys: slots that hold one pointer for each thread.
//
//     unsigned int key = kxThread::createThreadKey();
//     kxThread::setThreadSpecificValue(key, &state);   // this thread only
//     kxThread::getThreadSpecificValue(key);           // &state here, null
//                                                      // on other threads
//     kxThread::freeThreadKey(key);
//
// Nothing is deleted when a thread ends or a key is freed: the owner of the
// values frees them. A key that is not in use (kInvalidThreadKey, or one
// already freed) reads as null and ignores writes.
//
// Thread safety: all four functions may be called from any thread.
#pragma once

#include <Base/Utility/Api.h>

namespace kxThread {

/// createThreadKey's result when the system has no key left.
inline constexpr unsigned int kInvalidThreadKey = 0xFFFFFFFFu;

/// A new key, null on every thread; kInvalidThreadKey on failure.
BASE_API unsigned int createThreadKey();
BASE_API void freeThreadKey(unsigned int key);
/// The calling thread's value of `key`.
BASE_API void* getThreadSpecificValue(unsigned int key);
/// Sets the calling thread's value of `key`.
BASE_API void setThreadSpecificValue(unsigned int key, void* value);

} // namespace kxThread
