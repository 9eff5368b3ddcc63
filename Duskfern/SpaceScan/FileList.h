#pragma once

#include "Foundation/NameArena.h"
#include "SpaceScan/FileItem.h"
#include "SpaceScan/SearchIndex.h"

#include <compare>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

/// What a `FileList` keeps of one file: 16 bytes, so that millions of files fit into memory.
struct FileRecord {
    static constexpr unsigned sizeBits = 61;

    std::uint64_t size : sizeBits;  ///< Bytes; what takes more than 2 EiB is taken for 2 EiB.
    std::uint64_t category : 3;
    std::uint32_t name;    ///< Position in the names of the list; the name ends at a NUL, whatever its length.
    std::uint32_t folder;  ///< Index into the folders of the list.
};
static_assert(sizeof(FileRecord) == 16);

/// A folder of a `FileList`: its name, and the folder it lies in.
struct FolderRecord {
    std::uint32_t parent = 0;  ///< Index of the parent; the root, at index 0, has itself.
    std::uint32_t name = 0;
};

/// The files of a scan in order, as a value: copies share what they hold, and nothing changes it any more. A
/// `FileItem` is made when it is asked for; each file is a compact record and each folder stands once.
class FileList {
public:
    /// What a list is made of. `records` are in the list's order.
    struct Storage {
        FileURL root;
        NameArena names;
        std::vector<FolderRecord> folders;
        std::vector<FileRecord> records;
        SearchIndex index;
        std::int64_t totalSize = 0;
    };

    FileList();
    explicit FileList(Storage storage);

    [[nodiscard]] std::size_t size() const { return m_storage->records.size() - m_removed.size(); }
    [[nodiscard]] bool isEmpty() const { return size() == 0; }
    [[nodiscard]] FileItem operator[](std::size_t index) const;

    /// The pieces of an item, without making the whole of it.
    [[nodiscard]] std::int64_t sizeAt(std::size_t index) const;
    [[nodiscard]] FileCategory categoryAt(std::size_t index) const;
    [[nodiscard]] std::string_view nameAt(std::size_t index) const;
    [[nodiscard]] FileURL urlAt(std::size_t index) const;

    /// Whether the file at `index` is the one at `url`.
    [[nodiscard]] bool isAt(std::size_t index, const FileURL& url) const;

    /// Whether both were made from the same scan, so that the keys of one mean the same files in the other.
    [[nodiscard]] bool sharesStorage(const FileList& other) const { return m_storage == other.m_storage; }

    /// The sum of all sizes in bytes.
    [[nodiscard]] std::int64_t totalSize() const { return m_totalSize; }

    /// A number that means the same file in this list and in every list made from it by removing. Keys ascend with
    /// the indices.
    [[nodiscard]] std::uint32_t keyAt(std::size_t index) const;

    /// All keys are below it.
    [[nodiscard]] std::uint32_t keyCount() const { return static_cast<std::uint32_t>(m_storage->records.size()); }

    /// Where the file with this key stands, which must be in the list.
    [[nodiscard]] std::size_t indexOfKey(std::uint32_t key) const;

    [[nodiscard]] bool containsKey(std::uint32_t key) const;

    /// The keys of the files whose names contain a text, as `NameFolding` folds it.
    [[nodiscard]] KeySet search(std::string_view folded) const;

    /// Where the file at `url` stands, if it does.
    [[nodiscard]] std::optional<std::size_t> indexOf(const FileURL& url) const;

    /// The same files without the one at `url`. Copies nothing large.
    [[nodiscard]] FileList removing(const FileURL& url) const;

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

    /// Gives the memory of a list back on a background thread: with millions of files that takes longer than a frame.
    static void release(FileList list);

private:
    [[nodiscard]] const FileRecord& record(std::size_t index) const { return m_storage->records[keyAt(index)]; }
    [[nodiscard]] FileURL folderURL(std::uint32_t folder) const;

    std::shared_ptr<const Storage> m_storage;
    std::vector<std::uint32_t> m_removed;  ///< Keys of removed files, ascending: a person removes few.
    std::int64_t m_totalSize = 0;
};
