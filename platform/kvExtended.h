#pragma once

#include "kv_export.h"

// The 80-bit extended float of component streams (10 bytes, little-endian: a 64-bit
// significand with an explicit integer bit, then the sign and a 15-bit exponent biased by
// 16383). Converted by hand so that the bytes are the same on every compiler, whatever its
// long double is.

#include <array>
#include <cstdint>

namespace kv {

using TExtendedBytes = std::array<std::uint8_t, 10>;

// Exact: every double is an extended.
KV_EXPORT TExtendedBytes DoubleToExtended(double Value);
// Rounded to the nearest double (ties to even); too large gives infinity, too small zero or
// a subnormal. Unnormal encodings (integer bit clear, exponent not zero) read as NaN.
KV_EXPORT double ExtendedToDouble(const TExtendedBytes &Bytes);

} // namespace kv
