#pragma once

#include "Desktop/Trash.h"

#include <map>
#include <optional>

/// What became of one item of a cleaning.
struct MoveResult {
    std::optional<TrashError> error;  ///< Why it was not moved.
    bool hasTimedOut = false;         ///< Whether its disk has not answered; then nothing else is known.

    [[nodiscard]] static MoveResult timedOut() { return {std::nullopt, true}; }
    [[nodiscard]] bool isMoved() const { return !error && !hasTimedOut; }
};

/// Counts the items that were not moved, by reason.
class FailureCounts {
public:
    void add(const MoveResult& result);
    [[nodiscard]] int total() const;

    /// A line for each reason with its number, the most frequent first; empty if nothing failed.
    [[nodiscard]] QString text() const;

private:
    std::map<std::optional<TrashError>, int> m_counts;  ///< Nothing stands for a disk that did not answer.
};
