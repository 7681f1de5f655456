// Internal header of libBase: not installed.
//
// How the thread primitives answer failures of the operating system.
#pragma once

namespace kx::detail {

/// Throws kxUtil::Error code 1 with the system's text for `code`: a
/// constructor could not create its system object.
[[noreturn]] void throwCreationFailure(int code);

/// Ends the process when `code` is a failure. A condition variable whose own
/// lock failed is in an unknown state, and its waiters could sleep forever.
void terminateOnFailure(int code);

} // namespace kx::detail
