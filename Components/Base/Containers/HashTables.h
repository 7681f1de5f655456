// Internal header of libBase: not installed.
//
// The four mixing tables of the container hashes.
#pragma once

#include <cstdint>

namespace kx::detail {

extern const std::uint32_t kS1[256];
extern const std::uint32_t kS2[256];
extern const std::uint32_t kS3[256];
extern const std::uint32_t kS4[256];

} // namespace kx::detail
