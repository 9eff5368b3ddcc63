#pragma once

#include "JunkCleaner/JunkPlaces.h"

/// The places where single programs keep caches outside the user's cache folder, or in it beside what is no cache.
[[nodiscard]] std::vector<JunkPlace> cachePlaces(const UserFolderPaths& paths);
