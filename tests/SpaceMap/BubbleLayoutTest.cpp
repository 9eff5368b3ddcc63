#include "SpaceMap/BubbleLayout.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <tuple>

namespace {

TEST(BubbleLayout, AreasFollowSizesWithinTheirLimits) {
    const std::vector<std::int64_t> sizes{4'000'000, 1'000'000, 0};
    const auto wide = bubbleLayout(sizes, 1000, 800);
    EXPECT_DOUBLE_EQ(wide[0].diameter, 152);
    EXPECT_DOUBLE_EQ(wide[1].diameter, 102);
    EXPECT_DOUBLE_EQ(wide[2].diameter, 52);
    // A narrow pane caps them, but not below the least that can be hit.
    EXPECT_DOUBLE_EQ(bubbleLayout(sizes, 300, 800)[0].diameter, 0.34 * 300);
    for (const Bubble& bubble : bubbleLayout(sizes, 100, 800)) {
        EXPECT_DOUBLE_EQ(bubble.diameter, 42);
    }
    for (const Bubble& bubble : bubbleLayout(std::vector<std::int64_t>{0, 0}, 1000, 800)) {
        EXPECT_DOUBLE_EQ(bubble.diameter, 52);
    }
    EXPECT_TRUE(bubbleLayout({}, 100, 100).empty());
}

TEST(BubbleLayout, CentresLieOnTheSpiral) {
    const std::vector<std::int64_t> sizes(14, 100);
    const auto bubbles = bubbleLayout(sizes, 600, 400);
    EXPECT_EQ(bubbles[0].x, 300);
    EXPECT_EQ(bubbles[0].y, 200);
    EXPECT_NEAR(bubbles[1].x, 300 + 22 * std::cos(2.399963), 1e-9);
    EXPECT_NEAR(bubbles[1].y, 200 + 22 * std::sin(2.399963), 1e-9);
    EXPECT_NEAR(std::hypot(bubbles[4].x - 300, bubbles[4].y - 200), 44, 1e-9);
    EXPECT_GT(bubbles[1].y, 200) << "y grows downwards";
}

TEST(BubbleLayout, ArrowKeysReachEveryBubbleAndGoInTheirDirection) {
    const auto bubbles = bubbleLayout(std::vector<std::int64_t>(14, 100), 600, 400);
    std::set<std::size_t> reached{0};
    for (std::vector<std::size_t> open{0}; !open.empty();) {
        const std::size_t from = open.back();
        open.pop_back();
        for (const auto& [direction, x, y] : {std::tuple(Direction::left, -1, 0),
                                              {Direction::right, 1, 0},
                                              {Direction::up, 0, -1},
                                              {Direction::down, 0, 1}}) {
            const std::size_t to = nearestBubble(bubbles, from, direction);
            EXPECT_TRUE(to == from ||
                        (bubbles[to].x - bubbles[from].x) * x + (bubbles[to].y - bubbles[from].y) * y > 0);
            if (reached.insert(to).second) {
                open.push_back(to);
            }
        }
    }
    EXPECT_EQ(reached.size(), 14U);
    // Level with it rather than nearer but aside.
    const std::vector<Bubble> few{{0, 0, 42}, {30, 0, 42}, {15, 20, 42}};
    EXPECT_EQ(nearestBubble(few, 0, Direction::right), 1U);
    EXPECT_EQ(nearestBubble(few, 1, Direction::right), 1U) << "none there";
}

}  // namespace
