// Internal header of libBase: not installed.
//
// What the library needs to know of and do to its own process: where its
// executable lies, its environment for child processes, and its standard
// output.
#pragma once

#include <Base/String/IString.h>

#include <cstddef>

namespace kx::platform {

/// The full path of the running executable; "" when the system cannot tell.
kxString::IString executablePath();

/// Sets an environment variable of the process, which child processes
/// inherit; true on success.
bool setEnvironmentVariable(const char* name, const char* value);

/// Writes all of `text` to the process's standard output, past any
/// buffering of the C library; true when every byte was written.
bool writeStandardOutput(const char* text, std::size_t length);

} // namespace kx::platform
