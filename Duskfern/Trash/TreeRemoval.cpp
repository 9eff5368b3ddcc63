#include "Trash/TreeRemoval.h"

#include "Trash/TrashFailure.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace {

/// Removes everything but folders, and makes each folder accessible to its owner.
class TreeEmptier final : public TreeVisitor {
public:
    std::optional<TrashError> enter(std::uint32_t /*folder*/, int /*directory*/) override { return {}; }

    std::optional<TrashError> entry(int directory, const char* name, const FileStatus& status) override {
        if (status.isFolder()) {
            static_cast<void>(!fchmodat(directory, name, S_IRWXU, 0));
        } else {
            unlinkat(directory, name, 0);
        }
        return {};
    }

    std::optional<TrashError> unreadable(std::uint32_t /*folder*/, const char* /*name*/, int /*number*/) override {
        return {};
    }
};

bool removeOnce(int directory, const std::string& name) {
    if (Descriptor root(openat(directory, name.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        root.isOpen()) {
        FolderTree tree;
        TreeEmptier emptier;
        static_cast<void>(walkTree(root.number(), tree, emptier, {}));
        for (std::uint32_t folder = tree.size() - 1; folder > 0; --folder) {
            const Descriptor parent = tree.open(root.number(), tree.parentOf(folder), O_PATH | O_DIRECTORY);
            unlinkat(parent.number(), tree.nameOf(folder).c_str(), AT_REMOVEDIR);
        }
        root.reset();
        return unlinkat(directory, name.c_str(), AT_REMOVEDIR) == 0 || errno == ENOENT;
    }
    return errno == ENOTDIR ? unlinkat(directory, name.c_str(), 0) == 0 : errno == ENOENT;
}

}  // namespace

void removeTree(int directory, const std::string& name) {
    if (!removeOnce(directory, name)) {
        static_cast<void>(removeOnce(directory, name));
    }
}

OriginalRemoval::Result OriginalRemoval::run() {
    const std::optional<FileStatus> now = fileStatus(m_parent, m_name.c_str());
    if (!now || now->identity != m_manifest.root().identity) {
        m_error = TrashError::changedMeanwhile;
        return Result::nothingGone;
    }
    if (pass()) {
        return Result::done;
    }
    if (!m_isAnythingGone) {
        return Result::nothingGone;
    }
    return pass() ? Result::done : Result::partlyGone;
}

bool OriginalRemoval::pass() {
    bool isWhole = true;
    for (std::uint32_t folder = m_manifest.folderCount(); folder > 0; --folder) {
        isWhole = removeFrom(folder - 1) && isWhole;
        if (!isWhole && !m_isAnythingGone) {
            return false;
        }
    }
    return removeEntry(m_parent, m_name, m_manifest.root()) && isWhole;
}

bool OriginalRemoval::removeFrom(std::uint32_t folder) {
    if (m_manifest.firstEntry(folder) == m_manifest.endOfEntries(folder)) {
        return true;
    }
    const Descriptor directory = m_manifest.tree().open(m_item, folder, O_PATH | O_DIRECTORY);
    if (!directory.isOpen()) {
        // The first pass may have removed it already.
        m_error = trashErrorOf(errno, m_item);
        return m_isAnythingGone && errno == ENOENT;
    }
    const std::optional<FileStatus> status = fileStatus(directory.number(), "");
    if (!status || status->identity != m_manifest.folderStatus(folder).identity) {
        m_error = TrashError::changedMeanwhile;
        return false;
    }
    bool isWhole = true;
    for (std::size_t i = m_manifest.firstEntry(folder); i < m_manifest.endOfEntries(folder); ++i) {
        const TreeManifest::Entry& entry = m_manifest.entry(i);
        isWhole = removeEntry(directory.number(), entry.name, entry.status) && isWhole;
        if (!isWhole && !m_isAnythingGone) {
            return false;
        }
    }
    return isWhole;
}

bool OriginalRemoval::removeEntry(int directory, const std::string& name, const FileStatus& expected) {
    const std::optional<FileStatus> now = fileStatus(directory, name.c_str());
    if (!now && errno == ENOENT) {
        return true;
    }
    // Emptying a folder modifies it, so only its identity is compared.
    if (now && (expected.isFolder() ? now->identity != expected.identity : !isUnchanged(expected, *now))) {
        m_error = TrashError::changedMeanwhile;
        return false;
    }
    if (!now || unlinkat(directory, name.c_str(), expected.isFolder() ? AT_REMOVEDIR : 0) != 0) {
        m_error = errno == ENOTEMPTY ? TrashError::changedMeanwhile : trashErrorOf(errno, directory);
        return false;
    }
    m_isAnythingGone = true;
    return true;
}
