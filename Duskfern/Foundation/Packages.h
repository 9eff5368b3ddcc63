#pragma once

#include <string_view>

/// Whether a folder of this name is a package: a document bundle that is treated as one item.
[[nodiscard]] bool isPackageName(std::string_view name);
