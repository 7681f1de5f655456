// Internal header of libBase: not installed.
//
// The operating system's error codes and their descriptions. Codes are
// errno values on POSIX. The "last error" functions read the calling
// thread's state, so call them before any other system call.
#pragma once

#include <string>

namespace kx::platform {

/// The system's description of `code` in the user's language, as narrow
/// text in the C locale's encoding; empty when the system has none.
std::string errorDescription(int code);

/// The calling thread's last system error.
int lastError();

/// The calling thread's last socket error.
int lastSocketError();

} // namespace kx::platform
