#include "Desktop/InstalledGames.h"

#include "Foundation/DiskRequests.h"
#include "Foundation/SmallFile.h"

#include <dirent.h>
#include <fcntl.h>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QRegularExpression>

#include <memory>
#include <set>

namespace InstalledGames {

namespace {

/// More than any real list of games.
constexpr std::size_t sizeLimit = std::size_t{8} << 20;

QString contentsOf(const FileURL& file) {
    return QString::fromStdString(readSmallFile(AT_FDCWD, file.path().c_str(), sizeLimit).value_or(std::string()));
}

std::vector<QString> filesIn(const FileURL& folder) {
    struct CloseFolder {
        void operator()(DIR* stream) const { closedir(stream); }
    };
    std::vector<QString> files;
    const std::unique_ptr<DIR, CloseFolder> stream(opendir(folder.path().c_str()));
    while (const dirent* const entry = stream != nullptr ? readdir(stream.get()) : nullptr) {
        heartbeat();
        files.push_back(QString::fromUtf8(entry->d_name));
    }
    return files;
}

/// The values of a key in Valve's format: lines of `"key"  "value"`.
std::vector<QString> valuesOf(const QString& key, const QString& text) {
    std::vector<QString> values;
    const QRegularExpression line(QStringLiteral("\"%1\"\\s+\"([^\"]*)\"").arg(key));
    for (auto match = line.globalMatch(text); match.hasNext();) {
        values.push_back(match.next().captured(1));
    }
    return values;
}

void addSteam(const FileURL& folder, std::vector<QString>& names) {
    const FileURL apps = folder.appendingPathComponent("steamapps");
    std::set<FileURL> libraries{apps};
    for (const QString& path :
         valuesOf(QStringLiteral("path"), contentsOf(apps.appendingPathComponent("libraryfolders.vdf")))) {
        if (path.startsWith(QLatin1Char('/'))) {
            libraries.insert(FileURL(path.toStdString()).appendingPathComponent("steamapps"));
        }
    }
    for (const FileURL& library : libraries) {
        for (const QString& file : filesIn(library)) {
            if (file.startsWith(QLatin1String("appmanifest_"))) {
                const QString manifest = contentsOf(library.appendingPathComponent(file.toStdString()));
                for (const char* const key : {"name", "installdir"}) {
                    for (QString& value : valuesOf(QLatin1String(key), manifest)) {
                        names.push_back(std::move(value));
                    }
                }
            }
        }
    }
}

void addLutris(const FileURL& folder, std::vector<QString>& names) {
    static const QRegularExpression ending(QStringLiteral("(-\\d+)?\\.yml$"));
    for (QString file : filesIn(folder)) {
        if (file.contains(ending)) {
            names.push_back(file.remove(ending));
        }
    }
}

/// The lists of the stores differ; all name their games by these keys.
// NOLINTNEXTLINE(misc-no-recursion): the parser limits the depth.
void addHeroic(const QJsonValue& value, std::vector<QString>& names) {
    for (const auto& element : value.toArray()) {
        addHeroic(element, names);
    }
    const QJsonObject object = value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member) {
        const QString text = member.value().toString();
        if (text.isEmpty()) {
            addHeroic(member.value(), names);
        } else if (member.key() == QLatin1String("title") || member.key() == QLatin1String("app_name") ||
                   member.key() == QLatin1String("appName") || member.key() == QLatin1String("install_path") ||
                   member.key() == QLatin1String("folder_name")) {
            names.push_back(text.mid(text.lastIndexOf(QLatin1Char('/')) + 1));
        }
    }
}

}  // namespace

std::vector<QString> names(const std::vector<FileURL>& steam, const std::vector<FileURL>& lutris,
                           const std::vector<FileURL>& heroic) {
    std::vector<QString> names;
    for (const FileURL& folder : steam) {
        addSteam(folder, names);
    }
    for (const FileURL& folder : lutris) {
        addLutris(folder, names);
    }
    for (const FileURL& list : heroic) {
        const QJsonDocument document = QJsonDocument::fromJson(contentsOf(list).toUtf8());
        addHeroic(document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object()), names);
    }
    return names;
}

}  // namespace InstalledGames
