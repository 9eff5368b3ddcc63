#pragma once

#include "Desktop/PrivateMounts.h"
#include "Trash/FreedesktopTrash.h"
#include "support/TemporaryFolder.h"

#include <grp.h>
#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <QtCore/QRegularExpression>

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <string_view>
#include <vector>

namespace trashtest {

namespace fs = std::filesystem;

using Origins = std::multiset<std::string>;

inline std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Also true of a link that leads nowhere.
inline bool isThere(const fs::path& path) {
    std::error_code hidden;
    return fs::symlink_status(path, hidden).type() != fs::file_type::not_found;
}

/// What lies in a folder; nothing if there is none.
inline std::vector<fs::path> entriesOf(const fs::path& folder) {
    std::error_code missing;
    const fs::directory_iterator entries(folder, missing);
    return {begin(entries), end(entries)};
}

/// Where the note of an item in a Trash folder is.
inline fs::path noteOf(const fs::path& item) {
    return item.parent_path().parent_path() / "info" / (item.filename().string() + ".trashinfo");
}

/// Where a note says that its item came from, "broken" if it is missing or lacks something.
inline std::string originIn(const fs::path& note) {
    static const QRegularExpression whole(QStringLiteral(
        "\\A\\[Trash Info\\]\nPath=(.*)\nDeletionDate=20\\d\\d-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\n\\z"));
    const QRegularExpressionMatch match = whole.match(QString::fromStdString(contentOf(note)));
    return match.hasMatch() ? QByteArray::fromPercentEncoding(match.captured(1).toLatin1()).toStdString() : "broken";
}

/// Where the notes in a Trash folder say that the items came from, as a program that restores them would read it; "no
/// item:" and the path for a note without an item, "litter" for anything else in the Trash but `directorysizes`.
inline Origins originsIn(const fs::path& trash) {
    Origins origins;
    for (const fs::path& each : entriesOf(trash)) {
        if (each.filename() != "files" && each.filename() != "info" && each.filename() != "directorysizes") {
            origins.insert("litter");
        }
    }
    for (const fs::path& item : entriesOf(trash / "files")) {
        origins.insert(originIn(noteOf(item)));
    }
    for (const fs::path& note : entriesOf(trash / "info")) {
        const fs::path item = trash / "files" / note.stem();
        if (noteOf(item) != note || !isThere(item)) {
            origins.insert("no item: " + originIn(note));
        }
    }
    return origins;
}

/// The only item in a Trash folder; empty where there is not exactly one.
inline fs::path onlyItemIn(const fs::path& trash) {
    const std::vector<fs::path> items = entriesOf(trash / "files");
    return items.size() == 1 ? items.front() : fs::path();
}

/// All that tells a tree from another: kinds, modes, owners, times, contents, link targets, the attributes that tests
/// set, who shares an inode with whom, and whether files have holes; a line an entry.
inline std::string portraitOf(const fs::path& path) {
    std::vector<fs::path> all{path};
    if (fs::is_directory(fs::symlink_status(path))) {
        std::copy(fs::recursive_directory_iterator(path), {}, std::back_inserter(all));
    }
    std::sort(all.begin(), all.end());
    const std::hash<std::string> hash;
    std::map<ino_t, std::string> firstNames;
    std::ostringstream text;
    for (const fs::path& each : all) {
        struct stat status {};
        lstat(each.c_str(), &status);
        const std::string name = each.lexically_relative(path).string();
        text << name << ' ' << std::oct << status.st_mode << std::dec << ' ' << status.st_uid << ':' << status.st_gid
             << ' ' << status.st_mtim.tv_sec << '.' << status.st_mtim.tv_nsec;
        for (const char* attribute : {"user.note", "user.empty", "system.posix_acl_access"}) {
            std::string value(256, '\0');
            text << ' ' << lgetxattr(each.c_str(), attribute, value.data(), value.size()) << ':' << hash(value);
        }
        if (S_ISREG(status.st_mode)) {
            text << ' ' << status.st_size << ' ' << hash(contentOf(each)) << ' '
                 << (status.st_blocks * 512 < status.st_size ? "holes" : "") << ' '
                 << firstNames.try_emplace(status.st_ino, name).first->second;
        } else if (S_ISLNK(status.st_mode)) {
            text << " -> " << fs::read_symlink(each).string();
        }
        text << '\n';
    }
    return text.str();
}

/// Makes a file, and the folders it needs.
inline fs::path write(const fs::path& path, std::string_view content = "content") {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
    return path;
}

/// Makes this process, a child of the test, one that the kernel refuses what it refuses an ordinary user. What lies in
/// `own` belongs to that user from then on, unless it is somebody else's already.
inline void becomeOrdinary(const fs::path& own) {
    constexpr uid_t ordinary = 12'345;
    if (geteuid() != 0) {
        // In its namespace it may do anything.
        const __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
        const std::array<__user_cap_data_struct, 2> none{};
        ASSERT_EQ(syscall(SYS_capset, &header, none.data()), 0);
        return;
    }
    const std::string id = std::to_string(ordinary);
    ASSERT_TRUE(runInShell("chown -hR --from=0 " + id + ':' + id + " '" + own.string() + "'"));
    ASSERT_EQ(setgroups(0, nullptr), 0);
    ASSERT_EQ(setresgid(ordinary, ordinary, ordinary), 0);
    ASSERT_EQ(setresuid(ordinary, ordinary, ordinary), 0);
}

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
                                   const std::stop_token& stop = {}) {
        const FileURL url(path.string());
        return mover.move(url, fileStatus(url).value_or(FileStatus()).identity, progress, stop);
    }

    /// The same as another start of the program.
    [[nodiscard]] std::optional<TrashError> moveAnew(const fs::path& path) const {
        const FileURL url(path.string());
        return FreedesktopTrash(trashHome).move(url, fileStatus(url).value_or(FileStatus()).identity);
    }

    /// Tries to move it, and sees that it is told before and after why not, and stays.
    void expectRefused(const fs::path& path, TrashError error) {
        const bool wasThere = isThere(path);
        EXPECT_EQ(mover.refusal(FileURL(path.string())), error) << path;
        EXPECT_EQ(move(path), error) << path;
        EXPECT_EQ(isThere(path), wasThere) << path;
    }

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
