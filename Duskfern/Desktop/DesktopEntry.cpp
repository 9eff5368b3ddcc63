#include "Desktop/DesktopEntry.h"

#include <QtCore/QProcess>

#include <algorithm>

namespace {

/// The base name of the program that a command line starts.
QString programOf(const QString& commandLine) {
    const QStringList words = QProcess::splitCommand(commandLine);
    const auto baseName = [](const QString& word) { return word.mid(word.lastIndexOf(QLatin1Char('/')) + 1); };
    auto word = words.begin();
    if (word != words.end() && baseName(*word) == QLatin1String("env")) {
        // Options and variable assignments come before the program.
        do {
            ++word;
        } while (word != words.end() && (word->startsWith(QLatin1Char('-')) || word->contains(QLatin1Char('='))));
    }
    return word == words.end() ? QString() : baseName(*word);
}

}  // namespace

std::vector<QString> namesInDesktopEntry(const QByteArray& contents) {
    std::vector<QString> names;
    bool isInEntry = false;
    for (const QByteArray& rawLine : contents.split('\n')) {
        const QByteArray line = rawLine.trimmed();
        if (line.startsWith('[')) {
            isInEntry = line == "[Desktop Entry]";
            continue;
        }
        const qsizetype equals = line.indexOf('=');
        if (!isInEntry || equals < 0) {
            continue;
        }
        const QByteArray key = line.left(equals).trimmed();
        const QString value = QString::fromUtf8(line.mid(equals + 1).trimmed());
        if (key == "Name" || key == "StartupWMClass") {
            names.push_back(value);
        } else if (key == "Exec") {
            names.push_back(programOf(value));
        }
    }
    return names;
}
