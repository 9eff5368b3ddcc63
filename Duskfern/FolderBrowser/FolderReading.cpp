#include "FolderBrowser/FolderReading.h"

#include "Foundation/Descriptor.h"
#include "Foundation/FileStatus.h"
#include "Foundation/HiddenList.h"
#include "Foundation/OpenPath.h"

#include <QtCore/QCollator>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <numeric>

namespace {

using Outcome = FolderListing::Outcome;

Outcome outcomeOf(int error) {
    switch (error) {
        case ENOENT:
            return Outcome::missing;
        case ENOTDIR:
            return Outcome::notFolder;
        case EACCES:
        case EPERM:
            return Outcome::notPermitted;
        default:
            return Outcome::failed;
    }
}

/// Closes the stream of an open folder.
struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

/// The entries of a folder that may be shown.
struct Contents {
    std::vector<FolderEntry> folders;
    std::vector<std::string> links;
};

unsigned char kindOf(int directory, const dirent64& entry) {
    if (entry.d_type != DT_UNKNOWN) {
        return entry.d_type;
    }
    const std::optional<FileStatus> status = fileStatus(directory, entry.d_name);
    return status ? static_cast<unsigned char>(IFTODT(status->mode)) : static_cast<unsigned char>(DT_UNKNOWN);
}

Contents read(DIR* folder, const std::stop_token& stop) {
    Contents contents;
    bool hasHiddenList = false;
    while (const dirent64* const entry = stop.stop_requested() ? nullptr : readdir64(folder)) {
        const std::string_view name = entry->d_name;
        if (name.front() == '.') {
            hasHiddenList = hasHiddenList || name == hiddenListName;
            continue;
        }
        const unsigned char kind = kindOf(dirfd(folder), *entry);
        if (kind == DT_DIR) {
            contents.folders.push_back({std::string(name)});
        } else if (kind == DT_LNK) {
            contents.links.emplace_back(name);
        }
    }
    if (hasHiddenList) {
        const NameSet hidden = hiddenNames(dirfd(folder));
        std::erase_if(contents.folders, [&](const FolderEntry& entry) { return hidden.contains(entry.name); });
        std::erase_if(contents.links, [&](const std::string& name) { return hidden.contains(name); });
    }
    return contents;
}

/// Makes one sort key per name, because comparing with the collator is slow.
void sortByName(std::vector<FolderEntry>& folders) {
    QCollator collator(QLocale(QLocale::Spanish, QLocale::Spain));
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<QCollatorSortKey> keys;
    keys.reserve(folders.size());
    for (const FolderEntry& folder : folders) {
        keys.push_back(collator.sortKey(displayText(folder.name)));
    }
    std::vector<std::size_t> order(folders.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        const int compared = keys[a].compare(keys[b]);
        return compared != 0 ? compared < 0 : folders[a].name < folders[b].name;
    });
    std::vector<FolderEntry> sorted;
    sorted.reserve(folders.size());
    for (const std::size_t index : order) {
        sorted.push_back(std::move(folders[index]));
    }
    folders = std::move(sorted);
}

/// Whether a link leads to a folder. O_PATH neither reads it nor triggers an automount.
bool leadsToFolder(int directory, const std::string& link) {
    return Descriptor(openat(directory, link.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)).isOpen();
}

}  // namespace

void FolderReading::run(const std::stop_token& stop) {
    Descriptor descriptor = openPath(m_url, O_RDONLY | O_DIRECTORY | O_NONBLOCK);
    if (!descriptor.isOpen()) {
        publish({outcomeOf(errno), {}});
        return;
    }
    // O_NOATIME is allowed for the owner only; the call fails for others, who read without it.
    (void)fcntl(descriptor.number(), F_SETFL, O_RDONLY | O_NONBLOCK | O_NOATIME);
    const std::unique_ptr<DIR, CloseFolder> folder(fdopendir(descriptor.number()));
    if (!folder) {
        publish({outcomeOf(errno), {}});
        return;
    }
    (void)descriptor.release();  // The stream closes it.
    Contents contents = read(folder.get(), stop);
    FolderListing listing{Outcome::listed, std::move(contents.folders)};
    sortByName(listing.folders);
    if (contents.links.empty()) {
        publish(std::move(listing));
        return;
    }
    publish(listing);
    const std::size_t count = listing.folders.size();
    for (std::string& link : contents.links) {
        if (!stop.stop_requested() && leadsToFolder(dirfd(folder.get()), link)) {
            listing.folders.push_back({std::move(link), true});
        }
    }
    if (listing.folders.size() > count) {
        sortByName(listing.folders);
        publish(std::move(listing));
    }
}

std::optional<FolderListing> FolderReading::soFar() const {
    const std::lock_guard lock(m_mutex);
    return m_listing;
}

void FolderReading::publish(FolderListing listing) {
    const std::lock_guard lock(m_mutex);
    m_listing = std::move(listing);
}
