#pragma once

#include "Foundation/Descriptor.h"

#include <string>

/// A note of origin that has no name in the Trash yet. It is whole and on the disk before it gets one, so that no half
/// note is ever seen, not even after a power cut.
class TrashNote {
public:
    /// `trash` and `info` are open folders: the Trash and its folder of notes. They outlive this.
    TrashNote(int trash, int info) : m_trash(trash), m_info(info) {}
    ~TrashNote() { dropTemporary(); }
    TrashNote(const TrashNote&) = delete;
    TrashNote& operator=(const TrashNote&) = delete;

    /// Writes the note and syncs it. 0, or the error number with nothing left behind.
    [[nodiscard]] int write(const std::string& text);

    /// Gives it its name among the notes, once. 0, or the error number; EEXIST where the name is taken.
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
    std::string m_temporary;  ///< Its name in the Trash where the file system knows no unnamed files.
};
