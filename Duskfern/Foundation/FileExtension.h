#pragma once

#include <string>
#include <string_view>

/// The text after the last dot of a file name, in lower case in every locale; empty if there is no dot, or if the text
/// is longer than `maximumLength` bytes and thus in no table.
[[nodiscard]] std::string lowerCaseExtension(std::string_view name, std::size_t maximumLength);
