// Internal header of libBase: not installed.
//
// The host application's registry of debug topics, as data. The library
// only stores and serves it (rptDebugCodeGetTable). A host replaces the
// list by building the library with its own definition of kDebugCodeList
// (the BASE_DEBUG_CODE_LIST setting of the build names the source file).
#pragma once

namespace kx::detail {

struct DebugCodeRow {
    const char* description;
    int code;
};

/// Rows in any order, ended by a row whose code is -1.
extern const DebugCodeRow kDebugCodeList[];

} // namespace kx::detail
