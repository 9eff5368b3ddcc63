// Every system call of a move: killed before each, each failed in several ways, and races run in between.

#include "Desktop/TrashFixture.h"
#include "Foundation/Descriptor.h"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>

#include <cerrno>
#include <csignal>
#include <tuple>

using namespace trashtest;  // NOLINT(google-build-using-namespace)

namespace {

/// What became of a child process.
struct TracedRun {
    std::vector<int> calls;   ///< The system calls about files that it made; none if nothing can be traced.
    std::optional<int> code;  ///< What it returned, 0 to 125; nothing when it was killed.
};

/// In place of an error: the process is killed before it makes the call.
constexpr int killInstead = -1;

/// Calls that concern memory, threads, time, pipes and who one is, which no disk makes fail: a sanitizer has its own,
/// and looks into memory by way of a pipe.
constexpr std::array others{
#ifdef SYS_pipe
    SYS_pipe,
#endif
    SYS_pipe2,      SYS_brk,    SYS_mmap,      SYS_munmap,        SYS_mprotect,       SYS_mremap,
    SYS_madvise,    SYS_futex,  SYS_getpid,    SYS_clock_gettime, SYS_rt_sigprocmask, SYS_rt_sigaction,
    SYS_geteuid,    SYS_getuid, SYS_getegid,   SYS_getgid,        SYS_gettid,         SYS_tgkill,
    SYS_exit_group, SYS_close,  SYS_getrandom, SYS_sigaltstack,   SYS_sched_yield,    SYS_prlimit64,
};

/// From now on all other calls wait for the holder of the descriptor that is returned; -1 if that is impossible here.
int interceptCalls() {
    std::vector<sock_filter> filter{BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
    for (const int call : others) {
        filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(call), 0, 1));
        filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    }
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_USER_NOTIF));
    const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    return static_cast<int>(syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_NEW_LISTENER, &program));
}

bool isWriteToPipe(pid_t child, const seccomp_data& call) {
    const std::string link = "/proc/" + std::to_string(child) + "/fd/" + std::to_string(call.args[0]);
    std::error_code error;
    return call.nr == SYS_write && std::filesystem::read_symlink(link, error).string().starts_with("pipe:");
}

/// Runs `body` in a child process and asks `errorOf`, before each system call that a disk could make fail, what it is
/// to fail with, 0 if it is to be made. `errorOf` is told how many such calls came before, and runs in this process
/// while the child waits.
TracedRun runTraced(const std::function<int()>& body, const std::function<int(std::size_t)>& errorOf) {
    TracedRun run;
    std::fflush(nullptr);
    // The child's next descriptor has the number that this process's next one has.
    const int number = dup(STDERR_FILENO);
    close(number);
    const pid_t child = fork();
    if (child == 0) {
        if (interceptCalls() != number) {
            _exit(126);
        }
        raise(SIGSTOP);
        _exit(body());
    }
    int status = 0;
    if (waitpid(child, &status, WUNTRACED) == child && WIFSTOPPED(status)) {
        const Descriptor process(static_cast<int>(syscall(SYS_pidfd_open, child, 0)));
        const Descriptor calls(static_cast<int>(syscall(SYS_pidfd_getfd, process.number(), number, 0)));
        kill(child, calls.isOpen() ? SIGCONT : SIGKILL);
        std::array<pollfd, 2> sources{{{calls.number(), POLLIN, 0}, {process.number(), POLLIN, 0}}};
        while (poll(sources.data(), sources.size(), -1) > 0 && sources[1].revents == 0) {
            seccomp_notif request{};
            if (ioctl(calls.number(), SECCOMP_IOCTL_NOTIF_RECV, &request) != 0) {
                continue;
            }
            int error = 0;
            if (!isWriteToPipe(child, request.data)) {
                error = errorOf(run.calls.size());
                run.calls.push_back(request.data.nr);
            }
            if (error == killInstead) {
                kill(child, SIGKILL);
                break;
            }
            const unsigned flags = error == 0 ? SECCOMP_USER_NOTIF_FLAG_CONTINUE : 0;
            seccomp_notif_resp answer{request.id, 0, -error, flags};
            ioctl(calls.number(), SECCOMP_IOCTL_NOTIF_SEND, &answer);
        }
        waitpid(child, &status, 0);
    }
    if (WIFEXITED(status)) {
        run.code = WEXITSTATUS(status);
    }
    return run;
}

/// Moves a file or a folder, on its file system or by copying it from another one.
class TrashInterruption : public TrashTest, public testing::WithParamInterface<std::tuple<bool, bool>> {
protected:
    /// Runs the body with a home and another file system in memory, where nothing is slow.
    void inMemory(const std::function<void()>& body) {
        onFileSystem("tmpfs", disk, [&] {
            ASSERT_EQ(mount("home", home.c_str(), "tmpfs", 0, nullptr), 0);
            calls = run([](std::size_t) { return 0; }).calls;
            if (calls.empty()) {
                impossibleHere();
            }
            ASSERT_TRUE(isMoved());
            body();
        });
    }

