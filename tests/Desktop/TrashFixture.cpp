#include "Desktop/TrashFixture.h"

#include "support/Shortage.h"

#include <grp.h>
#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <QtCore/QByteArrayList>
#include <QtCore/QRegularExpression>

#include <algorithm>
#include <array>
#include <csignal>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

namespace trashtest {

namespace {

std::string originIn(const fs::path& note) {
    static const QRegularExpression whole(QStringLiteral(
        "\\A\\[Trash Info\\]\nPath=(.*)\nDeletionDate=20\\d\\d-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\n\\z"));
    const QRegularExpressionMatch match = whole.match(QString::fromStdString(contentOf(note)));
    return match.hasMatch() ? QByteArray::fromPercentEncoding(match.captured(1).toLatin1()).toStdString() : "broken";
}

/// Gives what `get` fills a buffer with.
template <class Get>
QByteArray filled(const Get& get) {
    QByteArray buffer(4096, '\0');
    buffer.truncate(std::max<ssize_t>(0, get(buffer.data(), static_cast<size_t>(buffer.size()))));
    return buffer;
}

std::string attributesOf(const fs::path& path) {
    QByteArrayList all;
    const QByteArray names = filled([&](char* to, size_t size) { return llistxattr(path.c_str(), to, size); });
    for (const QByteArray& name : names.split('\0')) {
        all.append(name + filled([&](char* to, size_t size) { return lgetxattr(path.c_str(), name, to, size); }));
    }
    std::sort(all.begin(), all.end());
    return all.join(' ').toPercentEncoding().toStdString();
}

}  // namespace

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool isThere(const fs::path& path) {
    std::error_code hidden;
    return fs::symlink_status(path, hidden).type() != fs::file_type::not_found;
}

std::vector<fs::path> entriesOf(const fs::path& folder) {
    std::error_code missing;
    const fs::directory_iterator entries(folder, missing);
    return {begin(entries), end(entries)};
}

fs::path noteOf(const fs::path& item) {
    return item.parent_path().parent_path() / "info" / (item.filename().string() + ".trashinfo");
}

Origins originsIn(const fs::path& trash) {
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

fs::path onlyItemIn(const fs::path& trash) {
    const std::vector<fs::path> items = entriesOf(trash / "files");
    return items.size() == 1 ? items.front() : fs::path();
}

std::string portraitOf(const fs::path& path) {
    std::vector<fs::path> all{path};
    if (fs::is_directory(fs::symlink_status(path))) {
        std::copy(fs::recursive_directory_iterator(path), {}, std::back_inserter(all));
    }
    std::sort(all.begin(), all.end());
    std::map<ino_t, std::string> firstNames;
    std::ostringstream text;
    for (const fs::path& each : all) {
        struct stat status {};
        lstat(each.c_str(), &status);
        const std::string name = each.lexically_relative(path).string();
        text << name << ' ' << std::oct << status.st_mode << std::dec << ' ' << status.st_uid << ':' << status.st_gid
             << ' ' << status.st_mtim.tv_sec << '.' << status.st_mtim.tv_nsec << attributesOf(each);
        if (S_ISREG(status.st_mode)) {
            text << ' ' << status.st_size << ' ' << std::hash<std::string>()(contentOf(each)) << ' '
                 << (status.st_blocks * 512 < status.st_size ? "holes" : "") << ' '
                 << firstNames.try_emplace(status.st_ino, name).first->second;
        } else if (S_ISLNK(status.st_mode)) {
            text << " -> " << fs::read_symlink(each).string();
        }
        text << '\n';
    }
    return text.str();
}

fs::path write(const fs::path& path, std::string_view content) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
    return path;
}

void becomeOrdinary(const fs::path& own) {
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

std::optional<TrashError> TrashTest::move(const fs::path& path, const Trash::Progress& progress,
                                          const std::stop_token& stop) {
    const FileURL url(path.string());
    return mover.move(url, fileStatus(url).value_or(FileStatus()).identity, progress, stop);
}

std::optional<TrashError> TrashTest::moveAnew(const fs::path& path) const {
    const FileURL url(path.string());
    return FreedesktopTrash(trashHome).move(url, fileStatus(url).value_or(FileStatus()).identity);
}

void TrashTest::expectNoHalfWrittenNote(const fs::path& path, const fs::path& itsTrash) {
    std::signal(SIGXFSZ, SIG_IGN);
    {
        const Limit limit(RLIMIT_FSIZE, 20);
        EXPECT_TRUE(move(path));
    }
    EXPECT_EQ(contentOf(path), "content");
    EXPECT_EQ(originsIn(itsTrash), Origins());
}

void TrashTest::expectRefused(const fs::path& path, TrashError error) {
    const bool wasThere = isThere(path);
    EXPECT_EQ(mover.refusal(FileURL(path.string())), error) << path;
    EXPECT_EQ(move(path), error) << path;
    EXPECT_EQ(isThere(path), wasThere) << path;
}

}  // namespace trashtest
