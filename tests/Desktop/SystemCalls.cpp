#include "Desktop/SystemCalls.h"

#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

#ifdef __x86_64__

namespace {

/// What the child calls before and after the body; nothing else does.
constexpr long marker = SYS_getpgid;

/// Lets the child run on until its next stop at a system call. False when it has ended.
bool next(pid_t child, int& status) {
    for (int signal = 0;;) {
        if (ptrace(PTRACE_SYSCALL, child, nullptr, signal) != 0 || waitpid(child, &status, 0) != child ||
            !WIFSTOPPED(status)) {
            return false;
        }
        if (WSTOPSIG(status) == (SIGTRAP | 0x80)) {
            return true;
        }
        signal = WSTOPSIG(status) == SIGTRAP ? 0 : WSTOPSIG(status);
    }
}

/// Has the kernel refuse the call that the child is about to make.
void failCall(pid_t child, int error, int& status) {
    user_regs_struct registers{};
    ptrace(PTRACE_GETREGS, child, nullptr, &registers);
    registers.orig_rax = static_cast<unsigned long long>(-1);
    ptrace(PTRACE_SETREGS, child, nullptr, &registers);
    if (next(child, status)) {
        ptrace(PTRACE_GETREGS, child, nullptr, &registers);
        registers.rax = static_cast<unsigned long long>(-error);
        ptrace(PTRACE_SETREGS, child, nullptr, &registers);
    }
}

/// Whether a disk could make the call fail. Those of memory, threads, time, pipes and who one is are left alone: a
/// sanitizer has its own, and looks into memory by way of a pipe.
bool concernsFiles(pid_t child, const user_regs_struct& registers) {
    constexpr std::array others{SYS_brk,     SYS_mmap,   SYS_munmap,        SYS_mprotect,       SYS_mremap,
                                SYS_madvise, SYS_futex,  SYS_clock_gettime, SYS_rt_sigprocmask, SYS_rt_sigaction,
                                SYS_geteuid, SYS_getuid, SYS_getegid,       SYS_getgid,         SYS_getpid,
                                SYS_gettid,  SYS_tgkill, SYS_exit_group,    SYS_close,          SYS_getrandom,
                                SYS_pipe,    SYS_pipe2};
    const auto call = static_cast<long>(registers.orig_rax);
    if (call == SYS_write) {
        const std::string link = "/proc/" + std::to_string(child) + "/fd/" + std::to_string(registers.rdi);
        std::error_code error;
        return !std::filesystem::read_symlink(link, error).string().starts_with("pipe:");
    }
    return std::find(others.begin(), others.end(), call) == others.end();
}

}  // namespace

bool canTraceSystemCalls() {
    const TracedRun run = runTraced([] { return dup(-1) == -1 ? errno : 1; },
                                    [](std::size_t, long call) {
                                        return Interruption{false, call == SYS_dup ? 7 : 0};
                                    });
    return run.code == 7;
}

TracedRun runTraced(const std::function<int()>& body, const std::function<Interruption(std::size_t, long)>& decide) {
    TracedRun run;
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
            _exit(126);
        }
        raise(SIGSTOP);
        syscall(marker, 0);
        const int code = body();
        syscall(marker, 0);
        _exit(code);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFSTOPPED(status)) {
        ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
        bool isInside = false;
        while (next(child, status)) {
            user_regs_struct registers{};
            ptrace(PTRACE_GETREGS, child, nullptr, &registers);
            const auto call = static_cast<long>(registers.orig_rax);
            if (call == marker) {
                isInside = !isInside;
            } else if (isInside && concernsFiles(child, registers)) {
                const Interruption interruption = decide(run.calls.size(), call);
                run.calls.push_back(call);
                if (interruption.isKill) {
                    kill(child, SIGKILL);
                } else if (interruption.error != 0) {
                    failCall(child, interruption.error, status);
                    continue;
                }
            }
            if (!next(child, status)) {
                break;
            }
        }
    }
    while (!WIFEXITED(status) && !WIFSIGNALED(status) && waitpid(child, &status, 0) == child) {
    }
    if (WIFEXITED(status)) {
        run.code = WEXITSTATUS(status);
    }
    return run;
}

#else

bool canTraceSystemCalls() {
    return false;
}

TracedRun runTraced(const std::function<int()>& body, const std::function<Interruption(std::size_t, long)>& decide) {
    static_cast<void>(decide);
    return {{}, body()};
}

#endif
