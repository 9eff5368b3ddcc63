#include "Desktop/DesktopEntry.h"

#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>

#include <algorithm>

namespace {

/// A program that only starts another one, named by its first argument that is neither an option nor an assignment.
struct Wrapper {
    const char* name = "";
    const char* optionsWithValue = "";  ///< Options whose value is the next word, each followed by a blank.
    int leading = 0;                    ///< How many words precede the program, for instance "run".
};

constexpr Wrapper wrappers[] = {
    {"env", "-u -C --unset --chdir "},
    {"flatpak", "", 1},
    {"snap", "", 1},
    {"sudo", "-u -g "},
    {"pkexec", "--user "},
    {"gksu", "-u "},
    {"gksudo", "-u "},
    {"kdesu", "-u "},
    {"nice", "-n "},
    {"ionice", "-c -n "},
    {"chrt", "", 1},
    {"taskset", "", 1},
    {"timeout", "-k -s ", 1},
    {"nohup"},
    {"setsid"},
    {"exec"},
    {"dbus-launch"},
    {"dbus-run-session"},
    {"systemd-run", "-p "},
    {"systemd-inhibit"},
    {"firejail"},
    {"optirun"},
    {"primusrun"},
    {"prime-run"},
    {"gamemoderun"},
    {"mangohud"},
    {"gamescope", "-w -h -W -H -r "},
    {"pw-jack"},
    {"padsp"},
    {"apulse"},
    {"cage"},
    {"gtk-launch"},
    {"gapplication", "", 1},
    // Interpreters: the program is the script.
    {"python"},
    {"python2"},
    {"python3", "-W -X "},
    {"perl"},
    {"ruby"},
    {"node"},
    {"nodejs"},
    {"electron"},
    {"gjs"},
    {"java", "-cp -classpath "},
    {"mono"},
    {"wine"},
    {"wine64"},
    {"dotnet"},
};

constexpr const char* shells[] = {"sh", "bash", "dash", "zsh", "ksh", "fish"};

/// Commands of shells that start nothing.
constexpr const char* builtins[] = {"cd", "export", "source", ".", "test", "[", "if", "then", "set", "echo", "true"};

QString baseName(const QString& word) {
    return word.mid(word.lastIndexOf(QLatin1Char('/')) + 1);
}

template <class Names>
bool isOneOf(const Names& names, const QString& name) {
    return std::any_of(std::begin(names), std::end(names),
                       [&](const char* each) { return name == QLatin1String(each); });
}

/// Skips the wrapper at the beginning of `words`.
void skipWrapper(const Wrapper& wrapper, QStringList& words, QStringList& programs) {
    words.removeFirst();
    int leading = wrapper.leading;
    while (!words.isEmpty()) {
        const QString word = words.takeFirst();
        if (word.startsWith(QLatin1String("--command="))) {
            programs += baseName(word.mid(word.indexOf(QLatin1Char('=')) + 1));
        } else if (word.startsWith(QLatin1Char('-'))) {
            if (QLatin1String(wrapper.optionsWithValue).contains(QString(word + QLatin1Char(' '))) &&
                !words.isEmpty()) {
                words.removeFirst();
            }
        } else if (!word.contains(QLatin1Char('=')) && leading-- <= 0) {
            words.prepend(word);
            return;
        }
    }
}

// NOLINTNEXTLINE(misc-no-recursion): the text for a shell is shorter than the command line that has it.
void addPrograms(QStringList words, QStringList& programs) {
    while (!words.isEmpty()) {
        const QString name = baseName(words.first());
        const auto* const wrapper = std::find_if(std::begin(wrappers), std::end(wrappers),
                                                 [&](const Wrapper& each) { return name == QLatin1String(each.name); });
        if (wrapper != std::end(wrappers)) {
            skipWrapper(*wrapper, words, programs);
            continue;
        }
        const auto command = std::find_if(words.begin() + 1, words.end(), [](const QString& word) {
            return word.startsWith(QLatin1Char('-')) && word.endsWith(QLatin1Char('c'));
        });
        if (isOneOf(shells, name) && command != words.end() && command + 1 != words.end()) {
            static const QRegularExpression separators(QStringLiteral("[;&|\\n]+"));
            for (const QString& part : (command + 1)->split(separators)) {
                addPrograms(QProcess::splitCommand(part.trimmed()), programs);
            }
        } else if (isOneOf(shells, name) && words.size() > 1) {
            words.removeFirst();
            continue;
        } else if (!isOneOf(builtins, name)) {
            programs += name;
            // A script or a package: its name without the extension as well.
            static const QRegularExpression extension(
                QStringLiteral("\\.(py|sh|pl|rb|js|jar|exe|bin|x86_64|AppImage)$"));
            if (name.contains(extension)) {
                programs += QString(name).remove(extension);
            }
        }
        return;
    }
}

}  // namespace

QStringList programsOf(const QString& commandLine) {
    QStringList programs;
    addPrograms(QProcess::splitCommand(commandLine), programs);
    programs.removeAll(QString());
    return programs;
}

QStringList piecesOfIdentifier(const QString& identifier) {
    constexpr int shortest = 4;
    // Hosts of projects, desktops, and words that say what kind of program it is.
    static const QSet<QString> common = [] {
        QSet<QString> words;
        for (const char* const word :
             {"com",         "org",         "net",           "gnome",     "kde",       "freedesktop", "github",
              "gitlab",      "sourceforge", "codeberg",      "bitbucket", "launchpad", "flathub",     "debian",
              "ubuntu",      "canonical",   "fedoraproject", "apache",    "xfce",      "lxqt",        "mate",
              "cinnamon",    "google",      "microsoft",     "mozilla",   "linux",     "desktop",     "client",
              "application", "launcher",    "browser",       "editor",    "viewer",    "player",      "manager",
              "settings",    "preferences", "terminal",      "studio",    "tool",      "tools",       "utility",
              "server",      "setup",       "config",        "control",   "center",    "panel",       "default",
              "stable",      "beta",        "nightly",       "wrapper",   "handler",   "open",        "file",
              "files",       "system",      "user",          "main",      "game",      "games",       "music",
              "video",       "photo",       "photos",        "image",     "text",      "document",    "documents",
              "daemon",      "service",     "plugin",        "extension", "helper",    "monitor",     "data",
              "cache",       "backup",      "local",         "share"}) {
            words.insert(QLatin1String(word));
        }
        return words;
    }();
    static const QRegularExpression separators(QStringLiteral("[._-]"));
    QStringList pieces;
    for (const QString& piece : identifier.split(separators, Qt::SkipEmptyParts)) {
        if (piece.size() >= shortest && !common.contains(piece.toLower())) {
            pieces += piece;
        }
    }
    return pieces;
}

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
        } else if (key == "Exec" || key == "TryExec") {
            const QStringList programs = programsOf(value);
            names.insert(names.end(), programs.begin(), programs.end());
        }
    }
    return names;
}
