#include "JunkCleaner/JunkPlaces.h"

JunkPlaces junkPlaces(const UserFolderPaths& paths) {
    const auto inHome = [&](const char* relative) { return paths.home.appendingPathComponent(relative); };
    JunkPlaces all;
    // For each kind the folder in ~/Library, if there is one, comes before those of Linux desktops.
    all.places = {
        {.url = inHome("Library/Caches"), .kind = JunkKind::cache},
        {.url = paths.cacheHome, .kind = JunkKind::cache, .keep = KeepList::caches},
        {.url = inHome("Library/Logs"), .kind = JunkKind::log},
        {.url = inHome(".local/share/xorg"), .kind = JunkKind::log},
        {.url = paths.stateHome.appendingPathComponent("log"), .kind = JunkKind::log},
        {.url = inHome(".npm/_logs"), .kind = JunkKind::log},
        {.url = paths.temporary, .kind = JunkKind::temporary, .keep = KeepList::temporary, .olderThanDays = 2},
        {.url = inHome("Library/Application Support"), .kind = JunkKind::leftover},
        {.url = inHome(".var/app"), .kind = JunkKind::leftover, .isFlatpakData = true},
        {.url = paths.dataHome, .kind = JunkKind::leftover, .keep = KeepList::support},
        {.url = paths.configHome, .kind = JunkKind::leftover, .keep = KeepList::support},
    };
    all.personal = {paths.home};
    for (const char* const folder : {"Music", "Movies", "Pictures", "Documents", "Desktop", "Downloads", "Applications",
                                     ".ssh", ".gnupg", "Videos", "Public", "Templates", "bin", ".local", "Library"}) {
        all.personal.push_back(inHome(folder));
    }
    for (const std::optional<FileURL>& own :
         {paths.music, paths.videos, paths.pictures, paths.documents, paths.desktop, paths.downloads}) {
        if (own) {
            all.personal.push_back(*own);
        }
    }
    all.support = {paths.stateHome};
    for (const char* const folder : {".local/share", ".local/state", ".local/bin", ".config"}) {
        all.support.push_back(inHome(folder));
    }
    for (const JunkPlace& place : all.places) {
        if (place.kind == JunkKind::leftover) {
            all.support.push_back(place.url);
        }
    }
    return all;
}

QString originName(const QString& name, const QString& fallback) {
    QString rest = name;
    rest.remove(QLatin1String("com."));
    const QString piece = rest.mid(rest.lastIndexOf(QLatin1Char('.')) + 1);
    return piece.isEmpty() ? fallback : piece;
}
