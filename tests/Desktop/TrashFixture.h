#pragma once

#include "Desktop/PrivateMounts.h"
#include "Trash/FreedesktopTrash.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <string_view>

namespace trashtest {

namespace fs = std::filesystem;

using Origins = std::multiset<std::string>;

[[nodiscard]] std::string contentOf(const fs::path& path);

/// Also true of a link that leads nowhere.
[[nodiscard]] bool isThere(const fs::path& path);

/// Where the notes in a Trash folder say that the items came from, as a program that restores them would read it. An
/// item without a note and a note that lacks something count as "broken", a note without an item as "no item:" and the
/// path, anything else in the Trash but `directorysizes` as "litter".
[[nodiscard]] Origins originsIn(const fs::path& trash);

/// The only item in a Trash folder; empty where there is not exactly one.
[[nodiscard]] fs::path onlyItemIn(const fs::path& trash);

/// All that tells a tree from another: kinds, modes, owners, times, contents, link targets, extended attributes, who
/// shares an inode with whom, and whether files have holes; a line an entry.
[[nodiscard]] std::string portraitOf(const fs::path& path);

/// Whether a file system of this kind can be made in an image and mounted; `body` runs with it mounted at `place`, in a
/// mount table of its own. Skips the test, with a word, where that is not possible.
void onFileSystem(const std::string& kind, const fs::path& place, const std::function<void()>& body);

/// Makes this process, a child of the test, one that the kernel refuses what it refuses an ordinary user. What lies in
/// `own` belongs to that user from then on, unless it is somebody else's already.
void becomeOrdinary(const fs::path& own);

/// Whose things a test run by root makes that are neither root's nor the ordinary user's.
inline constexpr unsigned somebodyElse = 23'456;

/// A home with a Trash of its own, as empty as on the first day, and a folder to put things in.
class TrashTest : public testing::Test {
protected:
    TrashTest();

    /// Makes a file, and says where.
    FileURL make(const std::string& name, std::string_view content = "content") const;

    /// Moves what lies at `url` now.
    std::optional<TrashError> move(const FileURL& url, const Trash::Progress& progress = {},
                                   const std::stop_token& stop = {});
    std::optional<TrashError> move(const fs::path& path) { return move(FileURL(path.string())); }

    /// Moves while no file can grow beyond its first bytes.
    std::optional<TrashError> moveWithShortWrites(const FileURL& url);

    TemporaryFolder root;
    fs::path home;
    fs::path folder;
    fs::path trash;
    FreedesktopTrash mover;
};

}  // namespace trashtest
