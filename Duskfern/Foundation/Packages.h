#pragma once

#include <string_view>

/// Whether a folder of this name is a package: a document bundle that people see as one thing, not as a folder.
[[nodiscard]] bool isPackageName(std::string_view name);
