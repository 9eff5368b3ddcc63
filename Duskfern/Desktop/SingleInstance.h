#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>

#include <memory>

/// Makes the program run once in a session: a later start passes its request to the first one and ends. Uses the
/// session bus, on which the program has its application id and the interface org.freedesktop.Application, so that the
/// desktop can start it and its actions that way too.
class SingleInstance final : public QObject {
    Q_OBJECT

public:
    /// What a start asks for.
    struct Request {
        QString action;  ///< One of the desktop entry's actions; empty if only the window is to be shown.
        QString token;   ///< Permits the window to come to the front, where the desktop asks for that; may be empty.
    };

    enum class Role {
        first,  ///< Shows the window. Also without a session bus, or if the one that runs does not answer.
        later,  ///< The request was passed on: the program is to end.
    };

    /// Begins to ask, on a thread of its own. Must be created on the main thread: Qt's event loop delivers the requests
    /// of later starts through its GLib dispatcher.
    SingleInstance(const QString& applicationId, const Request& request, QObject* parent = nullptr);

    /// Gives the application id up, so that a start from now on opens a window of its own.
    ~SingleInstance() override;
    Q_DISABLE_COPY_MOVE(SingleInstance)

    /// Waits until it is known: 400 ms for the bus, longer only for the answer of one that runs.
    [[nodiscard]] Role role();

    /// The request of this start, with the token that the environment holds. To be called before the application object
    /// is created, which takes the token out of it.
    [[nodiscard]] static Request requestOf(const QString& action);

Q_SIGNALS:
    void requested(const SingleInstance::Request& request);

private:
    struct Link;

    std::shared_ptr<Link> m_link;
};
