#pragma once

#include "Desktop/MountedVolumes.h"

#include <memory>

/// The volumes in the kernel's mount table. Each file system is queried on its own background thread, all at the same
/// time, because a dead server may never answer; the main thread waits only for a limited time. A file system that has
/// not answered an earlier query is not queried again: its late answer counts for the newest query.
class SystemVolumes final : public MountedVolumes {
public:
    /// The functions that access the system, called on several background threads concurrently. Replaced in tests.
    struct Sources {
        std::function<std::optional<std::vector<Mount>>()> table = [] { return readMountTable(); };
        std::function<std::optional<VolumeValues>(const Mount&)> values = valuesOf;
    };

    SystemVolumes();
    explicit SystemVolumes(Sources sources);
    ~SystemVolumes() override;
    Q_DISABLE_COPY_MOVE(SystemVolumes)

    [[nodiscard]] Answers ask(std::function<void(const Answers&)> later) override;

private:
    class Query;
    std::shared_ptr<Query> m_query;  ///< Shared with threads that may outlive this.
};
