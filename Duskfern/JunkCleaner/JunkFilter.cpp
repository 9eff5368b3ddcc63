#include "JunkCleaner/JunkFilter.h"

#include "Foundation/MountTable.h"
#include "JunkCleaner/NamePattern.h"

#include <algorithm>
#include <utility>

namespace {

bool holdsAny(const std::string& folder, const std::vector<std::string>& paths) {
    return std::any_of(paths.begin(), paths.end(), [&](const std::string& path) { return isAtOrBelow(path, folder); });
}

bool isInAny(const std::string& path, const std::vector<std::string>& folders) {
    return std::any_of(folders.begin(), folders.end(),
                       [&](const std::string& folder) { return isAtOrBelow(path, folder); });
}

}  // namespace

JunkFilter::JunkFilter(const DiskAnswers& answers)
    : m_answers(answers), m_tokens(answers.names.value_or(InstalledNames())) {
    for (const Mount& mount : currentMounts()) {
        m_mounts.push_back(mount.target);
    }
    for (const PlaceListing& listing : answers.listings) {
        noteLocks(listing);
    }
}

void JunkFilter::noteLocks(const PlaceListing& listing) {
    for (const PlaceListing::Lock& lock : listing.locks) {
        if (!m_answers.running || m_answers.running->hasProcess(lock.process)) {
            m_locked.push_back(lock.path);
            if (isAtOrBelow(lock.path, listing.path)) {
                forEachPart(std::string_view(lock.path).substr(listing.path.size()), '/',
                            [&](std::string_view name) { m_lockedNames.insert(foldedName(name)); });
            }
        }
    }
}

void JunkFilter::addAll(const std::vector<JunkPlace>& places) {
    for (std::size_t i = 0; i < places.size(); ++i) {
        const PlaceListing& listing = m_answers.listings[i];
        const bool isWithinPlace = listing.within.empty() || isPlaceToClean(places[i], listing.within);
        if (!listing.path.empty() && isWithinPlace && !isPersonal(listing.path)) {
            for (const JunkListing& folder : listing.folders) {
                add(places[i], folder);
            }
        }
    }
}

void JunkFilter::add(const JunkPlace& place, const JunkListing& listing) {
    if (!isPlaceToClean(place, listing.path) || isInAny(listing.path, m_listed) ||
        std::find(m_visited.begin(), m_visited.end(), listing.path) != m_visited.end() ||
        (place.kind == JunkKind::leftover && !(m_answers.names && m_answers.names->isComplete))) {
        return;
    }
    m_visited.push_back(listing.path);
    for (const JunkListing::Entry& entry : listing.entries) {
        const std::string real = FileURL(listing.path).appendingPathComponent(entry.name).path();
        const FileStatus& status = entry.status;
        JunkCandidate candidate{{}, place.look, status.mode, !status.isProtected && !status.isMountPoint};
        JunkItem& item = candidate.item;
        item.url = listing.url.appendingPathComponent(entry.name);
        item.identity = status.identity;
        item.kind = place.kind;
        if (!holdsAny(real, m_answers.personal) && !holdsAny(real, m_answers.support) && !holdsAny(real, m_visited) &&
            !holdsAny(real, m_mounts) && describe(place, listing, item)) {
            item.size = status.isRegularFile() ? status.allocated.value_or(0) : 0;
            m_candidates.push_back(std::move(candidate));
            if (status.isFolder()) {
                m_listed.push_back(real);
            }
        }
    }
}

/// Sets the item's origin and whether it is safe by its name. False if it is not to be listed.
bool JunkFilter::describe(const JunkPlace& place, const JunkListing& listing, JunkItem& item) const {
    const std::string_view bytes = item.url.lastPathComponent();
    const QString name = item.name();
    if (place.kind == JunkKind::leftover) {
        item.origin = QStringLiteral("Aplicación no encontrada: ") + name;
        return place.isFlatpakData ? m_tokens.isOrphanedFlatpak(bytes) : m_tokens.isOrphaned(name);
    }
    if (!listing.program.empty()) {
        item.origin =
            displayText(place.isFlatpakData ? flatpakName(listing.program) : std::string_view(listing.program));
    } else if (!place.program.empty()) {
        item.origin = displayText(place.program);
    } else {
        item.origin = originName(name, JunkKinds::rawValue(place.kind));
    }
    item.isSafeForBulk = place.isSafe && !(place.kind == JunkKind::cache && place.look != ContentLook::byName &&
                                           isRunning(place, listing, bytes));
    return true;
}

bool JunkFilter::isRunning(const JunkPlace& place, const JunkListing& listing, std::string_view name) const {
    if (!m_answers.running) {
        return true;
    }
    const RunningPrograms& running = *m_answers.running;
    if (!listing.program.empty() || !place.processes.empty()) {
        bool runs = !listing.program.empty() && running.runs(listing.program);
        forEachPart(place.processes, '|', [&](std::string_view process) { runs = runs || running.runs(process); });
        return runs || isInAny(listing.path, m_locked);
    }
    return running.runs(name) || m_lockedNames.contains(foldedName(name));
}

bool JunkFilter::isPersonal(const std::string& path) const {
    const std::vector<std::string>& personal = m_answers.personal;
    return std::find(personal.begin(), personal.end(), path) != personal.end() ||
           (!personal.empty() && isAtOrBelow(personal.front(), path));
}

bool JunkFilter::isPlaceToClean(const JunkPlace& place, const std::string& path) const {
    return !isPersonal(path) && (place.kind == JunkKind::leftover || !holdsAny(path, m_answers.support));
}
