#pragma once

#include "Foundation/FileURL.h"

#include <QtCore/QString>

#include <functional>
#include <optional>
#include <string>

/// What a person is asked when a folder is to be chosen.
struct FolderQuestion {
    QString prompt;                ///< The title of the button that confirms.
    std::optional<FileURL> start;  ///< The folder to begin in, where one is known.
    std::string parentWindow;      ///< The window it belongs to, as desktop portals name it; empty for none.
};

/// The dialog in which a person picks a folder. Lives on the main thread.
class FolderChooser {
public:
    using Answer = std::function<void(std::optional<FileURL>)>;

    virtual ~FolderChooser() = default;

    /// Opens it and returns at once. `answer` gets the chosen folder, or nothing when cancelled; it is called once,
    /// unless the program ends first. Only one question is open at a time.
    virtual void choose(const FolderQuestion& question, Answer answer) = 0;

    /// Closes the dialog, if it is open: the answer is "nothing", at once.
    virtual void cancel() = 0;
};
