#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/// ASCII lower case, independent of the locale (Turkish maps "I" differently).
constexpr char foldedByte(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}
[[nodiscard]] std::string foldedName(std::string_view name);

/// Whether a folded name matches a folded pattern, in which one "*" may stand for any text.
[[nodiscard]] bool matchesPattern(std::string_view name, std::string_view pattern);

/// Calls `use` with each part of `list`, which are separated by `separator`.
template <class Use>
void forEachPart(std::string_view list, char separator, Use use) {
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(separator), list.size());
        use(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
}
