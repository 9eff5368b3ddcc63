#pragma once

#include "Desktop/FolderChooser.h"

#include <memory>

/// The desktop's own folder dialog, shown by its portal; where there is no portal that can show one, another chooser.
/// Nothing waits for the portal: everything happens later, on the main thread, where Qt's event loop delivers what it
/// says by way of its GLib dispatcher.
class PortalFolderChooser final : public FolderChooser {
public:
    /// `fallback` outlives this.
    explicit PortalFolderChooser(FolderChooser& fallback);
    ~PortalFolderChooser() override;
    PortalFolderChooser(const PortalFolderChooser&) = delete;
    PortalFolderChooser& operator=(const PortalFolderChooser&) = delete;

    void choose(const FolderQuestion& question, Answer answer) override;
    void cancel() override;

private:
    struct Request;

    FolderChooser& m_fallback;
    std::shared_ptr<Request> m_request;  ///< What the portal is asked; none while it is asked nothing.
};
