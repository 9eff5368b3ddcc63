#include "support/FuseDisk.h"

#include <spawn.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

FuseDisk::FuseDisk(std::string folder) : m_folder(std::move(folder)) {
    (void)mkdir(m_folder.c_str(), 0755);
    start();
    char answer = 0;
    m_isMounted = m_server > 0 && read(m_control.number(), &answer, 1) == 1;
}

/// Starts the server, which sends a byte when the disk is mounted and ends when it cannot be.
void FuseDisk::start() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return;
    }
    m_control.reset(ends[0]);
    const Descriptor other(ends[1]);
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, other.number(), STDIN_FILENO);
    std::string program = DUSKFERN_FUSE_SERVER;
    const std::array<char*, 3> arguments{program.data(), m_folder.data(), nullptr};
    if (posix_spawn(&m_server, program.c_str(), &actions, nullptr, arguments.data(), environ) != 0) {
        m_server = -1;
    }
    posix_spawn_file_actions_destroy(&actions);
}

FuseDisk::~FuseDisk() {
    for (const std::string& part : m_parts) {
        umount2(part.c_str(), MNT_DETACH);
    }
    m_control.reset();
    if (m_server > 0) {
        kill(m_server, SIGCONT);
        waitpid(m_server, nullptr, 0);
    }
}

bool FuseDisk::mountPart(std::string_view relative, const std::string& folder) {
    (void)mkdir(folder.c_str(), 0755);
    const bool isMountedToo = mount(path(relative).c_str(), folder.c_str(), nullptr, MS_BIND, nullptr) == 0;
    if (isMountedToo) {
        m_parts.push_back(folder);
    }
    return isMountedToo;
}

void FuseDisk::release() {
    kill(m_server, SIGCONT);
    tell(Order::Kind::release);
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes what the disk does
void FuseDisk::freeze() {
    kill(m_server, SIGSTOP);
    waitpid(m_server, nullptr, WUNTRACED);
}

/// Returns when the order is obeyed.
void FuseDisk::tell(Order::Kind kind, int value, std::string_view path) {
    const Order order{kind, value};
    std::string message(sizeof order, '\0');
    std::memcpy(message.data(), &order, sizeof order);
    message += path;
    char answer = 0;
    if (write(m_control.number(), message.data(), message.size()) < 0 || read(m_control.number(), &answer, 1) != 1) {
        std::fputs("the server of a FUSE disk has ended\n", stderr);
        std::abort();
    }
}
