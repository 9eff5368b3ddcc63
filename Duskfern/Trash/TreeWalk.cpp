#include "Trash/TreeWalk.h"

#include "Foundation/OpenPath.h"

#include <dirent.h>
#include <fcntl.h>

#include <cerrno>
#include <memory>
#include <string_view>

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

}  // namespace

Descriptor FolderTree::open(int root, std::uint32_t folder, int flags) const {
    std::size_t length = 0;
    for (std::uint32_t i = folder; i != 0; i = m_folders[i].parent) {
        length += m_folders[i].name.size() + 1;
    }
    std::string path(length == 0 ? 0 : length - 1, '/');
    std::size_t end = path.size();
    for (std::uint32_t i = folder; i != 0; i = m_folders[i].parent) {
        const std::string& name = m_folders[i].name;
        end -= name.size();
        path.replace(end, name.size(), name);
        end -= end > 0 ? 1 : 0;
    }
    return openPathAt(root, path, flags | O_NOFOLLOW);
}

namespace {

/// Reports every entry of one open folder to the visitor.
std::optional<TrashError> walkFolder(DIR* list, std::uint32_t folder, FolderTree& tree, TreeVisitor& visitor,
                                     const std::stop_token& stop) {
    const int directory = dirfd(list);
    std::optional<TrashError> error = visitor.enter(folder, directory);
    while (!error) {
        if (stop.stop_requested()) {
            return TrashError::stopped;
        }
        errno = 0;
        const dirent* const next = readdir(list);
        if (next == nullptr) {
            return errno != 0 ? visitor.unreadable(folder, "", errno) : std::nullopt;
        }
        const std::string_view name = next->d_name;
        if (name == "." || name == "..") {
            continue;
        }
        const std::optional<FileStatus> status = fileStatus(directory, next->d_name);
        if (!status) {
            error = visitor.unreadable(folder, next->d_name, errno);
            continue;
        }
        error =
            status->isMountPoint ? std::optional(TrashError::mounted) : visitor.entry(directory, next->d_name, *status);
        if (!error && status->isFolder()) {
            tree.add(folder, std::string(name));
        }
    }
    return error;
}

}  // namespace

std::optional<TrashError> walkTree(int root, FolderTree& tree, TreeVisitor& visitor, const std::stop_token& stop) {
    for (std::uint32_t folder = 0; folder < tree.size(); ++folder) {
        Descriptor open = tree.open(root, folder, O_RDONLY | O_DIRECTORY);
        const std::unique_ptr<DIR, CloseFolder> list(open.isOpen() ? fdopendir(open.number()) : nullptr);
        std::optional<TrashError> error;
        if (list == nullptr) {
            error = visitor.unreadable(folder, "", errno);
        } else {
            static_cast<void>(open.release());
            error = walkFolder(list.get(), folder, tree, visitor, stop);
        }
        if (error) {
            return error;
        }
    }
    return {};
}
