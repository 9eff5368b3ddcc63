#include "Trash/TreeManifest.h"

#include "Foundation/CheckedSum.h"
#include "Trash/FileContents.h"
#include "Trash/TrashFailure.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <set>

/// Collects the entries, and returns an error for what cannot be copied or removed.
class TreeManifest::Reader final : public TreeVisitor {
public:
    explicit Reader(TreeManifest& manifest) : m_manifest(manifest) {}

    std::optional<TrashError> enter(std::uint32_t folder, int directory) override {
        m_manifest.m_first.push_back(m_manifest.m_entries.size());
        m_folder = m_manifest.folderStatus(folder);
        m_mayRemove = faccessat(directory, ".", W_OK | X_OK, AT_EACCESS) == 0;
        return {};
    }

    std::optional<TrashError> entry(int directory, const char* name, const FileStatus& status) override {
        if (status.isProtected || m_folder.isProtected) {
            return TrashError::isProtected;
        }
        const uid_t user = geteuid();
        const bool isSticky = (m_folder.mode & S_ISVTX) != 0 && user != m_folder.owner && user != status.owner;
        if (!m_mayRemove || (isSticky && user != 0)) {
            return TrashError::closedInside;
        }
        if (const std::optional<TrashError> error = count(directory, name, status)) {
            return error;
        }
        if (status.isFolder()) {
            m_manifest.m_entryOf.push_back(m_manifest.m_entries.size());
        }
        m_manifest.m_entries.push_back({name, status});
        return {};
    }

    std::optional<TrashError> unreadable(std::uint32_t folder, const char* /*name*/, int number) override {
        const TrashError error = trashErrorOf(number, -1);
        if (error == TrashError::gone) {
            return TrashError::changedMeanwhile;
        }
        return error == TrashError::noPermission && folder < m_manifest.m_tree.size() ? TrashError::closedInside
                                                                                      : error;
    }

    /// Adds the size of an entry, and checks that it can be copied.
    std::optional<TrashError> count(int directory, const char* name, const FileStatus& status) {
        if ((S_ISCHR(status.mode) || S_ISBLK(status.mode)) && geteuid() != 0) {
            return TrashError::special;
        }
        if (!status.isRegularFile()) {
            return {};
        }
        if (faccessat(directory, name, R_OK, AT_EACCESS) != 0) {
            return TrashError::closedInside;
        }
        if (status.links > 1 && !m_linked.insert({status.identity.device, status.identity.inode}).second) {
            return {};
        }
        std::int64_t bytes = status.length;
        if (status.allocated.value_or(0) < status.length) {
            const Descriptor file(openat(directory, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
            bytes = file.isOpen() ? dataBytes(file.number(), status.length) : status.length;
        }
        m_manifest.m_bytes = checkedSum(m_manifest.m_bytes, bytes);
        return {};
    }

private:
    TreeManifest& m_manifest;
    FileStatus m_folder;
    bool m_mayRemove = false;
    std::set<std::pair<std::uint64_t, std::uint64_t>> m_linked;
};

std::optional<TrashError> TreeManifest::read(int parent, const std::string& name, int item,
                                             const std::stop_token& stop) {
    const std::optional<FileStatus> root = fileStatus(item, "");
    if (!root) {
        return trashErrorOf(errno, item);
    }
    m_root = *root;
    m_entryOf.assign(1, 0);
    Reader reader(*this);
    return m_root.isFolder() ? walkTree(item, m_tree, reader, stop) : reader.count(parent, name.c_str(), m_root);
}

bool isUnchanged(const FileStatus& before, const FileStatus& now) {
    const bool isSame = before.identity == now.identity && before.mode == now.mode && before.owner == now.owner &&
                        before.modifiedSeconds == now.modifiedSeconds &&
                        before.modifiedNanoseconds == now.modifiedNanoseconds &&
                        (before.isFolder() || before.length == now.length);
    return isSame && (before.links > 1 || (before.changedSeconds == now.changedSeconds &&
                                           before.changedNanoseconds == now.changedNanoseconds));
}
