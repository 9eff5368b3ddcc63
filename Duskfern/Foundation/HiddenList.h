#pragma once

#include "Foundation/NameSet.h"

#include <string_view>

/// The file in which a folder lists the names of its entries that file managers hide, one per line.
constexpr std::string_view hiddenListName = ".hidden";

/// The names listed in the ".hidden" of an open folder; none if there is no such regular file. Reads at most 1 MiB of
/// it.
[[nodiscard]] NameSet hiddenNames(int directory);
