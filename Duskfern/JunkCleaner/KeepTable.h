#pragma once

#include <string_view>
#include <vector>

/// Which of the desktop's shared folders something lies in. `none` stands for folders in which every entry belongs to
/// one application alone.
enum class KeepList : unsigned char { none, caches, temporary, support };

/// Why an entry of that name stays whatever happens to the rest of its folder; empty when nothing speaks for it. Names
/// are compared without regard to the case of ASCII letters.
[[nodiscard]] std::string_view reasonToKeep(KeepList list, std::string_view name);

/// What is looked for in that list, with "*" for any text, so that it can be seen that none of it is untested.
[[nodiscard]] std::vector<std::string_view> keepPatterns(KeepList list);
