#include "Foundation/AllocatedSize.h"

#include "Foundation/CheckedSum.h"
#include "Foundation/FileStatus.h"

namespace {

class Adder final : public WalkVisitor {
public:
    void beginFolder(WalkFolder& /*folder*/) override {}
    void subfolder(const WalkFolder& /*folder*/) override {}
    void unreadable() override {}
    void file(int directory, std::string_view name) override {
        const std::optional<FileStatus> status = fileStatus(directory, name.data());
        if (status && status->isRegularFile()) {
            m_sum = checkedSum(m_sum, status->allocated.value_or(0));
        }
    }

    [[nodiscard]] std::int64_t sum() const { return m_sum; }

private:
    std::int64_t m_sum = 0;
};

}  // namespace

std::int64_t allocatedSizeBelow(const FileURL& url, const DirectoryWalk::Policy& policy, const std::stop_token& stop,
                                const std::vector<MountPoint>& mounts) {
    DirectoryWalk walk(url, policy, stop, mounts);
    Adder adder;
    walk.run(adder);
    return adder.sum();
}
