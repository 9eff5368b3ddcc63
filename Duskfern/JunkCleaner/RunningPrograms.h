#pragma once

#include "Foundation/FileURL.h"
#include "Foundation/NameSet.h"

#include <optional>
#include <string_view>
#include <vector>

/// The programs that the user runs.
class RunningPrograms {
public:
    /// The user's processes in /proc: the names of their programs, scripts and main classes, and the identifiers of
    /// Flatpaks and snaps. Ignores case. None if not all could be read for lack of descriptors or memory. Blocks as
    /// long as the kernel does.
    [[nodiscard]] static std::optional<RunningPrograms> read(const FileURL& proc);

    /// Whether a program runs whose name, or folder of data, is `name`.
    [[nodiscard]] bool runs(std::string_view name) const;

    /// Whether a process with that number runs, whoever's.
    [[nodiscard]] bool hasProcess(int number) const;

private:
    NameSet m_names;
    std::vector<int> m_numbers;  ///< Ascending.
};

/// The process numbers in the locks that programs leave in an open folder while they run; 0 for a lock without one, or
/// one that could not be read for lack of descriptors or memory.
[[nodiscard]] std::vector<int> lockOwners(int folder);

/// The process number at the beginning of a small file, likewise; nothing if there is none.
[[nodiscard]] std::vector<int> lockOwner(const FileURL& file);
