#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

void check(bool succeeded, const std::string& path) {
    if (!succeeded) {
        std::perror(path.c_str());
        std::abort();
    }
}

}  // namespace

TemporaryFolder::TemporaryFolder() : m_path(DUSKFERN_TEST_ROOT "/duskfern-XXXXXX") {
    check(mkdtemp(m_path.data()) != nullptr, m_path);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code failure;
    fs::remove_all(m_path, failure);
    if (failure) {
        // Paths too long for one call, or folders that are closed to us.
        const std::string command = "chmod -R u+rwx '" + m_path + "'; rm -rf '" + m_path + "'";
        (void)!std::system(command.c_str());  // NOLINT
    }
}

std::string TemporaryFolder::place(std::string_view relative) const {
    fs::create_directories(fs::path(path(relative)).parent_path());
    return path(relative);
}

void TemporaryFolder::folder(std::string_view relative) const {
    fs::create_directories(path(relative));
}

void TemporaryFolder::file(std::string_view relative, std::int64_t allocated) const {
    const std::string path = place(relative);
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    check(descriptor >= 0 && (allocated == 0 || posix_fallocate(descriptor, 0, allocated) == 0), path);
    close(descriptor);
}

void TemporaryFolder::text(std::string_view relative, std::string_view contents) const {
    std::ofstream stream(place(relative), std::ios::binary);
    check((stream << contents).flush().good(), path(relative));
}

void TemporaryFolder::link(std::string_view relative, const std::string& target) const {
    check(symlink(target.c_str(), place(relative).c_str()) == 0, path(relative));
}

void TemporaryFolder::fifo(std::string_view relative) const {
    check(mkfifo(place(relative).c_str(), 0600) == 0, path(relative));
}

std::string TemporaryFolder::deepFolder(std::string_view relative, int levels) const {
    folder(relative);
    std::string path = this->path(relative);
    const std::string name(200, 'd');
    int at = open(path.c_str(), O_PATH | O_CLOEXEC);
    for (int level = 0; level < levels; ++level) {
        check(mkdirat(at, name.c_str(), 0755) == 0, path);
        const int below = openat(at, name.c_str(), O_PATH | O_CLOEXEC);
        close(at);
        at = below;
        path += '/' + name;
    }
    close(openat(at, "file", O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
    close(at);
    return path;
}
