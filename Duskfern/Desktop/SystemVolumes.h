#pragma once

#include "Desktop/MountedVolumes.h"

#include <memory>

/// The volumes of the kernel's mount table. Each mount is asked on a thread of its own, all at once and under one
/// deadline, because a server that is gone may never answer; a mount that has not answered yet is not asked again.
class SystemVolumes final : public MountedVolumes {
public:
    SystemVolumes();
    ~SystemVolumes() override;
    Q_DISABLE_COPY_MOVE(SystemVolumes)

    [[nodiscard]] std::optional<std::vector<Mount>> visibleMounts() override;
    [[nodiscard]] std::vector<std::optional<VolumeValues>> values(const std::vector<Mount>& mounts) override;

private:
    struct Asked;
    std::shared_ptr<Asked> m_asked;  ///< Shared with threads that may outlive this.
};
