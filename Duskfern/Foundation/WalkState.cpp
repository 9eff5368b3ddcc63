#include "Foundation/WalkState.h"

#include "Foundation/WalkWorker.h"

#include <algorithm>
#include <utility>

WalkState::WalkState(std::vector<WalkRoot> places, DirectoryWalk::Policy enterPolicy, std::stop_token stopToken,
                     std::vector<Mount> mountTable)
    : policy(std::move(enterPolicy)), stop(std::move(stopToken)), mounts(std::move(mountTable)), roots(places.size()) {
    for (std::size_t index = 0; index < roots.size(); ++index) {
        roots[index].place = std::move(places[index]);
        roots[index].folder.root = static_cast<std::uint32_t>(index);
    }
    // Pending folders are taken from the end.
    for (auto root = roots.rbegin(); root != roots.rend(); ++root) {
        m_pending.push_back(&root->folder);
    }
}

WalkState::~WalkState() = default;

WalkFolder* WalkState::takeFolder() {
    std::unique_lock lock(mutex);
    for (;;) {
        while (m_pending.empty() && m_busy > 0 && !isOver()) {
            ++m_waiting;
            changed.wait(lock);
            --m_waiting;
        }
        if (m_pending.empty() || isOver()) {
            m_pending.clear();
            changed.notify_all();
            return nullptr;
        }
        WalkFolder* const folder = m_pending.back();
        m_pending.pop_back();
        if (!m_deadMounts.empty()) {
            const std::string path = pathOf(*folder);
            if (std::any_of(m_deadMounts.begin(), m_deadMounts.end(),
                            [&](const std::string& mount) { return isAtOrBelow(path, mount); })) {
                Root& root = roots[folder->root];
                --root.unlistedFolders;
                closeIfListed(root);
                continue;
            }
        }
        ++m_busy;
        return folder;
    }
}

void WalkState::finishFolder(const WalkFolder& folder, std::vector<WalkFolder*>& found) {
    const std::lock_guard lock(mutex);
    --m_busy;
    m_pending.insert(m_pending.end(), found.rbegin(), found.rend());
    Root& root = roots[folder.root];
    root.unlistedFolders += found.size() - 1;
    closeIfListed(root);
    if (m_waiting > 0) {
        if (found.size() > 1 || m_busy == 0) {
            changed.notify_all();
        } else if (!found.empty()) {
            changed.notify_one();
        }
    }
    found.clear();
}

bool WalkState::putBack(WalkFolder& folder) {
    const std::lock_guard lock(mutex);
    if (m_busy <= 1) {
        return false;
    }
    --m_busy;
    m_pending.insert(m_pending.begin(), &folder);
    return true;
}

void WalkState::closeIfListed(Root& root) {
    if (root.unlistedFolders == 0) {
        root.descriptor.reset();
    }
}

void WalkState::skipMountOf(const WalkFolder& folder) {
    const std::lock_guard lock(mutex);
    hasSkipped = true;
    if (++m_timeouts >= maximumTimeouts) {
        m_pending.clear();
        changed.notify_all();
        return;
    }
    const std::string path = pathOf(folder);
    const Mount* nearest = nullptr;
    for (const Mount& mount : mounts) {
        if (isAtOrBelow(path, mount.target) && (nearest == nullptr || mount.target.size() >= nearest->target.size())) {
            nearest = &mount;
        }
    }
    // A disk that a root lies on may only be slow, so only this folder of it is skipped.
    const bool holdsRoot = nearest == nullptr || std::any_of(roots.begin(), roots.end(), [&](const Root& root) {
                               return isAtOrBelow(pathOf(root.folder), nearest->target);
                           });
    if (!holdsRoot) {
        m_deadMounts.push_back(nearest->target);
    }
}

void WalkState::giveUp() {
    const std::lock_guard lock(mutex);
    m_timeouts = maximumTimeouts;
    m_pending.clear();
    --m_busy;
    changed.notify_all();
}

std::string WalkState::pathOf(const WalkFolder& folder) const {
    std::vector<std::string_view> names;
    for (const WalkFolder* at = &folder; at->parent != nullptr; at = at->parent) {
        names.emplace_back(at->name, at->nameLength);
    }
    const Root& root = roots[folder.root];
    std::string path = root.path.empty() ? root.place.url.path() : root.path;
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        if (path.back() != '/') {
            path += '/';
        }
        path.append(*name);
    }
    return path;
}
