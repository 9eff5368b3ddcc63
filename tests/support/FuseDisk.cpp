#include "support/FuseDisk.h"

#include <sys/stat.h>
#include <sys/wait.h>

#include <csignal>
#include <cstdlib>

#ifdef __SANITIZE_THREAD__
#include <dlfcn.h>
#include <sched.h>

#include <cstdarg>

/// Gives a program that Qt starts memory of its own from the first: the sanitizer takes a child that shares its
/// parent's for the parent, and does not see the parent's locks any more.
extern "C" int clone(int (*start)(void*), void* stack, int flags, void* argument, ...) {
    va_list rest;
    va_start(rest, argument);
    void* const descriptor = va_arg(rest, void*);
    va_end(rest);
    static const auto next = reinterpret_cast<decltype(&clone)>(dlsym(RTLD_NEXT, "clone"));
    return next(start, stack, flags & ~(CLONE_VM | CLONE_VFORK), argument, descriptor);
}
#endif

FuseDisk::FuseDisk(std::string folder) : m_folder(std::move(folder)) {
    (void)mkdir(m_folder.c_str(), 0755);
    m_server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_server.start(QStringLiteral(DUSKFERN_FUSE_SERVER), {QString::fromStdString(m_folder)});
    m_isMounted = isConfirmed();  // NOLINT(cppcoreguidelines-prefer-member-initializer): after the server's start
}

FuseDisk::~FuseDisk() {
    signal(SIGCONT);
    m_server.closeWriteChannel();
    m_server.waitForFinished(-1);
}

void FuseDisk::release() {
    signal(SIGCONT);
    tell("release");
}

void FuseDisk::freeze() {
    signal(SIGSTOP);
    waitpid(static_cast<pid_t>(m_server.processId()), nullptr, WUNTRACED);
}

void FuseDisk::signal(int number) {
    if (m_server.processId() > 0) {
        kill(static_cast<pid_t>(m_server.processId()), number);
    }
}

/// Returns when the order is obeyed.
void FuseDisk::tell(const char* order, int value, std::string_view path) {
    m_server.write((std::string(order) + ' ' + std::to_string(value) + ' ' + std::string(path)).c_str());
    if (!isConfirmed()) {
        qFatal("the server of a FUSE disk has ended");
    }
}

/// Waits for the byte that the server sends when it has mounted the disk, and after each order.
bool FuseDisk::isConfirmed() {
    return m_server.waitForReadyRead() && m_server.read(1).size() == 1;
}
