#pragma once

#include "Foundation/FileURL.h"

#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

/// A folder inside the one that is shown.
struct FolderEntry {
    std::string name;     ///< As bytes.
    bool isLink = false;  ///< A link that leads to a folder.

    bool operator==(const FolderEntry&) const = default;
};

/// The folders in one folder, or why they cannot be shown.
struct FolderListing {
    enum class Outcome {
        listed,
        missing,       ///< There is nothing of this name.
        notFolder,     ///< There is something else of this name.
        notPermitted,  ///< The user may not see what is in it.
        failed,        ///< The disk says no.
    };

    Outcome outcome = Outcome::failed;
    std::vector<FolderEntry> folders;  ///< As people sort, numbers by their value, whatever the case.
};

/// Lists one folder, on a thread of the background, while the main thread looks at what there is so far. Hidden folders
/// are left out: names with a leading dot, and what the folder's ".hidden" names. Nothing is written, and of files only
/// that one is read; access times stay as they are where the folder is the user's own.
class FolderReading {
public:
    explicit FolderReading(FileURL url) : m_url(std::move(url)) {}

    [[nodiscard]] const FileURL& url() const { return m_url; }

    /// Lists it, which takes as long as the disk does. Called once. Links are followed after all else is done, because
    /// one of them may lead to a disk that never answers.
    void run(const std::stop_token& stop);

    /// What has been listed: nothing before the folder has answered; folders without links until those are followed.
    [[nodiscard]] std::optional<FolderListing> soFar() const;

private:
    void publish(FolderListing listing);

    const FileURL m_url;
    mutable std::mutex m_mutex;  ///< Guards what follows.
    std::optional<FolderListing> m_listing;
};
