#pragma once

#include <QtCore/QtGlobal>

#include <cstdint>

/// `a + b` of byte counts or counters. An overflow ends the program: a total that wrapped around would be a lie about
/// somebody's disk, and real sizes cannot reach it.
[[nodiscard]] inline std::int64_t checkedSum(std::int64_t a, std::int64_t b) {
    std::int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) {
        qFatal("a sum of byte counts does not fit 64 bits");
    }
    return sum;
}

/// `a - b`, under the same rule.
[[nodiscard]] inline std::int64_t checkedDifference(std::int64_t a, std::int64_t b) {
    std::int64_t difference = 0;
    if (__builtin_sub_overflow(a, b, &difference)) {
        qFatal("a difference of byte counts does not fit 64 bits");
    }
    return difference;
}
