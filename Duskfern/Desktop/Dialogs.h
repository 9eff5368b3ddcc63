#pragma once

#include "Foundation/FileURL.h"

#include <QtCore/QString>

#include <functional>
#include <optional>

/// A warning with two answers.
struct Confirmation {
    QString message;          ///< The question.
    QString informativeText;  ///< What stands below it.
    QString confirmTitle;     ///< The first button, the default one.
    QString cancelTitle;      ///< The second button; Esc and closing mean it.
};

/// The questions the program asks. Each is modal to the window without blocking the thread: the call returns at once
/// and the answer comes later, on the main thread. While one question is open a second one is not asked: its answer
/// is "no", at once.
class Dialogs {
public:
    virtual ~Dialogs() = default;

    /// Lets the user choose one folder, beginning at `start` where that is known; `prompt` is the title of the button
    /// that confirms. Nothing when cancelled.
    virtual void chooseFolder(const QString& prompt, const std::optional<FileURL>& start,
                              std::function<void(std::optional<FileURL>)> answer) = 0;

    /// True when the first button was pressed.
    virtual void confirm(const Confirmation& question, std::function<void(bool)> answer) = 0;
};
