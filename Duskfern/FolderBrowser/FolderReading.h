#pragma once

#include "FolderBrowser/FolderListing.h"
#include "Foundation/FileURL.h"

#include <mutex>
#include <optional>
#include <stop_token>
#include <utility>

/// Lists one folder on a background thread, while the main thread reads the results so far. Leaves out hidden folders:
/// names with a leading dot, and those in the folder's ".hidden", the only file that is read. Leaves access times
/// unchanged if the user owns the folder.
class FolderReading {
public:
    explicit FolderReading(FileURL url) : m_url(std::move(url)) {}

    [[nodiscard]] const FileURL& url() const { return m_url; }

    /// Lists the folder; blocks as long as the disk does. Must be called once. Resolves links last, because one of them
    /// may lead to a disk that never answers.
    void run(const std::stop_token& stop);

    /// The results so far: nothing before the folder has answered, and no links before they are resolved.
    [[nodiscard]] std::optional<FolderListing> soFar() const;

private:
    void publish(FolderListing listing);

    const FileURL m_url;
    mutable std::mutex m_mutex;  ///< Guards the member below.
    std::optional<FolderListing> m_listing;
};
