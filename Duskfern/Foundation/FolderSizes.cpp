#include "Foundation/FolderSizes.h"

#include "Foundation/CheckedSum.h"

#include <algorithm>

namespace {

/// Apart from each other in memory, because each is written by a thread of its own.
class alignas(64) Adder final : public WalkVisitor {
public:
    explicit Adder(std::size_t folders) : m_sums(folders) {}

    void beginFolder(WalkFolder& folder) override { m_root = folder.root; }
    void subfolder(const WalkFolder& /*folder*/) override {}
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
    std::vector<Adder> adders(DirectoryWalk::recommendedThreads(), Adder(folders.size()));
    std::vector<WalkVisitor*> visitors;
    std::transform(adders.begin(), adders.end(), std::back_inserter(visitors), [](Adder& adder) { return &adder; });
    DirectoryWalk walk(std::move(folders), policy, stop, mounts);
    walk.run(visitors);
    for (const Adder& adder : adders) {
        std::transform(sizes.bytes.begin(), sizes.bytes.end(), adder.sums().begin(), sizes.bytes.begin(), checkedSum);
    }
    sizes.lateAnswer = walk.lateAnswer();
    return sizes;
}
