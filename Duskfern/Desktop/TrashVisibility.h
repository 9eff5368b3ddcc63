#pragma once

#include <string>

/// Whether file managers show a Trash at the top of the file system that is mounted at `path`: not where the mount is
/// the system's own by their rules, or marked as having none. Reads the mount table.
[[nodiscard]] bool isTrashShownAt(const std::string& path);
