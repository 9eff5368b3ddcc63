#include "Trash/TrashInfoFile.h"

#include "Trash/StagingFolder.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <cstdio>

namespace {

constexpr mode_t ownerOnly = 0600;

bool isUnsupported(int number) {
    return number == EINVAL || number == ENOSYS || number == EOPNOTSUPP || number == EPERM;
}

}  // namespace

int TrashInfoFile::fill(int file) const {
    std::size_t done = 0;
    while (done < m_text.size()) {
        const ssize_t count = ::write(file, m_text.data() + done, m_text.size() - done);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return errno;
        }
        done += static_cast<std::size_t>(count);
    }
    return fsync(file) == 0 || errno == EINVAL || errno == ENOSYS ? 0 : errno;
}

int TrashInfoFile::write(const std::string& text) {
    m_text = text;
    m_file.reset(openat(m_info, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, ownerOnly));
    if (m_file.isOpen()) {
        return fill(m_file.number());
    }
    // Old kernels ignore O_TMPFILE's own bit and fail to open the folder for writing.
    return errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL || errno == ENOENT ? writeTemporary() : errno;
}

int TrashInfoFile::writeTemporary() {
    const std::string name = stagingName();
    m_file.reset(openat(m_trash, name.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC | O_NOFOLLOW, ownerOnly));
    if (!m_file.isOpen()) {
        return errno;
    }
    m_temporary = name;
    // `removeStaleStaging` leaves locked files alone.
    static_cast<void>(flock(m_file.number(), LOCK_EX | LOCK_NB));
    const int number = fill(m_file.number());
    if (number != 0) {
        dropTemporary();
    }
    return number;
}

int TrashInfoFile::link(const std::string& name) {
    if (!m_temporary.empty()) {
        return linkTemporary(name);
    }
    const std::string unnamed = "/proc/self/fd/" + std::to_string(m_file.number());
    if (linkat(AT_FDCWD, unnamed.c_str(), m_info, name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
        return 0;
    }
    int number = errno;
    if (number == ENOENT && linkat(m_file.number(), "", m_info, name.c_str(), AT_EMPTY_PATH) == 0) {
        return 0;
    }
    if (number == ENOENT || number == EXDEV || isUnsupported(number)) {
        number = writeTemporary();
        return number == 0 ? linkTemporary(name) : number;
    }
    return number;
}

int TrashInfoFile::linkTemporary(const std::string& name) {
    const char* const from = m_temporary.c_str();
    if (linkat(m_trash, from, m_info, name.c_str(), 0) == 0) {
        dropTemporary();
        return 0;
    }
    if (!isUnsupported(errno)) {
        return errno;
    }
    if (renameat2(m_trash, from, m_info, name.c_str(), RENAME_NOREPLACE) == 0) {
        m_temporary.clear();
        return 0;
    }
    if (!isUnsupported(errno)) {
        return errno;
    }
    // Neither a link nor a rename can take the name only if it is free here, but creating a file can.
    const Descriptor taken(openat(m_info, name.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, ownerOnly));
    if (!taken.isOpen()) {
        return errno;
    }
    if (renameat(m_trash, from, m_info, name.c_str()) != 0) {
        const int number = errno;
        unlinkat(m_info, name.c_str(), 0);
        return number;
    }
    m_temporary.clear();
    return 0;
}

void TrashInfoFile::dropTemporary() {
    if (!m_temporary.empty()) {
        unlinkat(m_trash, m_temporary.c_str(), 0);
        m_temporary.clear();
    }
}
