#include "SpaceScan/FileList.h"

#include "Foundation/CheckedSum.h"
#include "Foundation/Dispatch.h"
#include "Foundation/NameFolding.h"

#include <algorithm>

namespace {

const std::shared_ptr<const FileList::Storage>& emptyStorage() {
    static const auto storage = std::make_shared<const FileList::Storage>();
    return storage;
}

}  // namespace

FileList::FileList() : m_storage(emptyStorage()) {}

FileList::FileList(Storage storage)
    : m_storage(std::make_shared<const Storage>(std::move(storage))), m_totalSize(m_storage->totalSize) {}

std::uint32_t FileList::keyAt(std::size_t index) const {
    // The removed file at `place` was followed by the file that has the index of its key minus `place` now.
    std::size_t begin = 0;
    std::size_t end = m_removed.size();
    while (begin < end) {
        const std::size_t place = (begin + end) / 2;
        if (m_removed[place] - place <= index) {
            begin = place + 1;
        } else {
            end = place;
        }
    }
    return static_cast<std::uint32_t>(index + begin);
}

std::size_t FileList::indexOfKey(std::uint32_t key) const {
    const auto removedBefore = std::lower_bound(m_removed.begin(), m_removed.end(), key) - m_removed.begin();
    return key - static_cast<std::size_t>(removedBefore);
}

bool FileList::contains(std::uint32_t key) const {
    return !std::binary_search(m_removed.begin(), m_removed.end(), key);
}

void FileList::dropRemoved(BitSet& numbers) const {
    std::for_each(m_removed.begin(), m_removed.end(), [&](std::uint32_t key) { numbers.erase(numberOfKey(key)); });
}

FileItem FileList::operator[](std::size_t index) const {
    return {urlAt(index), sizeAt(index), categoryAt(index)};
}

std::int64_t FileList::sizeAt(std::size_t index) const {
    return static_cast<std::int64_t>(record(index).size.bytes);
}

FileCategory FileList::categoryAt(std::size_t index) const {
    return static_cast<FileCategory>(record(index).size.category);
}

std::string_view FileList::nameAt(std::size_t index) const {
    return m_storage->index.nameOf(record(index).number);
}

FileURL FileList::folderURL(std::uint32_t folder) const {
    std::vector<std::string_view> names;
    for (; folder != 0; folder = m_storage->folders[folder].parent) {
        names.emplace_back(m_storage->folderNames.at(m_storage->folders[folder].name));
    }
    std::string path = m_storage->root.path() == "/" ? std::string() : m_storage->root.path();
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        path.append("/").append(*name);
    }
    return FileURL(path.empty() ? "/" : std::move(path));
}

FileURL FileList::urlAt(std::size_t index) const {
    return folderURL(record(index).folder).appendingPathComponent(nameAt(index));
}

bool FileList::isAt(std::size_t index, const FileURL& url) const {
    return nameAt(index) == url.lastPathComponent() && urlAt(index) == url;
}

std::optional<std::size_t> FileList::indexOf(const FileURL& url) const {
    std::string folded;
    NameFolding(QLocale()).fold(url.lastPathComponent(), folded);
    std::optional<std::size_t> found;
    search(folded).forEach([&](std::uint32_t number) {
        const std::uint32_t key = keyOfNumber(number);
        if (!found && contains(key) && isAt(indexOfKey(key), url)) {
            found = indexOfKey(key);
        }
    });
    return found;
}

FileList FileList::removing(const FileURL& url) const {
    const std::optional<std::size_t> index = indexOf(url);
    return index ? removingKey(keyAt(*index)) : *this;
}

FileList FileList::removingKey(std::uint32_t key) const {
    FileList rest = *this;
    rest.m_removed.insert(std::upper_bound(rest.m_removed.begin(), rest.m_removed.end(), key), key);
    rest.m_totalSize = checkedDifference(m_totalSize, static_cast<std::int64_t>(m_storage->records[key].size.bytes));
    return rest;
}

void FileList::release(FileList list) {
    if (list.m_storage.use_count() == 1) {
        Dispatch::background(
            [storage = std::move(list.m_storage)](const std::stop_token&) mutable { storage.reset(); });
    }
}
