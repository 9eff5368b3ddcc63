#pragma once

#include "Desktop/MountedVolumes.h"

#include <memory>

/// The volumes of the kernel's mount table. The table is read and each file system is asked on a background thread of
/// its own, all at once, because a server that is gone may never answer; the main thread only waits, and not for long.
/// What has not answered an earlier question is not asked again: its answer, when it comes, counts for the newest one.
class SystemVolumes final : public MountedVolumes {
public:
    /// What is asked of the system, on several background threads at once. A test may ask something else.
    struct Questions {
        std::function<std::optional<std::vector<Mount>>()> table = [] { return readMountTable(); };
        std::function<std::optional<VolumeValues>(const Mount&)> values = valuesOf;
    };

    SystemVolumes();
    explicit SystemVolumes(Questions questions);
    ~SystemVolumes() override;
    Q_DISABLE_COPY_MOVE(SystemVolumes)

    [[nodiscard]] Answers ask(std::function<void(const Answers&)> later) override;

private:
    class Inquiry;
    std::shared_ptr<Inquiry> m_inquiry;  ///< Shared with threads that may outlive this.
};
