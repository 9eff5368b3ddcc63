#pragma once

#include "Desktop/Dialogs.h"

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtGui/QWindow>

class FolderChooser;

/// The questions of the program's only window. Confirmations are shown by the window, which reads them here.
class WindowDialogs : public QObject, public Dialogs {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The window has one, made at launch")

public:
    /// `chooser` must outlive this.
    explicit WindowDialogs(FolderChooser& chooser, QObject* parent = nullptr) : QObject(parent), m_chooser(chooser) {}
    ~WindowDialogs() override;
    Q_DISABLE_COPY_MOVE(WindowDialogs)

    /// The window that owns the dialogs. Hiding it cancels a folder choice.
    void setWindow(QWindow* window);

    /// Whether any question is open. Everything else in the window is disabled then.
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY changed)
    [[nodiscard]] bool isOpen() const { return m_isChoosing || m_isConfirming; }

    /// The confirmation to show.
    Q_PROPERTY(bool isConfirming READ isConfirming NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(QString informativeText READ informativeText NOTIFY changed)
    Q_PROPERTY(QString wholeName READ wholeName NOTIFY changed)
    Q_PROPERTY(QStringList buttons READ buttons NOTIFY changed)
    [[nodiscard]] bool isConfirming() const { return m_isConfirming; }
    [[nodiscard]] QString message() const { return m_question.message; }
    [[nodiscard]] QString informativeText() const { return m_question.informativeText; }
    [[nodiscard]] QString wholeName() const { return m_question.wholeName; }
    [[nodiscard]] QStringList buttons() const { return {m_question.confirmTitle, m_question.cancelTitle}; }
    Q_SIGNAL void changed();

    /// The user's answer to the confirmation; ignored when none is open.
    Q_INVOKABLE void answer(bool confirmed);

    void chooseFolder(const QString& prompt, const std::optional<FileURL>& start,
                      std::function<void(std::optional<FileURL>)> answer) override;
    void confirm(const Confirmation& question, std::function<void(bool)> answer) override;

private:
    void folderChosen(const std::optional<FileURL>& url);

    FolderChooser& m_chooser;
    QPointer<QWindow> m_window;
    bool m_isChoosing = false;
    std::function<void(std::optional<FileURL>)> m_chosen;
    bool m_isConfirming = false;
    Confirmation m_question;
    std::function<void(bool)> m_answer;
};
