#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// A circle of the bubble map, in logical pixels of the map's area.
struct Bubble {
    double x = 0;  ///< Centre.
    double y = 0;
    double diameter = 0;

    bool operator==(const Bubble&) const = default;
};

/// The maximum number of files in the bubble map.
inline constexpr std::size_t maximumBubbles = 14;

/// Only bubbles larger than this show the name of their file.
inline constexpr double namedBubbleDiameter = 85;

enum class Direction { left, right, up, down };

/// The bubble that is nearest to bubble `from` in a direction: near in that direction, and even nearer to the side.
/// `from` itself if there is none.
[[nodiscard]] std::size_t nearestBubble(std::span<const Bubble> bubbles, std::size_t from, Direction direction);

/// Places one bubble per size, largest first, in an area. The area of a bubble grows with its size; the centres lie on
/// a sunflower spiral around the middle. Bubbles may overlap and extend beyond the edge.
[[nodiscard]] std::vector<Bubble> bubbleLayout(std::span<const std::int64_t> sizes, double width, double height);
