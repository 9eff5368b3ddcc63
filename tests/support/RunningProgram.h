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

    /// Starts it once more; whether that start ends, having told the first one what is wanted.
    [[nodiscard]] bool startAgain(const char* argument) const {
        QProcess later;
        later.setProcessEnvironment(m_process.processEnvironment());
        later.start(QStringLiteral(DUSKFERN_PROGRAM), {QString::fromUtf8(argument)});
        return ends(later);
    }

    /// Whether it ends by itself, as it should.
    [[nodiscard]] bool ends() const { return ends(m_process); }

private:
    [[nodiscard]] static bool ends(const QProcess& process) {
        return waitUntil([&] { return process.state() == QProcess::NotRunning; }) &&
               process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }

    QProcess m_process;
};
