#include "SpaceScan/ScanRecorder.h"

#include "Foundation/CheckedSum.h"
#include "SpaceScan/FileClassifier.h"

#include <algorithm>
#include <new>

void ScanRecorder::beginFolder(WalkFolder& folder) {
    Listing& listing = m_listings.append(this, m_files.size(), m_files.size(), m_children.size(), m_children.size());
    folder.listing = &listing;
}

void ScanRecorder::file(std::string_view name, const FileStatus& status) {
    if (!m_names.hasRoom() || !m_foldedNames.hasRoom()) {
        ++m_skipped;
        return;
    }
    m_folded.clear();
    m_folding.fold(name, m_folded);
    const std::uint32_t position = m_names.append(name);
    constexpr std::uint64_t maximum = (std::uint64_t{1} << FileRecord::sizeBits) - 1;
    FileRecord& record = m_files.append();
    record.size = std::min(static_cast<std::uint64_t>(status.allocated.value_or(status.length)), maximum) & maximum;
    record.category = static_cast<unsigned>(FileClassifier::categoryForName(name)) & 7U;
    record.name = position;
    try {
        m_foldedNames.append(m_folded);
    } catch (const std::bad_alloc&) {
        // `m_files` and `m_foldedNames` must have the same number of entries.
        m_files.removeLast();
        throw;
    }
    m_listings.back().endFile = m_files.size();
    m_count.store(m_count.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

void ScanRecorder::subfolder(const WalkFolder& folder) {
    m_children.append(&folder, m_files.size());
    m_listings.back().endChild = m_children.size();
}

FileList::Storage ScanRecorder::merge(const FileURL& url, const WalkFolder& root,
                                      const std::vector<ScanRecorder*>& recorders, std::vector<std::uint32_t>& numbers,
                                      std::int64_t& skipped) {
    FileList::Storage all;
    all.root = url;
    std::size_t count = 0;
    for (ScanRecorder* recorder : recorders) {
        if (!all.names.fits(recorder->m_names)) {
            skipped = checkedSum(skipped, static_cast<std::int64_t>(recorder->m_files.size()));
            recorder->m_fits = false;
            continue;
        }
        recorder->m_numbersBase = all.index.add(std::move(recorder->m_foldedNames));
        recorder->m_namesBase = all.names.absorb(std::move(recorder->m_names));
        count += recorder->m_files.size();
    }
    all.records.reserve(count);
    numbers.reserve(count);

    /// A folder whose files are being copied. The stack holds the path to the current folder.
    struct OpenFolder {
        const Listing* listing;
        std::uint32_t folder;
        std::size_t nextFile;
        std::size_t nextChild;
    };
    std::vector<OpenFolder> open;
    const auto enter = [&](const WalkFolder& folder, std::uint32_t parent) {
        const auto* const listing = static_cast<const Listing*>(folder.listing);
        // A folder that was not listed, because the walk was stopped, has no listing.
        if (listing == nullptr || !all.names.hasRoom()) {
            return;
        }
        const auto index = static_cast<std::uint32_t>(all.folders.size());
        all.folders.push_back({parent, all.names.append({folder.name, folder.nameLength})});
        open.push_back({listing, index, listing->firstFile, listing->firstChild});
    };
    enter(root, 0);
    while (!open.empty()) {
        OpenFolder& here = open.back();
        const ScanRecorder& recorder = *here.listing->recorder;
        const bool hasChild = here.nextChild < here.listing->endChild;
        const Child* child = hasChild ? &recorder.m_children[here.nextChild] : nullptr;
        const std::size_t end = child != nullptr ? child->filesBefore : here.listing->endFile;
        for (; here.nextFile < end && recorder.m_fits; ++here.nextFile) {
            numbers.push_back(static_cast<std::uint32_t>(recorder.m_numbersBase + here.nextFile));
            FileRecord& record = all.records.emplace_back(recorder.m_files[here.nextFile]);
            record.name += recorder.m_namesBase;
            record.folder = here.folder;
            all.totalSize = checkedSum(all.totalSize, static_cast<std::int64_t>(record.size));
        }
        if (child == nullptr) {
            open.pop_back();
        } else {
            ++here.nextChild;
            enter(*child->folder, here.folder);
        }
    }
    for (ScanRecorder* recorder : recorders) {
        recorder->m_files = {};
        recorder->m_children = {};
        recorder->m_listings = {};
    }
    return all;
}
