#pragma once

#include "Desktop/FileManager.h"

/// Asks the file manager on the session bus. If none answers, opens the containing folders with the default
/// application, which does not select the items. Must be called on the main thread and does not block it; a request is
/// completed even if this object is destroyed meanwhile.
class BusFileManager final : public FileManager {
public:
    void reveal(const std::vector<FileURL>& urls) override;
};
