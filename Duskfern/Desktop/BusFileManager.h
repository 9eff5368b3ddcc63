#pragma once

#include "Desktop/FileManager.h"

/// The file manager that answers on the session bus or, where none does, the default one for folders, which is shown
/// the folder without the selection. To be called on the main thread, which is never blocked; what was asked for is
/// carried out even if this is destroyed meanwhile.
class BusFileManager final : public FileManager {
public:
    void reveal(const std::vector<FileURL>& urls) override;
};
