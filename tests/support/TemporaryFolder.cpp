#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

void check(bool succeeded, const std::string& path) {
    if (!succeeded) {
        std::perror(path.c_str());
        std::abort();
    }
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
    std::string pattern = DUSKFERN_TEST_ROOT "/duskfern-XXXXXX";
    check(mkdtemp(pattern.data()) != nullptr, pattern);
    m_path = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
    if (ignored) {
        // Paths too long for one call, or folders that are closed to us.
        const std::string command = "chmod -R u+rwx '" + m_path + "'; rm -rf '" + m_path + "'";
        (void)!std::system(command.c_str());  // NOLINT
    }
}

void TemporaryFolder::folder(std::string_view relative) const {
    for (size_t end = relative.find('/');; end = relative.find('/', end + 1)) {
        const std::string part = path(relative.substr(0, end));
        check(mkdir(part.c_str(), 0755) == 0 || errno == EEXIST, part);
        if (end == std::string_view::npos) {
            return;
        }
    }
}

void TemporaryFolder::file(std::string_view relative, std::int64_t allocated) const {
    text(relative, "");
    const int descriptor = open(path(relative).c_str(), O_WRONLY | O_CLOEXEC);
    check(descriptor >= 0, path(relative));
    check(allocated == 0 || posix_fallocate(descriptor, 0, allocated) == 0, path(relative));
    close(descriptor);
}

void TemporaryFolder::foldersAbove(std::string_view relative) const {
    const size_t slash = relative.rfind('/');
    if (slash != std::string_view::npos) {
        folder(relative.substr(0, slash));
    }
}

void TemporaryFolder::text(std::string_view relative, std::string_view contents) const {
    foldersAbove(relative);
    std::ofstream stream(path(relative), std::ios::binary);
    stream << contents;
    check(stream.good(), path(relative));
}

void TemporaryFolder::link(std::string_view relative, const std::string& target) const {
    foldersAbove(relative);
    check(symlink(target.c_str(), path(relative).c_str()) == 0, path(relative));
}

void TemporaryFolder::fifo(std::string_view relative) const {
    foldersAbove(relative);
    check(mkfifo(path(relative).c_str(), 0600) == 0, path(relative));
}
