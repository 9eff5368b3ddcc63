#pragma once

#include "Foundation/FileURL.h"

#include <vector>

/// The desktop's file manager.
class FileManager {
public:
    virtual ~FileManager() = default;

    /// Opens a window with the given items selected. Does not block; failures are not reported.
    virtual void reveal(const std::vector<FileURL>& urls) = 0;
};
