#pragma once

#include "Desktop/FolderChooser.h"

#include <memory>

/// The desktop's own folder dialog, shown by its portal; where the portal cannot show one, another chooser. Nothing
/// blocks: Qt's event loop delivers the portal's messages on the main thread through its GLib dispatcher.
class PortalFolderChooser final : public FolderChooser {
public:
    /// `fallback` must outlive this.
    explicit PortalFolderChooser(FolderChooser& fallback);
    ~PortalFolderChooser() override;
    PortalFolderChooser(const PortalFolderChooser&) = delete;
    PortalFolderChooser& operator=(const PortalFolderChooser&) = delete;

    void choose(const FolderQuestion& question, Answer answer) override;
    void cancel() override;

private:
    struct Request;

    FolderChooser& m_fallback;
    std::shared_ptr<Request> m_request;  ///< The request in progress; null when there is none.
};
