#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// A circle of the bubble map, in logical pixels of its area.
struct Bubble {
    double x = 0;  ///< Of the centre.
    double y = 0;
    double diameter = 0;

    bool operator==(const Bubble&) const = default;
};

/// The bubble map shows at most this many files.
inline constexpr std::size_t maximumBubbles = 14;

/// Only larger bubbles show the name of their file.
inline constexpr double namedBubbleDiameter = 85;

/// Places one bubble for each size, largest size first, in an area: their areas follow the sizes, their centres a
/// sunflower spiral around the middle. Bubbles overlap, and reach over the edge, as they may.
[[nodiscard]] std::vector<Bubble> bubbleLayout(std::span<const std::int64_t> sizes, double width, double height);
