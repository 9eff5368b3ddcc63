#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

/// Compares 64 bytes at a time. A result has one bit per byte; the first byte is the lowest bit.
namespace ByteMask {

/// Bytes compared in one step.
constexpr std::size_t stepSize = 64;

/// Sixteen bytes, in a vector register where the processor has them.
using Lanes [[gnu::vector_size(16)]] = unsigned char;

inline Lanes load(const char* bytes) {
    Lanes lanes;
    std::memcpy(&lanes, bytes, sizeof lanes);
    return lanes;
}

/// The lowest bit of each of sixteen bytes, in plain arithmetic.
inline std::uint64_t lowestBits(Lanes lanes) {
    // Multiplying by it moves the lowest bits of eight bytes to the top byte.
    constexpr std::uint64_t merge = 0x0102040810204080;
    const auto halves = std::bit_cast<std::array<std::uint64_t, 2>>(static_cast<Lanes>(lanes & 1));
    return (halves[0] * merge >> 56) | (halves[1] * merge >> 56) << 8;
}

/// One bit for each of sixteen bytes, all of which are 0x00 or 0xFF.
inline std::uint64_t bits(Lanes lanes) {
#ifdef __SSE2__
    return static_cast<std::uint64_t>(_mm_movemask_epi8(std::bit_cast<__m128i>(lanes)));
#else
    return lowestBits(lanes);
#endif
}

/// A byte to find: `byte` with the bits of `ignored` set or not. `byte` has these bits set.
struct Wanted {
    char byte = 0;
    char ignored = 0;
};

/// The positions where the 64 bytes at `firsts` hold `first` and those at `seconds` hold `second`.
inline std::uint64_t ofBoth(Wanted first, const char* firsts, Wanted second, const char* seconds) {
    const auto lanes = [](Wanted wanted, const char* bytes) {
        const Lanes folded = load(bytes) | static_cast<unsigned char>(wanted.ignored);
        return static_cast<Lanes>(folded == static_cast<unsigned char>(wanted.byte));
    };
    std::uint64_t places = 0;
    for (unsigned at = 0; at < stepSize; at += sizeof(Lanes)) {
        places |= bits(lanes(first, firsts + at) & lanes(second, seconds + at)) << at;
    }
    return places;
}

/// The positions of `byte` in the 64 bytes at `bytes`.
inline std::uint64_t of(char byte, const char* bytes) {
    return ofBoth({byte}, bytes, {byte}, bytes);
}

}  // namespace ByteMask
