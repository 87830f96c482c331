#include "platform/kvExtended.h"

#include <bit>
#include <cmath>
#include <limits>

namespace kv {

namespace {

constexpr int ExtendedBias = 16383;
constexpr int DoubleBias = 1023;

TExtendedBytes Pack(bool Negative, unsigned Exponent, std::uint64_t Significand)
{
    TExtendedBytes bytes{};
    for (int i = 0; i < 8; ++i)
        bytes[i] = std::uint8_t(Significand >> (8 * i));
    const unsigned top = (Negative ? 0x8000u : 0u) | (Exponent & 0x7FFFu);
    bytes[8] = std::uint8_t(top);
    bytes[9] = std::uint8_t(top >> 8);
    return bytes;
}

} // namespace

TExtendedBytes DoubleToExtended(double Value)
{
    const std::uint64_t bits = std::bit_cast<std::uint64_t>(Value);
    const bool negative = bits >> 63;
    const unsigned exponent = unsigned(bits >> 52) & 0x7FF;
    const std::uint64_t fraction = bits & ((std::uint64_t(1) << 52) - 1);

    if (exponent == 0x7FF) // infinity, or NaN keeping its payload bits
        return Pack(negative, 0x7FFF, (std::uint64_t(1) << 63) | (fraction << 11));
    if (exponent == 0) {
        if (fraction == 0)
            return Pack(negative, 0, 0);
        // A subnormal double is a normal extended: shift its leading one to the top.
        const int shift = std::countl_zero(fraction);
        const int unbiased = 1 - DoubleBias - (shift - 11);
        return Pack(negative, unsigned(unbiased + ExtendedBias), fraction << shift);
    }
    return Pack(negative, unsigned(int(exponent) - DoubleBias + ExtendedBias),
                (std::uint64_t(1) << 63) | (fraction << 11));
}

double ExtendedToDouble(const TExtendedBytes &Bytes)
{
    std::uint64_t significand = 0;
    for (int i = 0; i < 8; ++i)
        significand |= std::uint64_t(Bytes[i]) << (8 * i);
    const unsigned top = unsigned(Bytes[8]) | (unsigned(Bytes[9]) << 8);
    const bool negative = top & 0x8000u;
    const int exponent = int(top & 0x7FFFu);
    const double sign = negative ? -1.0 : 1.0;

    if (exponent == 0x7FFF) {
        if ((significand << 1) == 0)
            return sign * std::numeric_limits<double>::infinity();
        return std::copysign(std::numeric_limits<double>::quiet_NaN(), sign);
    }
    if (exponent != 0 && !(significand >> 63))
        return std::numeric_limits<double>::quiet_NaN();
    if (significand == 0)
        return sign * 0.0;

    // value = significand * 2^(exponent - bias - 63); extended subnormals use exponent 1.
    const int scale = (exponent == 0 ? 1 : exponent) - ExtendedBias - 63;
    // Normalise so that the top bit is set, then round the 64 bits to 53 (or fewer for a
    // subnormal double) by hand, ties to even.
    const int lead = std::countl_zero(significand);
    significand <<= lead;
    int e = scale - lead + 63; // the exponent of the leading one
    if (e > 1023)
        return sign * std::numeric_limits<double>::infinity();
    int keep = 53;
    if (e < -1022)
        keep = 53 - (-1022 - e);
    if (keep <= 0) {
        // Below half the smallest subnormal, or exactly half (ties to even gives zero).
        if (keep == 0 && (significand << 1) != 0)
            return sign * std::numeric_limits<double>::denorm_min();
        return sign * 0.0;
    }
    const int drop = 64 - keep;
    std::uint64_t kept = significand >> drop;
    const std::uint64_t rest = significand << (64 - drop); // drop is at least 11
    const std::uint64_t half = std::uint64_t(1) << 63;
    if (rest > half || (rest == half && (kept & 1)))
        ++kept;
    return sign * std::ldexp(double(kept), e - keep + 1);
}

} // namespace kv
