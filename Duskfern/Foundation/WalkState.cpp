#include "Foundation/WalkState.h"

#include "Foundation/WalkWorker.h"

#include <algorithm>
#include <utility>

/// In a loop: when the last folder of a deep chain goes, all above it go with it, and recursion would need as many
/// stack frames.
WalkFolder::~WalkFolder() {
    for (auto above = std::move(parent); above != nullptr && above.use_count() == 1;) {
        above = std::exchange(above->parent, nullptr);
    }
}

std::string WalkFolder::path() const {
    const WalkFolder* top = this;
    while (top->parent != nullptr) {
        top = top->parent.get();
    }
    return pathFrom(*top);
}

std::string WalkFolder::pathFrom(const WalkFolder& above) const {
    // Paths below the root itself begin without a slash.
    const std::size_t skipped = above.pathLength > 0 ? above.pathLength + 1 : 0;
    std::string path(pathLength - std::min(pathLength, skipped), '/');
    std::size_t end = path.size();
    for (const WalkFolder* at = this; at != &above; at = at->parent.get()) {
        end -= at->name.size();
        path.replace(end, at->name.size(), at->name);
        end -= end > 0 ? 1 : 0;
    }
    return path;
}

WalkState::WalkState(std::vector<WalkRoot> places, DirectoryWalk::Policy enterPolicy, std::stop_token stopToken,
                     std::vector<Mount> mountTable)
    : policy(std::move(enterPolicy)), stop(std::move(stopToken)), mounts(std::move(mountTable)), roots(places.size()) {
    // Pending folders are taken from the end.
    for (std::size_t index = roots.size(); index-- > 0;) {
        roots[index].place = std::move(places[index]);
        m_pending.push_back(std::make_shared<WalkFolder>());
        m_pending.back()->root = static_cast<std::uint32_t>(index);
    }
}

WalkState::~WalkState() = default;

void WalkState::setTag(std::size_t root, void* tag) {
    m_pending[roots.size() - 1 - root]->tag = tag;
}

WalkStep WalkState::take() {
    std::unique_lock lock(mutex);
    return next(lock);
}

WalkStep WalkState::next(std::unique_lock<std::mutex>& lock) {
    for (;;) {
        while ((m_pending.empty() || m_busy >= m_permitted) && m_busy > 0 && !isOver()) {
            ++m_waiting;
            changed.wait(lock);
            --m_waiting;
        }
        if (m_pending.empty() || isOver()) {
            m_pending.clear();
            changed.notify_all();
            return {};
        }
        WalkStep step;
        step.folder = std::move(m_pending.back());
        m_pending.pop_back();
        if (!m_deadMounts.empty() && isOnDeadMount(*step.folder)) {
            continue;
        }
        step.ancestor = step.folder->parent.get();
        while (step.ancestor != nullptr && step.ancestor->m_descriptor == nullptr) {
            step.ancestor = step.ancestor->parent.get();
        }
        if (step.ancestor != nullptr) {
            step.base = step.ancestor->m_descriptor;
        }
        ++m_busy;
        return step;
    }
}

WalkStep WalkState::finish(WalkStep step, std::shared_ptr<Descriptor> descriptor,
                           std::vector<std::shared_ptr<WalkFolder>>& found) {
    step.base.reset();
    if (found.empty()) {
        descriptor.reset();
    }
    std::unique_lock lock(mutex);
    // What may run out of memory comes first, because then `giveUp()` counts this worker as no longer busy.
    if (!found.empty()) {
        keep(step.folder, descriptor);
        std::move(found.rbegin(), found.rend(), std::back_inserter(m_pending));
    }
    // A worker that is no longer busy holds no descriptor: who is busy alone counts on that.
    descriptor.reset();
    step.folder.reset();
    --m_busy;
    // The caller takes one of the pending folders itself.
    if (m_waiting > 0 && m_pending.size() > 1 && m_busy + 1 < m_permitted) {
        if (found.size() > 2) {
            changed.notify_all();
        } else {
            changed.notify_one();
        }
    }
    found.clear();
    return next(lock);
}

bool WalkState::putBack(WalkStep& step) {
    const std::lock_guard lock(mutex);
    closeAllKept();
    if (m_busy <= 1) {
        return false;
    }
    m_pending.insert(m_pending.begin(), step.folder);
    --m_busy;
    step = {};
    return true;
}

void WalkState::setRoot(WalkFolder& folder, std::string path, const std::shared_ptr<Descriptor>& descriptor) {
    const std::lock_guard lock(mutex);
    Root& opened = roots[folder.root];
    opened.hidden = HiddenPlaces(path, mounts, opened.place.excluded);
    opened.path = std::move(path);
    opened.wasOpened = true;
    folder.m_descriptor = descriptor;
}

void WalkState::keepOpen(const std::shared_ptr<WalkFolder>& folder, const std::shared_ptr<Descriptor>& descriptor) {
    const std::lock_guard lock(mutex);
    keep(folder, descriptor);
}

void WalkState::keep(const std::shared_ptr<WalkFolder>& folder, const std::shared_ptr<Descriptor>& descriptor) {
    if (folder->m_descriptor != nullptr || descriptor == nullptr || !descriptor->isOpen()) {
        return;
    }
    folder->m_descriptor = descriptor;
    m_kept.push_back(folder);
    if (m_kept.size() > maximumKept) {
        if (const auto oldest = m_kept.front().lock()) {
            oldest->m_descriptor.reset();
        }
        m_kept.pop_front();
    }
}

void WalkState::closeKept() {
    const std::lock_guard lock(mutex);
    closeAllKept();
}

void WalkState::closeAllKept() {
    for (const auto& kept : m_kept) {
        if (const auto folder = kept.lock()) {
            folder->m_descriptor.reset();
        }
    }
    m_kept.clear();
}

bool WalkState::isOnDeadMount(const WalkFolder& folder) const {
    const std::string path = pathOf(folder);
    return std::any_of(m_deadMounts.begin(), m_deadMounts.end(),
                       [&](const std::string& mount) { return isAtOrBelow(path, mount); });
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
                               const std::string& at = root.path.empty() ? root.place.url.path() : root.path;
                               return isAtOrBelow(at, nearest->target);
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

void WalkState::permit(std::size_t count) {
    const std::lock_guard lock(mutex);
    if (std::exchange(m_permitted, count) < count) {
        changed.notify_all();
    }
}

bool WalkState::hasPending() {
    const std::lock_guard lock(mutex);
    return !m_pending.empty() && !isOver();
}

std::string WalkState::pathOf(const WalkFolder& folder) const {
    std::vector<std::string_view> names;
    for (const WalkFolder* at = &folder; at->parent != nullptr; at = at->parent.get()) {
        names.emplace_back(at->name);
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
