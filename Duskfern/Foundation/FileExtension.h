#pragma once

#include <string>
#include <string_view>

/// What stands behind the last dot of a file name, in lower case whatever the locale; empty where there is no dot, or
/// where it is longer than `longest` bytes and so none of those a table could hold.
[[nodiscard]] std::string lowerCaseExtension(std::string_view name, std::size_t longest);
