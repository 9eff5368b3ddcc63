#pragma once

#include "JunkCleaner/JunkScanner.h"
#include "support/FakeDesktop.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <ctime>

/// A tree with the folders that a junk scan reads, beside a system on which the test says what is installed.
struct JunkTree {
    JunkTree() { tree.folder("home"); }

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
    UserFolderPaths paths = foldersIn(tree);
    std::shared_ptr<FakeApplications> applications = std::make_shared<FakeApplications>();
};
