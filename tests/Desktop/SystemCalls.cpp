#include "Desktop/SystemCalls.h"

#include "Foundation/Descriptor.h"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

namespace {

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

/// From now on all other calls of this process wait for what is decided by the holder of the descriptor that is
/// returned; -1 if that is not possible here.
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

}  // namespace

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
