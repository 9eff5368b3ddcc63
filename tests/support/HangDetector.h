#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QTimer>

#include <algorithm>

/// Notices when the event loop of the window's thread stands still. Only tells what hangs from what does not: how
/// quick the window is nobody measures with it.
class HangDetector : public QObject {
    Q_OBJECT

public:
    HangDetector() {
        connect(&m_timer, &QTimer::timeout, this, &HangDetector::look);
        m_timer.start(10);
        m_sinceLast.start();
    }

    /// Forgets what was.
    void restart() {
        m_longest = 0;
        m_sinceLast.restart();
    }

    /// No event was handled for longer than any work on that thread takes, even where the machine is busy.
    [[nodiscard]] bool hasStoodStill() {
        look();
        return m_longest > 1500;
    }

private:
    void look() { m_longest = std::max(m_longest, m_sinceLast.restart()); }

    QTimer m_timer;
    QElapsedTimer m_sinceLast;
    qint64 m_longest = 0;  ///< Milliseconds.
};
