#include "SpaceMap/BubbleLayout.h"

#include <algorithm>
#include <cmath>
#include <limits>

std::vector<Bubble> bubbleLayout(std::span<const std::int64_t> sizes, double width, double height) {
    constexpr double goldenAngle = 2.399963;
    const auto largest = static_cast<double>(sizes.empty() ? 1 : std::max<std::int64_t>(sizes.front(), 1));
    std::vector<Bubble> bubbles;
    bubbles.reserve(sizes.size());
    for (std::size_t index = 0; index < sizes.size(); ++index) {
        const double share = std::sqrt(static_cast<double>(sizes[index]) / largest);
        const double diameter = std::max(42.0, std::min(0.34 * width, 52.0 + 100.0 * share));
        const double angle = static_cast<double>(index) * goldenAngle;
        const double distance = std::min(width, height) * 0.055 * std::sqrt(static_cast<double>(index));
        bubbles.push_back({width / 2 + std::cos(angle) * distance, height / 2 + std::sin(angle) * distance, diameter});
    }
    return bubbles;
}

std::size_t nearestBubble(std::span<const Bubble> bubbles, std::size_t from, Direction direction) {
    std::size_t nearest = from;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t index = 0; index < bubbles.size(); ++index) {
        const double right = bubbles[index].x - bubbles[from].x;
        const double down = bubbles[index].y - bubbles[from].y;
        const bool isLevel = direction == Direction::left || direction == Direction::right;
        const bool isBack = direction == Direction::left || direction == Direction::up;
        const double ahead = (isLevel ? right : down) * (isBack ? -1 : 1);
        const double distance = std::hypot(ahead, 2 * (isLevel ? down : right));
        if (ahead > 0 && distance < least) {
            nearest = index;
            least = distance;
        }
    }
    return nearest;
}
