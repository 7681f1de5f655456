// Internal header of libBase: not installed.
//
// The operating system's own description of an error code, for the
// subsystems that turn system failures into kxUtil::Error messages.
#pragma once

#include <Base/String/IString.h>

namespace kxUtil {

/// The system's text for `code`, as the system gives it; when it has none,
/// "An unknown WIN32 error occurred: <code>".
kxString::IString systemErrorText(int code);

/// systemErrorText of the calling thread's last system error. Call it on the
/// thread that saw the failure, before any other system call.
kxString::IString lastSystemErrorText();

/// systemErrorText of the calling thread's last socket error.
kxString::IString lastSocketErrorText();

} // namespace kxUtil
