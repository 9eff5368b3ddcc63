#include "Shell/WindowDialogs.h"

#include "Desktop/FolderChooser.h"

#include <QtGui/QGuiApplication>

#include <utility>

namespace {

/// The window's identifier for desktop portals. On Wayland it needs a protocol that Qt 6.4 does not offer; the dialog
/// then has no parent window.
std::string portalName(const QWindow* window) {
    if (window == nullptr || QGuiApplication::platformName() != QLatin1String("xcb")) {
        return {};
    }
    return "x11:" + QString::number(window->winId(), 16).toStdString();
}

}  // namespace

WindowDialogs::~WindowDialogs() {
    // The receiver of the answer may be destroyed already.
    m_chosen = nullptr;
    m_chooser.cancel();
}

void WindowDialogs::setWindow(QWindow* window) {
    m_window = window;
    connect(window, &QWindow::visibleChanged, this, [this](bool isVisible) {
        if (!isVisible && m_isChoosing) {
            m_chooser.cancel();
        }
    });
}

void WindowDialogs::chooseFolder(const QString& prompt, const std::optional<FileURL>& start,
                                 std::function<void(std::optional<FileURL>)> answer) {
    if (isOpen()) {
        answer(std::nullopt);
        return;
    }
    m_isChoosing = true;
    m_chosen = std::move(answer);
    Q_EMIT changed();
    // Opens the dialog asynchronously: the caller may be an assistive technology that waits for this call to return.
    QMetaObject::invokeMethod(
        this,
        [this, prompt, start] {
            if (m_window == nullptr || !m_window->isVisible()) {
                folderChosen(std::nullopt);
                return;
            }
            m_chooser.choose({prompt, start, portalName(m_window)},
                             [self = QPointer(this)](const std::optional<FileURL>& url) {
                                 if (self != nullptr) {
                                     self->folderChosen(url);
                                 }
                             });
        },
        Qt::QueuedConnection);
}

void WindowDialogs::folderChosen(const std::optional<FileURL>& url) {
    m_isChoosing = false;
    const auto chosen = std::exchange(m_chosen, nullptr);
    Q_EMIT changed();
    if (chosen) {
        chosen(url);
    }
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
