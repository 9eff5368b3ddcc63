#include "Trash/StagingFolder.h"

#include "Foundation/FileStatus.h"
#include "Trash/TreeRemoval.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string_view>
#include <vector>

namespace {

constexpr std::string_view prefix = ".duskfern-";

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

bool isLockedByUs(int descriptor) {
    return flock(descriptor, LOCK_EX | LOCK_NB) == 0;
}

}  // namespace

std::string stagingName() {
    static std::atomic<std::uint64_t> count = 0;
    std::uint64_t number = 0;
    if (getrandom(&number, sizeof number, GRND_NONBLOCK) != sizeof number) {
        number = (static_cast<std::uint64_t>(getpid()) << 32U) + ++count;
    }
    std::array<char, 17> digits{};
    std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(number));
    return std::string(prefix) + digits.data();
}

int StagingFolder::make() {
    for (int attempt = 0; attempt < 8; ++attempt) {
        const std::string name = stagingName();
        if (mkdirat(m_trash, name.c_str(), 0700) != 0) {
            if (errno == EEXIST) {
                continue;
            }
            return errno;
        }
        m_name = name;
        m_folder.reset(openat(m_trash, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!m_folder.isOpen()) {
            const int number = errno;
            remove();
            return number;
        }
        static_cast<void>(isLockedByUs(m_folder.number()));
        // Another program may have removed it as stale before it was locked.
        if (fileStatus(m_trash, name.c_str())) {
            return 0;
        }
        if (errno != ENOENT) {
            const int number = errno;
            remove();
            return number;
        }
        m_name.clear();
    }
    return EEXIST;
}

void StagingFolder::remove() {
    if (!m_name.empty()) {
        removeTree(m_trash, m_name);
        m_name.clear();
    }
}

void removeStaleStaging(int trash) {
    const int list = openat(trash, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, CloseFolder> folder(list >= 0 ? fdopendir(list) : nullptr);
    if (folder == nullptr) {
        return;
    }
    std::vector<std::string> names;
    while (const dirent* const entry = readdir(folder.get())) {
        const std::string_view name = entry->d_name;
        if (name.starts_with(prefix) && name.size() == prefix.size() + 16) {
            names.emplace_back(name);
        }
    }
    for (const std::string& name : names) {
        const Descriptor leftover(openat(trash, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        const std::optional<FileStatus> status = leftover.isOpen() ? fileStatus(leftover.number(), "") : std::nullopt;
        if (status && (status->isFolder() || status->isRegularFile()) && isLockedByUs(leftover.number())) {
            removeTree(trash, name);
        }
    }
}
