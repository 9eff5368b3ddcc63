#include "Desktop/TrashFixture.h"

#include "support/Shortage.h"

#include <grp.h>
#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

namespace trashtest {

namespace {

std::string decoded(const std::string& text) {
    std::string bytes;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%') {
            bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

std::string originIn(const fs::path& note) {
    const std::string text = contentOf(note);
    const size_t path = text.find("\nPath=");
    const size_t date = text.find("\nDeletionDate=20");
    const bool isWhole = text.starts_with("[Trash Info]\n") && path != std::string::npos && date != std::string::npos &&
                         text.size() == date + 34 && text.ends_with('\n');
    return isWhole ? decoded(text.substr(path + 6, text.find('\n', path + 1) - path - 6)) : "broken";
}

std::string attributesOf(const fs::path& path) {
    std::string names(4096, '\0');
    names.resize(static_cast<size_t>(std::max<ssize_t>(0, llistxattr(path.c_str(), names.data(), names.size()))));
    std::map<std::string, std::string> attributes;
    for (size_t at = 0; at < names.size(); at = names.find('\0', at) + 1) {
        const std::string name = names.c_str() + at;
        std::string value(4096, '\0');
        value.resize(static_cast<size_t>(
            std::max<ssize_t>(0, lgetxattr(path.c_str(), name.c_str(), value.data(), value.size()))));
        attributes[name] = value;
    }
    std::string text;
    for (const auto& [name, value] : attributes) {
        text += ' ' + name + '=' + std::to_string(std::hash<std::string>()(value));
    }
    return text;
}

}  // namespace

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool isThere(const fs::path& path) {
    return fs::symlink_status(path).type() != fs::file_type::not_found;
}

Origins originsIn(const fs::path& trash) {
    Origins origins;
    if (!isThere(trash / "files") || !isThere(trash / "info")) {
        return origins;
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(trash)) {
        const std::string name = entry.path().filename().string();
        if (name != "files" && name != "info" && name != "directorysizes") {
            origins.insert("litter");
        }
    }
    for (const fs::directory_entry& item : fs::directory_iterator(trash / "files")) {
        if (!isThere(trash / "info" / (item.path().filename().string() + ".trashinfo"))) {
            origins.insert("broken");
        }
    }
    for (const fs::directory_entry& note : fs::directory_iterator(trash / "info")) {
        const std::string origin = note.path().extension() == ".trashinfo" ? originIn(note.path()) : "litter";
        origins.insert(isThere(trash / "files" / note.path().stem()) ? origin : "no item: " + origin);
    }
    return origins;
}

fs::path onlyItemIn(const fs::path& trash) {
    std::vector<fs::path> items;
    for (const fs::directory_entry& item : fs::directory_iterator(trash / "files")) {
        items.push_back(item.path());
    }
    return items.size() == 1 ? items.front() : fs::path();
}

std::string portraitOf(const fs::path& path) {
    std::vector<fs::path> all{path};
    if (fs::is_directory(fs::symlink_status(path))) {
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path)) {
            all.push_back(entry.path());
        }
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

void onFileSystem(const std::string& kind, const fs::path& place, const std::function<void()>& body) {
    const std::string image = place.string() + ".image";
    const bool isMemory = kind == "tmpfs" || kind == "ramfs";
    if (!isMemory) {
        const std::map<std::string, std::string> makers = {
            {"ext4", "truncate -s 64M $I && mkfs.ext4 -q -F $I"},
            {"xfs", "truncate -s 320M $I && mkfs.xfs -q -f $I"},
            {"btrfs", "truncate -s 160M $I && mkfs.btrfs -q -f $I"},
            {"vfat", "truncate -s 32M $I && mkfs.vfat $I"},
        };
        const std::string command =
            "export PATH=$PATH:/usr/sbin:/sbin; I='" + image + "'; (" + makers.at(kind) + ") >/dev/null 2>&1";
        if (geteuid() != 0 || std::system(command.c_str()) != 0) {  // NOLINT(cert-env33-c)
            GTEST_SKIP() << "no image of kind " << kind << " can be made here";
        }
    }
    fs::create_directories(place);
    inPrivateMounts([&] {
        const std::string command = "mount -o loop '" + image + "' '" + place.string() + "' 2>/dev/null";
        const bool isMounted = isMemory ? mount("memory", place.c_str(), kind.c_str(), 0, nullptr) == 0
                                        : std::system(command.c_str()) == 0;  // NOLINT(cert-env33-c)
        if (!isMounted) {
            impossibleHere();
        }
        if (geteuid() == 0) {
            EXPECT_EQ(chmod(place.c_str(), 0777), 0);
        }
        body();
    });
    fs::remove(image);
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
    const auto give = [](const fs::path& path) {
        struct stat status {};
        if (lstat(path.c_str(), &status) == 0 && status.st_uid != somebodyElse) {
            ASSERT_EQ(lchown(path.c_str(), ordinary, ordinary), 0);
        }
    };
    give(own);
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(own)) {
        give(entry.path());
    }
    ASSERT_EQ(setgroups(0, nullptr), 0);
    ASSERT_EQ(setresgid(ordinary, ordinary, ordinary), 0);
    ASSERT_EQ(setresuid(ordinary, ordinary, ordinary), 0);
}

TrashTest::TrashTest()
    : home(root.path("home")),
      folder(home / "folder"),
      trash(home / ".local/share/Trash"),
      mover({FileURL(home.string()), FileURL((home / ".local/share").string())}) {
    fs::create_directories(folder);
}

FileURL TrashTest::make(const std::string& name, std::string_view content) const {
    std::ofstream(folder / name, std::ios::binary) << content;
    return FileURL((folder / name).string());
}

std::optional<TrashError> TrashTest::moveWithShortWrites(const FileURL& url) {
    std::signal(SIGXFSZ, SIG_IGN);
    const Limit limit(RLIMIT_FSIZE, 20);
    return move(url);
}

std::optional<TrashError> TrashTest::move(const FileURL& url, const Trash::Progress& progress,
                                          const std::stop_token& stop) {
    return mover.move(url, fileStatus(url).value_or(FileStatus()).identity, progress, stop);
}

}  // namespace trashtest
