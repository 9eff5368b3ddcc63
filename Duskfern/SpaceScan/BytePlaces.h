#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

/// Where in 64 bytes something is, as bits, the first byte lowest.
namespace BytePlaces {

/// So many bytes are looked at in one step.
constexpr std::size_t stepSize = 64;

/// Sixteen bytes, in any processor's registers.
using Lanes [[gnu::vector_size(16)]] = unsigned char;

inline Lanes load(const char* bytes) {
    Lanes lanes;
    std::memcpy(&lanes, bytes, sizeof lanes);
    return lanes;
}

/// The lowest bits of sixteen bytes next to each other, for any processor.
inline std::uint64_t gatheredBits(Lanes lanes) {
    // Moves the lowest bits of eight bytes to the top.
    constexpr std::uint64_t gather = 0x0102040810204080;
    const auto halves = std::bit_cast<std::array<std::uint64_t, 2>>(static_cast<Lanes>(lanes & 1));
    return (halves[0] * gather >> 56) | (halves[1] * gather >> 56) << 8;
}

/// One bit for each of sixteen bytes, which have either all bits set or none.
inline std::uint64_t bits(Lanes lanes) {
#ifdef __SSE2__
    return static_cast<std::uint64_t>(_mm_movemask_epi8(std::bit_cast<__m128i>(lanes)));
#else
    return gatheredBits(lanes);
#endif
}

/// The places where `first` is in the step at `firsts` and `second` in that at `seconds`.
inline std::uint64_t ofBoth(char first, const char* firsts, char second, const char* seconds) {
    std::uint64_t places = 0;
    for (unsigned at = 0; at < stepSize; at += sizeof(Lanes)) {
        places |= bits(static_cast<Lanes>((load(firsts + at) == static_cast<unsigned char>(first)) &
                                          (load(seconds + at) == static_cast<unsigned char>(second))))
                  << at;
    }
    return places;
}

/// The places of `byte` in the step at `bytes`.
inline std::uint64_t of(char byte, const char* bytes) {
    return ofBoth(byte, bytes, byte, bytes);
}

}  // namespace BytePlaces
