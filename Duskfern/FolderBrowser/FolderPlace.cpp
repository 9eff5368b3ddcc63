#include "FolderBrowser/FolderPlace.h"

#include "Desktop/UserFolders.h"

#include <algorithm>
#include <optional>

std::vector<FolderPlace> folderPlaces(const UserFolderPaths& folders, const std::vector<FileURL>& disks) {
    std::vector<FolderPlace> places;
    const auto add = [&](const FileURL& url, const QString& name, const char* symbol) {
        const bool isKnown =
            std::any_of(places.begin(), places.end(), [&](const FolderPlace& place) { return place.url == url; });
        if (!isKnown) {
            places.push_back({url, name, QString::fromLatin1(symbol), {}});
        }
        return !isKnown;
    };
    const auto addNamed = [&](const std::optional<FileURL>& url, const char* symbol) {
        if (url) {
            add(*url, displayText(url->lastPathComponent()), symbol);
        }
    };
    add(folders.home, QStringLiteral("Inicio"), "house.fill");
    addNamed(folders.desktop, "menubar.dock.rectangle");
    addNamed(folders.documents, "doc.fill");
    addNamed(folders.downloads, "arrow.down.circle.fill");
    addNamed(folders.music, "music.note");
    addNamed(folders.pictures, "photo.fill");
    addNamed(folders.videos, "film.fill");
    add(folders.systemRoot, QStringLiteral("Equipo"), "internaldrive.fill");
    QString heading = QStringLiteral("Discos");
    for (const FileURL& disk : disks) {
        if (add(disk, displayText(disk.lastPathComponent()), "externaldrive.fill")) {
            places.back().heading = heading;
            heading.clear();
        }
    }
    return places;
}
