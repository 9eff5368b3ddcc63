#pragma once

#include "Foundation/FileURL.h"

#include <QtCore/QString>

#include <functional>
#include <optional>

class QWindow;

/// The dialog in which a person picks a folder.
class FolderChooser {
public:
    virtual ~FolderChooser() = default;

    /// Opens it over `parent`, beginning at `start` where that is known, and returns at once. `answer` gets the chosen
    /// folder, or nothing when cancelled; it is called once. Only one dialog is open at a time.
    virtual void choose(QWindow* parent, const QString& prompt, const std::optional<FileURL>& start,
                        std::function<void(std::optional<FileURL>)> answer) = 0;
};
