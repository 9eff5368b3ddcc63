#include "Trash/TrashRules.h"

#include "Foundation/CheckedSum.h"
#include "Foundation/OpenPath.h"
#include "Trash/TrashFailure.h"
#include "Trash/TreeWalk.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace {

/// An existing folder that must not be moved: its real path, and its identity.
struct Place {
    std::string path;
    FileIdentity identity;
    std::string named;  ///< The given path, which may contain links.
};

std::optional<Place> placeOf(const FileURL& url) {
    const Descriptor folder = openPath(url, O_PATH | O_DIRECTORY);
    const std::optional<FileStatus> status = folder.isOpen() ? fileStatus(folder.number(), "") : std::nullopt;
    if (!status) {
        return {};
    }
    return Place{pathOfOpen(folder.number()).value_or(url.path()), status->identity, url.path()};
}

bool isOrHolds(const TrashItem& item, const Place& place) {
    return item.status.identity == place.identity || isAtOrBelow(place.path, item.path) ||
           isAtOrBelow(place.named, item.path);
}

bool isOfTrash(const TrashItem& item, const FileURL& trash) {
    const std::optional<Place> place = placeOf(trash);
    if (!place) {
        return false;
    }
    if (isOrHolds(item, *place) || isAtOrBelow(item.path, place->path)) {
        return true;
    }
    // Through a bind mount, for instance, items in the Trash have another path.
    const FileIdentity& parent = item.parentStatus.identity;
    const auto isParent = [&](const char* folder) {
        const std::optional<Place> inner = placeOf(trash.appendingPathComponent(folder));
        return inner && inner->identity == parent;
    };
    return place->identity == parent || isParent("files") || isParent("info");
}

/// Whether the path is that of a Trash at the top of a file system, or of something in it.
bool isOfVolumeTrash(const TrashItem& item, const std::vector<Mount>& mounts) {
    const std::string& path = item.path;
    for (std::size_t at = path.find("/.Trash"); at != std::string::npos; at = path.find("/.Trash", at + 1)) {
        const std::size_t end = std::min(path.find('/', at + 1), path.size());
        const std::string_view name = std::string_view(path).substr(at + 1, end - at - 1);
        const bool isTrashName =
            name == ".Trash" || (name.starts_with(".Trash-") && name.size() > 7 &&
                                 name.find_first_not_of("0123456789", 7) == std::string_view::npos);
        const std::string top = at == 0 ? "/" : path.substr(0, at);
        if (isTrashName &&
            std::any_of(mounts.begin(), mounts.end(), [&](const Mount& mount) { return mount.target == top; })) {
            return true;
        }
    }
    return false;
}

bool holdsMount(const TrashItem& item, const std::vector<Mount>& mounts) {
    return std::any_of(mounts.begin(), mounts.end(),
                       [&](const Mount& mount) { return isAtOrBelow(mount.target, item.path); });
}

std::optional<TrashError> removalRefusal(const TrashItem& item) {
    const uid_t user = geteuid();
    const FileStatus& parent = item.parentStatus;
    if (faccessat(item.parent.number(), ".", W_OK | X_OK, AT_EACCESS) != 0) {
        return trashErrorOf(errno, item.parent.number());
    }
    if (item.status.isProtected || parent.isProtected) {
        return TrashError::isProtected;
    }
    if (user == 0) {
        return {};
    }
    if ((parent.mode & S_ISVTX) != 0 && user != parent.owner && user != item.status.owner) {
        return TrashError::foreign;
    }
    // Moving a folder to another parent rewrites its ".." entry. The owner can change the mode to allow that.
    if (item.status.isFolder() && user != item.status.owner &&
        faccessat(item.parent.number(), item.name.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
        return errno == EACCES ? TrashError::cannotBeEmptied : trashErrorOf(errno, item.parent.number());
    }
    return {};
}

class Surveyor final : public TreeVisitor {
public:
    Surveyor(const FileStatus& root, FolderSurvey& survey) : m_user(geteuid()), m_survey(survey) {
        m_owners.push_back(root.owner);
    }

    std::optional<TrashError> enter(std::uint32_t folder, int directory) override {
        const std::optional<FileStatus> status = fileStatus(directory, "");
        const bool isOwn = m_user == 0 || m_owners[folder] == m_user;
        m_mayEmpty = isOwn || faccessat(directory, ".", W_OK | X_OK, AT_EACCESS) == 0;
        m_isStickyOfOthers = !isOwn && status && (status->mode & S_ISVTX) != 0;
        return {};
    }

    std::optional<TrashError> entry(int /*directory*/, const char* /*name*/, const FileStatus& status) override {
        if (!m_mayEmpty || (m_isStickyOfOthers && status.owner != m_user)) {
            return TrashError::cannotBeEmptied;
        }
        if (status.isProtected) {
            return TrashError::isProtected;
        }
        if (status.isFolder()) {
            m_owners.push_back(status.owner);
        }
        m_survey.allocated = checkedSum(m_survey.allocated, status.allocated.value_or(0));
        return {};
    }

    std::optional<TrashError> unreadable(std::uint32_t folder, const char* /*name*/, int number) override {
        if (number == EMFILE || number == ENFILE) {
            return TrashError::tooManyOpen;
        }
        // The owner can make a folder readable; another user's unreadable folder may contain anything.
        const bool isOwn = m_user == 0 || m_owners[folder] == m_user;
        return isOwn || number != EACCES ? std::nullopt : std::optional(TrashError::cannotBeEmptied);
    }

private:
    uid_t m_user;
    FolderSurvey& m_survey;
    std::vector<std::uint32_t> m_owners;  ///< By folder.
    bool m_mayEmpty = true;
    bool m_isStickyOfOthers = false;
};

}  // namespace

std::optional<TrashError> refusalReason(const TrashItem& item, const TrashHome& home,
                                        const std::vector<Mount>& mounts) {
    const std::optional<Place> place = placeOf(home.home);
    if (place && isOrHolds(item, *place)) {
        return TrashError::holdsHome;
    }
    if (isOfTrash(item, home.trash()) || isOfTrash(item, home.home.appendingPathComponent(".local/share/Trash")) ||
        isOfVolumeTrash(item, mounts)) {
        return TrashError::ofTrash;
    }
    if (item.status.isMountPoint || holdsMount(item, mounts)) {
        return TrashError::mounted;
    }
    return removalRefusal(item);
}

std::optional<TrashError> surveyFolder(const TrashItem& item, FolderSurvey& survey, const std::stop_token& stop) {
    survey.allocated = item.status.allocated.value_or(0);
    FolderTree tree;
    Surveyor surveyor(item.status, survey);
    return walkTree(item.item.number(), tree, surveyor, stop);
}
