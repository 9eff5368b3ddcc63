#pragma once

#include "Desktop/PrivateMounts.h"
#include "Trash/FreedesktopTrash.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace trashtest {

namespace fs = std::filesystem;

using Origins = std::multiset<std::string>;

[[nodiscard]] std::string contentOf(const fs::path& path);

/// Also true of a link that leads nowhere.
[[nodiscard]] bool isThere(const fs::path& path);

/// What lies in a folder; nothing if there is none.
[[nodiscard]] std::vector<fs::path> entriesOf(const fs::path& folder);

/// Where the note of an item in a Trash folder is.
[[nodiscard]] fs::path noteOf(const fs::path& item);

/// Where the notes in a Trash folder say that the items came from, as a program that restores them would read it:
/// "broken" for a missing note or one that lacks something, "no item:" and the path for a note without an item,
/// "litter" for anything else in the Trash but `directorysizes`.
[[nodiscard]] Origins originsIn(const fs::path& trash);

/// The only item in a Trash folder; empty where there is not exactly one.
[[nodiscard]] fs::path onlyItemIn(const fs::path& trash);

/// All that tells a tree from another: kinds, modes, owners, times, contents, link targets, extended attributes, who
/// shares an inode with whom, and whether files have holes; a line an entry.
[[nodiscard]] std::string portraitOf(const fs::path& path);

/// Makes a file, and the folders it needs.
fs::path write(const fs::path& path, std::string_view content = "content");

/// Makes this process, a child of the test, one that the kernel refuses what it refuses an ordinary user. What lies in
/// `own` belongs to that user from then on, unless it is somebody else's already.
void becomeOrdinary(const fs::path& own);

/// Whose things a test run by root makes that are neither root's nor the ordinary user's.
inline constexpr unsigned somebodyElse = 23'456;

/// A home with a Trash of its own, as empty as on the first day, a folder to put things in, and a place for a disk.
class TrashTest : public testing::Test {
protected:
    TrashTest() { fs::create_directories(folder); }

    /// Makes a file in the folder.
    fs::path make(const std::string& name, std::string_view content = "content") const {
        return write(folder / name, content);
    }

    /// Moves what lies there now.
    std::optional<TrashError> move(const fs::path& path, const Trash::Progress& progress = {},
                                   const std::stop_token& stop = {});

    /// The same as another start of the program.
    [[nodiscard]] std::optional<TrashError> moveAnew(const fs::path& path) const;

    /// Tries to move it while no file can grow beyond its first bytes, and sees that it stays, without a note.
    void expectNoHalfWrittenNote(const fs::path& path, const fs::path& itsTrash);

    /// Tries to move it, and sees that it is told before and after why not, and stays.
    void expectRefused(const fs::path& path, TrashError error);

    TemporaryFolder root;
    const fs::path home = root.path("home");
    const fs::path folder = home / "folder";
    const fs::path trash = home / ".local/share/Trash";
    const fs::path disk = root.path("disk");
    const fs::path diskTrash = disk / (".Trash-" + std::to_string(geteuid()));
    const TrashHome trashHome{FileURL(home.string()), FileURL((home / ".local/share").string())};
    FreedesktopTrash mover{trashHome};
};

}  // namespace trashtest
