#include "Theme/PaneWidths.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(PaneWidths, KeepTheirLimitsAndShrinkInTheirRatio) {
    constexpr qreal unlimited = std::numeric_limits<qreal>::infinity();
    const struct {
        qreal wanted, room, maximumFirst, first;
    } cases[] = {
        {430, 1000, unlimited, 430}, {100, 1000, unlimited, 360}, {900, 1000, unlimited, 570}, {500, 1000, 400, 400},
        {430, 790, unlimited, 360},  {430, 395, unlimited, 180},  {430, 0, unlimited, 0},
    };
    for (const auto& row : cases) {
        EXPECT_DOUBLE_EQ(PaneWidths::first(row.wanted, row.room, 360, row.maximumFirst, 430), row.first)
            << row.wanted << " of " << row.room;
    }
}

}  // namespace
