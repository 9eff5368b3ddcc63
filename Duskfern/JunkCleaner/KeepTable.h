#pragma once

#include <string_view>
#include <vector>

/// The keep lists, by kind of folder. `none` is for folders in which every entry belongs to a single application.
enum class KeepList : unsigned char {
    none,
    caches,
    temporary,
    support,  ///< Data and settings: what programs share, and what `personal` has.
    personal  ///< Data and settings that are a person's, whatever program made them.
};

/// Why an entry of that name is never junk; empty if it may be. Ignores the case of ASCII letters.
[[nodiscard]] std::string_view reasonToKeep(KeepList list, std::string_view name);

/// The patterns of a list, with "*" for any text. Lets a test cover all of them.
[[nodiscard]] std::vector<std::string_view> keepPatterns(KeepList list);
