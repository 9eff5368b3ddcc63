#pragma once

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <optional>
#include <string>

/// Runs a test's body in a child process that has a mount table of its own, as root or as an ordinary user in a user
/// namespace; what it mounts ends with it. True when no expectation failed in there; nothing where the system lets
/// nobody mount.
inline std::optional<bool> withPrivateMounts(const std::function<void()>& body) {
    constexpr int impossible = 77;
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        const std::string user = std::to_string(geteuid());
        const std::string group = std::to_string(getegid());
        bool ready = unshare(CLONE_NEWNS) == 0;
        if (!ready && unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0) {
            std::ofstream("/proc/self/setgroups") << "deny";
            std::ofstream users("/proc/self/uid_map");
            std::ofstream groups("/proc/self/gid_map");
            ready = (users << user << ' ' << user << " 1").flush().good() &&
                    (groups << group << ' ' << group << " 1").flush().good();
        }
        if (!ready || mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
            _exit(impossible);
        }
        body();
        std::fflush(nullptr);
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    if (WIFEXITED(status) && WEXITSTATUS(status) == impossible) {
        return {};
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// Mounts a FUSE disk whose server, the open descriptor that is returned, reads no request: whoever asks it anything
/// waits until the descriptor is closed. Negative where the system lets nobody.
inline int mountSilentDisk(const std::string& target) {
    const int server = open("/dev/fuse", O_RDWR | O_CLOEXEC);
    const std::string options = "fd=" + std::to_string(server) +
                                ",rootmode=40000,user_id=" + std::to_string(geteuid()) +
                                ",group_id=" + std::to_string(getegid());
    return server >= 0 && mount("silent", target.c_str(), "fuse.sshfs", 0, options.c_str()) == 0 ? server : -1;
}
