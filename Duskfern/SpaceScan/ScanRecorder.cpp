#include "SpaceScan/ScanRecorder.h"

#include "SpaceScan/FileClassifier.h"

#include <algorithm>
#include <new>

void ScanRecorder::beginFolder(const WalkFolder& folder) {
    const auto file = names.names.size();
    const auto child = static_cast<std::uint32_t>(folders.size());
    Listing& listing = m_listings.append(this, file, file, child, child);
    static_cast<Folder*>(folder.tag)->contents = &listing;
}

void ScanRecorder::file(std::string_view name, const FileStatus& status) {
    if (!names.names.hasRoom() || !names.folded.hasRoom()) {
        ++m_skipped;
        return;
    }
    const std::uint32_t number = names.names.size();
    FileSize& size = sizes.append();
    const auto bytes = static_cast<std::uint64_t>(status.allocated.value_or(status.length));
    size.bytes = std::min(bytes, FileSize::maximum) & FileSize::maximum;
    size.category = static_cast<unsigned>(FileClassifier::categoryForName(name)) & 7U;
    try {
        names.names.append(name);
    } catch (const std::bad_alloc&) {
        // There must be one size for each name.
        sizes.removeLast();
        throw;
    }
    sizeBits |= size.bytes;
    m_listings.back().endFile = number + 1;
    m_count.store(m_count.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    if (!m_folding.foldsToLowerCase(name)) {
        m_folded.clear();
        m_folding.fold(name, m_folded);
        names.addFolded(m_folded, number);
    }
}

void ScanRecorder::subfolder(WalkFolder& folder) {
    if (!folderNames.hasRoom()) {
        throw std::bad_alloc();
    }
    Folder& child = folders.append(folderNames.append(folder.name), names.names.size());
    folder.tag = &child;
    m_listings.back().endFolder = static_cast<std::uint32_t>(folders.size());
}
