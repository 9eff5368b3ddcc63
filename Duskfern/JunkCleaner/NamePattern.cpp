#include "JunkCleaner/NamePattern.h"

#include <algorithm>

std::string foldedName(std::string_view name) {
    std::string folded(name);
    std::transform(folded.begin(), folded.end(), folded.begin(), foldedByte);
    return folded;
}

bool matchesPattern(std::string_view name, std::string_view pattern) {
    const std::size_t star = pattern.find('*');
    if (star == std::string_view::npos) {
        return name == pattern;
    }
    const std::string_view tail = pattern.substr(star + 1);
    return name.size() >= star + tail.size() && name.starts_with(pattern.substr(0, star)) && name.ends_with(tail);
}
