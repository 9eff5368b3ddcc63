#pragma once

#include "support/WaitUntil.h"

#include <QtCore/QProcess>

#include <string>

/// The program itself, with a home of the test, used by real keys. It may wait for an answer of this thread meanwhile.
class RunningProgram {
public:
    /// Starts it in this home; whether its window has the keyboard.
    [[nodiscard]] bool start(const std::string& home) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* const variable : {"XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME"}) {
            environment.remove(QString::fromLatin1(variable));
        }
        environment.insert(QStringLiteral("HOME"), QString::fromStdString(home));
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedChannels);
        m_process.start(QStringLiteral(DUSKFERN_PROGRAM), {});
        return xdotool("search --sync --onlyvisible --name ^Duskfern$ windowfocus --sync");
    }

    /// Runs xdotool. Keys go to the focus and not to a window by name: the program may end before the last is released.
    static bool xdotool(const std::string& arguments) {
        QProcess tool;
        tool.start(QStringLiteral("xdotool"), QString::fromStdString(arguments).split(u' '));
        return waitUntil([&] { return tool.state() == QProcess::NotRunning; }) && tool.exitCode() == 0;
    }

    /// Whether it ends by itself, as it should.
    [[nodiscard]] bool ends() const {
        return waitUntil([this] { return m_process.state() == QProcess::NotRunning; }) &&
               m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
    }

private:
    QProcess m_process;
};
