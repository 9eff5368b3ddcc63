#pragma once

#include "Desktop/UserFolders.h"
#include "JunkCleaner/JunkScanner.h"
#include "support/FakeDesktop.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <ctime>

/// A tree with the folders that a junk scan reads, beside a system on which the test says what is installed.
struct JunkTree {
    JunkTree() {
        tree.folder("home");
        paths.home = tree.url("home");
        paths.systemRoot = tree.url("system");
        paths.cacheHome = tree.url("home/.cache");
        paths.stateHome = tree.url("home/.local/state");
        paths.dataHome = tree.url("home/.local/share");
        paths.configHome = tree.url("home/.config");
        paths.temporary = tree.url("tmp");
    }

    /// Has something been changed last this many seconds ago.
    void age(std::string_view relative, std::time_t seconds) const {
        const timespec time{std::time(nullptr) - seconds, 0};
        const timespec times[] = {time, time};
        ASSERT_EQ(utimensat(AT_FDCWD, tree.path(relative).c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
    }

    /// As a program and as a Flatpak.
    void install(std::initializer_list<const char*> programs) const {
        for (const char* const program : programs) {
            applications->installed.programs.push_back(QString::fromUtf8(program));
            applications->installed.identifiers.insert(program);
        }
    }

    [[nodiscard]] std::vector<JunkItem> scan() const {
        return JunkScanner::scan(junkPlaces(paths), applications, {}).items;
    }
    [[nodiscard]] std::string placeOf(const JunkItem& item) const {
        return item.url.path().substr(tree.path().size() + 1);
    }

    static constexpr std::time_t day = 86400;
    TemporaryFolder tree;
    UserFolderPaths paths;
    std::shared_ptr<FakeApplications> applications = std::make_shared<FakeApplications>();
};
