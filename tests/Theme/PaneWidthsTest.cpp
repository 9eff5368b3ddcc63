#include "Theme/PaneWidths.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(PaneWidths, KeepTheirLimitsAndShrinkInTheirRatio) {
    constexpr qreal unlimited = std::numeric_limits<qreal>::infinity();
    const qreal rows[][4] = {
        {430, 1000, unlimited, 430}, {100, 1000, unlimited, 360}, {900, 1000, unlimited, 570}, {500, 1000, 400, 400},
        {430, 790, unlimited, 360},  {430, 395, unlimited, 180},  {430, 0, unlimited, 0},
    };
    for (const auto& [wanted, room, maximum, first] : rows) {
        EXPECT_DOUBLE_EQ(PaneWidths::first(wanted, room, 360, maximum, 430), first) << wanted << " of " << room;
    }
}

}  // namespace
