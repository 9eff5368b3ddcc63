#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <immintrin.h>
#endif

#ifdef __x86_64__
/// For functions with instructions that only processors from about 2013 on have.
#define DUSKFERN_AVX2 [[gnu::target("avx2,bmi,bmi2,popcnt")]]
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

/// What a search does with every 64 bytes, with the instructions that every processor of the platform has.
struct Common {
    /// The positions where the 64 bytes at `firsts` hold `first` and those at `seconds` hold `second`.
    static std::uint64_t ofBoth(Wanted first, const char* firsts, Wanted second, const char* seconds) {
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

    /// The positions of NUL in the 64 bytes.
    static std::uint64_t ofNul(const char* bytes) { return ofBoth({}, bytes, {}, bytes); }

    /// How many bits are set. Not std::popcount, which is a call where that is no instruction of every processor.
    static std::uint32_t count(std::uint64_t places) {
        constexpr std::uint64_t all = ~std::uint64_t{0};
        places -= (places >> 1) & (all / 3);
        places = (places & (all / 5)) + ((places >> 2) & (all / 5));
        return static_cast<std::uint32_t>((((places + (places >> 4)) & (all / 17)) * (all / 255)) >> 56);
    }

    /// The bits of `places` at the positions of the bits in `mask`, moved together.
    static std::uint64_t gather(std::uint64_t places, std::uint64_t mask) {
        std::uint64_t found = 0;
        for (unsigned at = 0; mask != 0; mask &= mask - 1, ++at) {
            found |= (places >> static_cast<unsigned>(std::countr_zero(mask)) & 1) << at;
        }
        return found;
    }
};

#ifdef DUSKFERN_AVX2
/// The same for processors with AVX2 and BMI, which compare twice as many bytes at a time.
struct Wide {
    /// Whether this processor is one; nothing else may be called on others.
    static bool isSupported() {
        static const bool supported = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
                                      __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("popcnt");
        return supported;
    }

    DUSKFERN_AVX2 static std::uint64_t ofBoth(Wanted first, const char* firsts, Wanted second, const char* seconds) {
        return half(first, firsts, second, seconds) | half(first, firsts + 32, second, seconds + 32) << 32;
    }

    DUSKFERN_AVX2 static std::uint64_t ofNul(const char* bytes) { return ofBoth({}, bytes, {}, bytes); }

    DUSKFERN_AVX2 static std::uint32_t count(std::uint64_t places) {
        return static_cast<std::uint32_t>(_mm_popcnt_u64(places));
    }

    DUSKFERN_AVX2 static std::uint64_t gather(std::uint64_t places, std::uint64_t mask) {
        return _pext_u64(places, mask);
    }

private:
    DUSKFERN_AVX2 static __m256i lanes(Wanted wanted, const char* bytes) {
        __m256i loaded;
        std::memcpy(&loaded, bytes, sizeof loaded);
        return _mm256_cmpeq_epi8(_mm256_or_si256(loaded, _mm256_set1_epi8(wanted.ignored)),
                                 _mm256_set1_epi8(wanted.byte));
    }

    DUSKFERN_AVX2 static std::uint64_t half(Wanted first, const char* firsts, Wanted second, const char* seconds) {
        const __m256i both = _mm256_and_si256(lanes(first, firsts), lanes(second, seconds));
        return static_cast<std::uint32_t>(_mm256_movemask_epi8(both));
    }
};
#endif

}  // namespace ByteMask
