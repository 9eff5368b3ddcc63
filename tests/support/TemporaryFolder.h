#pragma once

#include "Foundation/FileURL.h"

#include <cstdint>
#include <string>
#include <string_view>

/// A folder for one test, gone at its end. Paths given to it are relative and may hold any bytes; the folders they need
/// are made on the way. Ends the test program if the disk does not play along.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::string& path() const { return m_path; }
    [[nodiscard]] std::string path(std::string_view relative) const { return m_path + '/' + std::string(relative); }
    [[nodiscard]] FileURL url() const { return FileURL(m_path); }
    [[nodiscard]] FileURL url(std::string_view relative) const { return FileURL(path(relative)); }

    /// A file that takes `allocated` bytes of disk, a multiple of 4096.
    void file(std::string_view relative, std::int64_t allocated = 0) const;
    void text(std::string_view relative, std::string_view contents) const;
    void folder(std::string_view relative) const;
    void link(std::string_view relative, const std::string& target) const;
    void fifo(std::string_view relative) const;

    /// A folder with one file, called `file`, in so many folders below `relative` that no system call takes its path,
    /// which is returned.
    [[nodiscard]] std::string deepFolder(std::string_view relative, int levels = 25) const;

private:
    [[nodiscard]] std::string place(std::string_view relative) const;

    std::string m_path;
};
