#pragma once

#include "Foundation/FileURL.h"

#include <QtCore/QString>

#include <functional>
#include <optional>
#include <string>

/// The request to choose a folder.
struct FolderQuestion {
    QString prompt;                ///< The title of the button that confirms.
    std::optional<FileURL> start;  ///< The folder to begin in, if any.
    std::string parentWindow;      ///< Identifier of the parent window as desktop portals define it; empty for none.
};

/// A dialog for choosing a folder. Lives on the main thread.
class FolderChooser {
public:
    using Answer = std::function<void(std::optional<FileURL>)>;

    virtual ~FolderChooser() = default;

    /// Opens the dialog and returns. `answer` is called once with the chosen folder, or with nothing when cancelled,
    /// unless the program ends first. Must not be called while the dialog is open.
    virtual void choose(const FolderQuestion& question, Answer answer) = 0;

    /// Closes the dialog if it is open; its answer is then nothing, immediately.
    virtual void cancel() = 0;
};
