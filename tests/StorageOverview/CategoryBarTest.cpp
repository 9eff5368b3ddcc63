#include "StorageOverview/CategoryBar.h"

#include <gtest/gtest.h>

namespace {

TEST(CategorySegments, ShareTheBand) {
    using Segments = std::vector<CategorySegment>;
    EXPECT_EQ(categorySegments({0, 0, 0}, 300), (Segments{{0, 0}, {2, 0}, {4, 0}}));
    EXPECT_EQ(categorySegments({1, 0, 3}, 400), (Segments{{0, 100}, {102, 0}, {104, 300}})) << "hangs out by the gaps";
    EXPECT_EQ(categorySegments({1, 500'000'000'000}, 100), (Segments{{0, 2}, {4, 100 * (500e9 / 500000000001.0)}}));
}

}  // namespace