    /// Moves the item, as before any move, in a process of its own.
    TracedRun run(const std::function<int(std::size_t)>& errorOf) {
        std::error_code busy;  // What is mounted can only be emptied.
        fs::remove_all(home, busy);
        fs::remove_all(disk, busy);
        fs::create_directories(folder);
        if (isFolder) {
            // A single file finds no Trash yet.
            fs::create_directories(trash / "files");
            fs::create_directories(trash / "info");
            write(item / "one");
            write(item / "sub/two");
            fs::create_directories(item / "sub/empty");
            fs::create_hard_link(item / "one", item / "sub/again");
            fs::create_symlink("one", item / "link");
        } else {
            write(item);
        }
        before = portraitOf(item);
        return runTraced(
            [this] {
                const std::optional<TrashError> error = moveAnew(item);
                return error ? static_cast<int>(*error) + 1 : 0;
            },
            errorOf);
    }

    [[nodiscard]] bool isWholeInPlace() const { return isThere(item) && portraitOf(item) == before; }

    [[nodiscard]] bool isWholeInTrash() const {
        return originsIn(trash).count(item) == 1 && portraitOf(onlyItemIn(trash)) == before;
    }

    [[nodiscard]] bool isMoved() const { return isWholeInTrash() && !isThere(item); }

    const bool isFolder = std::get<0>(GetParam());
    const bool isCopied = std::get<1>(GetParam());
    const fs::path item = (isCopied ? disk : folder) / "item";
    std::string before;
    std::vector<int> calls;  ///< Those of a move that nothing interrupts.
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(FoldersAndCopies, TrashInterruption, testing::Combine(testing::Bool(), testing::Bool()));

TEST_P(TrashInterruption, KilledAtAnyCallNothingIsLostOrHalf) {
    inMemory([this] {
        for (std::size_t kill = 0; kill < calls.size(); ++kill) {
            const TracedRun killed = run([kill](std::size_t call) { return call == kill ? killInstead : 0; });
            if (killed.code) {
                // One that runs later has less to find out.
                EXPECT_GT(kill, calls.size() * 3 / 4);
                break;
            }
            const auto at = testing::Message() << kill << ", call " << killed.calls.back();
            EXPECT_TRUE(isWholeInPlace() || isWholeInTrash()) << at;
            for (const std::string& origin : originsIn(trash)) {
                // A whole note may lie there already; a copy, or a list of sizes, may be unfinished beside.
                EXPECT_TRUE(origin == item || origin == "no item: " + item.string() ||
                            (origin == "litter" && (isCopied || isFolder)))
                    << origin << ' ' << at;
            }
            if (!isWholeInTrash()) {
                EXPECT_EQ(moveAnew(item), std::nullopt) << at;
                EXPECT_TRUE(isMoved()) << at;
            }
            EXPECT_EQ(moveAnew(make("later")), std::nullopt) << at;
            EXPECT_EQ(originsIn(trash).count("litter"), 0U) << at;
        }
    });
}

TEST_P(TrashInterruption, WhicheverCallFailsTheAnswerIsTrue) {
    inMemory([this] {
        for (const int error : {ENOSPC, EIO, EACCES, EXDEV, EINVAL, ENOSYS, EOPNOTSUPP}) {
            // The file system does not know the rename's flag; EXDEV says that no rename leads there.
            const bool isOfFlag = error == EINVAL || error == ENOSYS || error == EOPNOTSUPP;
            for (std::size_t at = 0; at < calls.size(); ++at) {
                if ((isOfFlag || error == EXDEV) && calls[at] != SYS_renameat2) {
                    continue;
                }
                const TracedRun failed = run([at, error](std::size_t call) { return call == at ? error : 0; });
                const auto where = testing::Message() << at << ", call " << calls[at] << ", error " << error;
                ASSERT_TRUE(failed.code) << where;
                const bool isDone = *failed.code == 0;
                EXPECT_TRUE(isDone || !isOfFlag) << where;
                EXPECT_EQ(isWholeInTrash(), isDone) << where;
                EXPECT_TRUE(isDone ? !isThere(item) : isWholeInPlace()) << where;
                EXPECT_EQ(originsIn(trash).size(), isDone ? 1U : 0U) << where;
            }
        }
    });
}

TEST_P(TrashInterruption, WhatIsSwappedOnTheWayIsNotTaken) {
    inMemory([this] {
        // At each rename and each removal from the item's folder another item gets its name.
        for (std::size_t at = 0; at < calls.size(); ++at) {
            if (calls[at] != SYS_renameat2 && calls[at] != SYS_linkat && calls[at] != SYS_fsync) {
                continue;
            }
            const fs::path aside = item.parent_path() / "aside";
            const TracedRun swapped = run([&](std::size_t call) {
                if (call == at && isThere(item)) {
                    fs::rename(item, aside);
                    write(item, "another");
                }
                return 0;
            });
            if (isThere(aside)) {
                EXPECT_NE(swapped.code, 0) << at;
                // What was swapped when the removal had begun is in the Trash already.
                EXPECT_TRUE(portraitOf(aside) == before || isWholeInTrash()) << at;
                EXPECT_EQ(contentOf(item), "another") << at;
                EXPECT_EQ(originsIn(trash).size(), isWholeInTrash() ? 1U : 0U) << at;
            }
        }
    });
}
