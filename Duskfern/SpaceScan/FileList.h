#pragma once

#include "Foundation/StringArena.h"
#include "SpaceScan/FileItem.h"
#include "SpaceScan/SearchIndex.h"

#include <algorithm>
#include <array>
#include <compare>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

/// The size and category of a file.
struct FileSize {
    static constexpr unsigned bits = 61;

    static constexpr std::uint64_t maximum = (std::uint64_t{1} << bits) - 1;  ///< Larger sizes are stored as this.

    std::uint64_t bytes : bits;
    std::uint64_t category : 3;
};

/// A file in a `FileList`: 16 bytes, so that millions fit into memory.
struct FileRecord {
    FileSize size;
    std::uint32_t number;  ///< Of its name in `Storage::index`.
    std::uint32_t folder;  ///< Index into `Storage::folders`.
};
static_assert(sizeof(FileRecord) == 16);

/// A folder in a `FileList`.
struct FolderRecord {
    std::uint32_t parent = 0;  ///< Index of the parent; the root, at index 0, is its own parent.
    std::uint32_t name = 0;    ///< Position in `Storage::folderNames`.
};

/// The files of a scan, sorted, as a value type: copies share one immutable storage. Each file is a compact record and
/// each folder is stored once; a `FileItem` is made on access.
class FileList {
public:
    /// The contents of a list. `records` are in the list's order; the index of a record is the key of its file, which
    /// does not change when other files are removed.
    struct Storage {
        FileURL root;
        StringArena folderNames;
        std::vector<FolderRecord> folders;
        std::vector<FileRecord> records;
        SearchIndex index;
        std::vector<std::uint32_t> keys;                                 ///< The key of each number.
        std::array<BitSet, FileCategories::allCases.size()> categories;  ///< The numbers of the files of each.
        std::int64_t totalSize = 0;
    };

    FileList();
    explicit FileList(Storage storage);

    [[nodiscard]] std::size_t size() const { return m_storage->records.size() - m_removed.size(); }
    [[nodiscard]] bool isEmpty() const { return size() == 0; }
    [[nodiscard]] FileItem operator[](std::size_t index) const;

    /// One field of an item, without making the whole item.
    [[nodiscard]] std::int64_t sizeAt(std::size_t index) const;
    [[nodiscard]] FileCategory categoryAt(std::size_t index) const;
    [[nodiscard]] std::string_view nameAt(std::size_t index) const;
    [[nodiscard]] FileURL urlAt(std::size_t index) const;

    /// Whether the file at `index` is the one at `url`.
    [[nodiscard]] bool isAt(std::size_t index, const FileURL& url) const;

    /// Whether both come from the same scan, so that a key means the same file in both.
    [[nodiscard]] bool sharesStorage(const FileList& other) const { return m_storage == other.m_storage; }

    /// The sum of all sizes in bytes.
    [[nodiscard]] std::int64_t totalSize() const { return m_totalSize; }

    /// A number that identifies a file in this list and in every list made from it by `removing()`. Keys ascend with
    /// the index.
    [[nodiscard]] std::uint32_t keyAt(std::size_t index) const;

    /// All keys are below this number.
    [[nodiscard]] std::uint32_t keyCount() const { return static_cast<std::uint32_t>(m_storage->records.size()); }

    /// The index of the file with this key, which must be in the list.
    [[nodiscard]] std::size_t indexOfKey(std::uint32_t key) const;

    /// The numbers of the files whose folded names contain `folded`, a text folded by `NameFolding` in the locale of
    /// the scan, which is that of the process; removed files included.
    [[nodiscard]] BitSet search(std::string_view folded) const { return m_storage->index.search(folded); }

    /// The numbers of the files of a category, which is not `all`, removed files included.
    [[nodiscard]] const BitSet& numbersOf(FileCategory category) const {
        return m_storage->categories.at(static_cast<std::size_t>(category));
    }

    /// Removes the numbers of removed files.
    void dropRemoved(BitSet& numbers) const;

    /// All numbers are below this one.
    [[nodiscard]] std::uint32_t numberCount() const { return m_storage->index.size(); }

    [[nodiscard]] std::uint32_t keyOfNumber(std::uint32_t number) const { return m_storage->keys[number]; }
    [[nodiscard]] std::uint32_t numberOfKey(std::uint32_t key) const { return m_storage->records[key].number; }

    /// The index of the file at `url`, if it is in the list.
    [[nodiscard]] std::optional<std::size_t> indexOf(const FileURL& url) const;

    /// This list without the file at `url`. Shares the storage.
    [[nodiscard]] FileList removing(const FileURL& url) const;

    /// The same for the file with this key, which must be in the list.
    [[nodiscard]] FileList removingKey(std::uint32_t key) const;

    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = FileItem;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = FileItem;

        Iterator(const FileList& list, std::size_t index) : m_list(&list), m_index(index) {}
        FileItem operator*() const { return (*m_list)[m_index]; }
        Iterator& operator++() {
            ++m_index;
            return *this;
        }
        bool operator==(const Iterator&) const = default;

    private:
        const FileList* m_list;
        std::size_t m_index;
    };
    [[nodiscard]] Iterator begin() const { return {*this, 0}; }
    [[nodiscard]] Iterator end() const { return {*this, size()}; }

    /// Destroys a list on a background thread: with millions of files that takes longer than a frame.
    static void release(FileList list);

private:
    [[nodiscard]] const FileRecord& record(std::size_t index) const { return m_storage->records[keyAt(index)]; }
    [[nodiscard]] bool contains(std::uint32_t key) const;
    [[nodiscard]] FileURL folderURL(std::uint32_t folder) const;

    std::shared_ptr<const Storage> m_storage;
    std::vector<std::uint32_t> m_removed;  ///< Keys of removed files, ascending.
    std::int64_t m_totalSize = 0;
};
