#include "SpaceMap/BubbleLayout.h"

#include <algorithm>
#include <cmath>

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
