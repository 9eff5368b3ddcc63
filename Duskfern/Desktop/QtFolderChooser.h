#pragma once

#include "Desktop/FolderChooser.h"

/// The desktop's own folder dialog where its platform theme offers one, else that of Qt. Leaves nothing behind: Qt's
/// own would note the last folder and its layout in the user's settings.
class QtFolderChooser final : public FolderChooser {
public:
    QtFolderChooser();
    void choose(QWindow* parent, const QString& prompt, const std::optional<FileURL>& start,
                std::function<void(std::optional<FileURL>)> answer) override;
};
