#pragma once

#include "Foundation/FileURL.h"

#include <vector>

/// The desktop's file manager.
class FileManager {
public:
    virtual ~FileManager() = default;

    /// Asks for a window that shows the given items selected. Returns at once; failures go unreported.
    virtual void reveal(const std::vector<FileURL>& urls) = 0;
};
