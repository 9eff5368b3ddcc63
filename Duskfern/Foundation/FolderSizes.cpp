#include "Foundation/FolderSizes.h"

#include "Foundation/CheckedSum.h"

#include <algorithm>

namespace {

/// Aligned to a cache line, because each one is written by a thread of its own.
class alignas(64) SizeVisitor final : public WalkVisitor {
public:
    explicit SizeVisitor(std::size_t folders) : m_sums(folders) {}

    void beginFolder(const WalkFolder& folder) override { m_root = folder.root; }
    void subfolder(WalkFolder& /*folder*/) override {}
    void unreadable() override {}
    void file(std::string_view /*name*/, const FileStatus& status) override {
        m_sums[m_root] = checkedSum(m_sums[m_root], status.allocated.value_or(0));
    }

    [[nodiscard]] const std::vector<std::int64_t>& sums() const { return m_sums; }

private:
    std::vector<std::int64_t> m_sums;  ///< One a root.
    std::size_t m_root = 0;
};

}  // namespace

FolderSizes folderSizes(std::vector<WalkRoot> folders, const DirectoryWalk::Policy& policy, const std::stop_token& stop,
                        const std::vector<Mount>& mounts) {
    FolderSizes sizes{std::vector<std::int64_t>(folders.size()), nullptr};
    if (folders.empty()) {
        return sizes;
    }
    std::vector<SizeVisitor> visitors(DirectoryWalk::maximumWorkers(), SizeVisitor(folders.size()));
    std::vector<WalkVisitor*> walkVisitors;
    std::transform(visitors.begin(), visitors.end(), std::back_inserter(walkVisitors),
                   [](SizeVisitor& visitor) { return &visitor; });
    DirectoryWalk walk(std::move(folders), policy, stop, mounts);
    walk.run(walkVisitors);
    for (const SizeVisitor& visitor : visitors) {
        std::transform(sizes.bytes.begin(), sizes.bytes.end(), visitor.sums().begin(), sizes.bytes.begin(), checkedSum);
    }
    sizes.lateAnswer = walk.lateAnswer();
    return sizes;
}
