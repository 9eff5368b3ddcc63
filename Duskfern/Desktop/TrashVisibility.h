#pragma once

#include <string>

/// Whether file managers show a Trash at the top of the file system mounted at `path`: not if GIO considers the mount
/// internal to the system, or its options exclude a Trash. Reads the mount table.
[[nodiscard]] bool isTrashShownAt(const std::string& path);
