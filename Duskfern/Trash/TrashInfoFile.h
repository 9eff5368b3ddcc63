#pragma once

#include "Foundation/Descriptor.h"

#include <string>

/// A .trashinfo file that has no name in `info` yet. It is complete and synced before it gets one, so that nobody ever
/// sees an incomplete one, not even after a power cut.
class TrashInfoFile {
public:
    /// `trash` and `info` are the open Trash folder and its `info` folder. They must outlive this.
    TrashInfoFile(int trash, int info) : m_trash(trash), m_info(info) {}
    ~TrashInfoFile() { dropTemporary(); }
    TrashInfoFile(const TrashInfoFile&) = delete;
    TrashInfoFile& operator=(const TrashInfoFile&) = delete;

    /// Writes the contents and syncs. Returns 0, or the error number with nothing left behind.
    [[nodiscard]] int write(const std::string& text);

    /// Gives the file its name in `info`. May succeed once. Returns 0 or the error number; EEXIST if the name is taken.
    [[nodiscard]] int link(const std::string& name);

private:
    [[nodiscard]] int writeTemporary();
    [[nodiscard]] int fill(int file) const;
    [[nodiscard]] int linkTemporary(const std::string& name);
    void dropTemporary();

    int m_trash;
    int m_info;
    std::string m_text;
    Descriptor m_file;
    std::string m_temporary;  ///< Its name in the Trash folder where unnamed files are not supported.
};
