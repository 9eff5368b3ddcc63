#pragma once

#include "Foundation/FileURL.h"

#include <QtCore/QString>

#include <functional>
#include <optional>

/// A warning with two answers.
struct Confirmation {
    QString message;          ///< The question.
    QString informativeText;  ///< Text below the question.
    QString confirmTitle;     ///< The first button, the default one.
    QString cancelTitle;      ///< The second button; also the result of Esc and closing.
    QString wholeName = {};   ///< The whole of a name that is shortened in the question; empty if none is.
};

/// Asks the user. Each question is modal to the window but does not block the thread: the call returns at once, and the
/// answer comes later on the main thread. While a question is open, a second one is answered "no" immediately.
class Dialogs {
public:
    virtual ~Dialogs() = default;

    /// Lets the user choose one folder, beginning at `start` if given; `prompt` is the title of the confirming button.
    /// The answer is nothing when cancelled.
    virtual void chooseFolder(const QString& prompt, const std::optional<FileURL>& start,
                              std::function<void(std::optional<FileURL>)> answer) = 0;

    /// The answer is true if the first button was pressed.
    virtual void confirm(const Confirmation& question, std::function<void(bool)> answer) = 0;
};
