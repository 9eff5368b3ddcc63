#pragma once

#include "Foundation/Descriptor.h"

#include <string>

/// A unique name for an unfinished file or folder of ours in a Trash folder.
[[nodiscard]] std::string stagingName();

/// A private folder in a Trash, beside `files` and `info`, in which a copy is made. The destructor removes it with its
/// contents; one left behind by a killed program is removed by `removeStaleStaging`.
class StagingFolder {
public:
    /// `trash` is an open folder and must outlive this.
    explicit StagingFolder(int trash) : m_trash(trash) {}
    ~StagingFolder() { remove(); }
    StagingFolder(const StagingFolder&) = delete;
    StagingFolder& operator=(const StagingFolder&) = delete;

    /// Creates the folder. Returns 0 or the error number.
    [[nodiscard]] int make();

    /// The open folder.
    [[nodiscard]] int folder() const { return m_folder.number(); }

private:
    void remove();

    int m_trash;
    std::string m_name;
    Descriptor m_folder;
};

/// Removes unfinished files and folders that killed programs left in the open Trash folder `trash`. Those of running
/// programs are locked and stay, and so does everything with another name.
void removeStaleStaging(int trash);
