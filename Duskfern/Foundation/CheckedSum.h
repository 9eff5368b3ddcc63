#pragma once

#include <QtCore/QtGlobal>

#include <cstdint>

/// `a + b` of byte counts or counters. Ends the program on overflow: a wrapped total would be shown as a size, and real
/// sizes stay far below 64 bits.
[[nodiscard]] inline std::int64_t checkedSum(std::int64_t a, std::int64_t b) {
    std::int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) {
        qFatal("a sum of byte counts does not fit 64 bits");
    }
    return sum;
}

/// `a - b`, with the same overflow check.
[[nodiscard]] inline std::int64_t checkedDifference(std::int64_t a, std::int64_t b) {
    std::int64_t difference = 0;
    if (__builtin_sub_overflow(a, b, &difference)) {
        qFatal("a difference of byte counts does not fit 64 bits");
    }
    return difference;
}
