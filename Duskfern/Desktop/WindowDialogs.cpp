#include "Desktop/WindowDialogs.h"

#include "Desktop/FolderChooser.h"

#include <utility>

void WindowDialogs::chooseFolder(const QString& prompt, const std::optional<FileURL>& start,
                                 std::function<void(std::optional<FileURL>)> answer) {
    if (isOpen()) {
        answer(std::nullopt);
        return;
    }
    m_isChoosing = true;
    Q_EMIT changed();
    // The caller may be an assistive technology that waits for its call to return; the dialog opens after that.
    QMetaObject::invokeMethod(
        this,
        [this, prompt, start, answer = std::move(answer)] {
            m_chooser.choose(m_window, prompt, start,
                             [self = QPointer(this), answer](const std::optional<FileURL>& url) {
                                 if (self != nullptr) {
                                     self->m_isChoosing = false;
                                     Q_EMIT self->changed();
                                     answer(url);
                                 }
                             });
        },
        Qt::QueuedConnection);
}

void WindowDialogs::confirm(const Confirmation& question, std::function<void(bool)> answer) {
    if (isOpen()) {
        answer(false);
        return;
    }
    m_question = question;
    m_answer = std::move(answer);
    m_isConfirming = true;
    Q_EMIT changed();
}

void WindowDialogs::answer(bool confirmed) {
    if (m_isConfirming) {
        m_isConfirming = false;
        const auto answered = std::exchange(m_answer, nullptr);
        Q_EMIT changed();
        answered(confirmed);
    }
}
