#pragma once

#include "Desktop/InstalledApplications.h"
#include "JunkCleaner/InstalledAppTokens.h"
#include "JunkCleaner/JunkListing.h"
#include "JunkCleaner/JunkMeasurement.h"
#include "JunkCleaner/RunningPrograms.h"

#include <optional>
#include <string>
#include <vector>

/// What is read from disks before the entries are filtered.
struct DiskAnswers {
    std::optional<InstalledNames> names;     ///< None if they did not answer; leftovers cannot be recognised then.
    std::optional<RunningPrograms> running;  ///< None if they did not answer; then each program may run.
    std::vector<std::string> personal;       ///< Without links, like all paths below; the home first.
    std::vector<std::string> support;
    std::vector<PlaceListing> listings;  ///< One per place.
};

/// Turns the entries of one place after the other into candidates. Does not access a disk, except for the mount table.
class JunkFilter {
public:
    /// `answers` must outlive this.
    explicit JunkFilter(const DiskAnswers& answers);

    /// Adds all places, in the order of their listings.
    void addAll(const std::vector<JunkPlace>& places);

    [[nodiscard]] const InstalledAppTokens& tokens() const { return m_tokens; }
    [[nodiscard]] std::vector<JunkCandidate> takeCandidates() { return std::move(m_candidates); }

private:
    void add(const JunkPlace& place, const JunkListing& listing);
    [[nodiscard]] bool describe(const JunkPlace& place, const JunkListing& listing, JunkItem& item) const;
    [[nodiscard]] bool isRunning(const JunkPlace& place, const JunkListing& listing, std::string_view name) const;
    [[nodiscard]] bool isPersonal(const std::string& path) const;
    [[nodiscard]] bool isPlaceToClean(const JunkPlace& place, const std::string& path) const;
    void noteLocks(const PlaceListing& listing);

    const DiskAnswers& m_answers;
    const InstalledAppTokens m_tokens;
    std::vector<std::string> m_mounts;
    std::vector<std::string> m_visited;  ///< Paths of the folders added so far.
    std::vector<std::string> m_listed;   ///< Paths of the candidates that are folders.
    std::vector<std::string> m_locked;   ///< Folders that a running program has locked.
    NameSet m_lockedNames;               ///< The names of these and of the folders between them and their place.
    std::vector<JunkCandidate> m_candidates;
};
