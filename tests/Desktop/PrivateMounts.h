#pragma once

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

/// Ends the body of `inPrivateMounts` with a word that this system does not allow it.
[[noreturn]] inline void impossibleHere() {
    _exit(77);
}

/// Runs a command in a shell; whether it succeeds.
inline bool runInShell(const std::string& command) {
    return std::system(command.c_str()) == 0;  // NOLINT(cert-env33-c)
}

/// Runs a test's body in a child process that has a mount table of its own, as root or as an ordinary user in a user
/// namespace; what it mounts ends with it. Skips the test where the system lets nobody do that.
inline void inPrivateMounts(const std::function<void()>& body) {
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        const uid_t user = geteuid();
        const gid_t group = getegid();
        bool isPrivate = unshare(CLONE_NEWNS) == 0;
        if (!isPrivate && unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0) {
            std::ofstream("/proc/self/setgroups") << "deny";
            std::ofstream("/proc/self/uid_map") << user << ' ' << user << " 1";
            std::ofstream("/proc/self/gid_map") << group << ' ' << group << " 1";
            isPrivate = geteuid() == user && getegid() == group;
        }
        if (!isPrivate || mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
            impossibleHere();
        }
        body();
        std::fflush(nullptr);
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 77) {
        GTEST_SKIP() << "nobody may mount that here";
    }
    EXPECT_EQ(status, 0) << "see above";
}

/// The same with a file system of this kind at `place`, open to everybody: in memory, or in an image that is made with
/// these options.
inline void onFileSystem(const std::string& kind, const std::filesystem::path& place, const std::function<void()>& body,
                         const std::string& options = {}) {
    const std::string image = place.string() + ".image";
    std::filesystem::create_directories(place);
    inPrivateMounts([&] {
        const std::string make = "PATH=$PATH:/usr/sbin:/sbin; I='" + image + "'; (truncate -s 320M $I && mkfs." + kind +
                                 ' ' + options + " $I && mount -o loop $I '" + place.string() + "') >/dev/null 2>&1";
        const bool isMounted = kind == "tmpfs" || kind == "ramfs"
                                   ? mount("memory", place.c_str(), kind.c_str(), 0, nullptr) == 0
                                   : geteuid() == 0 && runInShell(make);
        if (!isMounted) {
            impossibleHere();
        }
        std::error_code keepsNone;
        std::filesystem::permissions(place, std::filesystem::perms::all, keepsNone);
        body();
    });
    std::filesystem::remove(image);
}
