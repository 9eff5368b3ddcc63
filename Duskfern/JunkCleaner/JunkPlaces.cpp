#include "JunkCleaner/JunkPlaces.h"

#include "JunkCleaner/CachePlaces.h"
#include "JunkCleaner/NamePattern.h"

#include <iterator>

JunkPlaces junkPlaces(const UserFolderPaths& paths) {
    const auto inHome = [&](const char* relative) { return paths.home.appendingPathComponent(relative); };
    // The rules of the folders in ~/Library are their names alone.
    constexpr ContentLook byName = ContentLook::byName;
    JunkPlaces all;
    all.processes = paths.systemRoot.appendingPathComponent("proc");
    // For each kind the folder in ~/Library, if there is one, comes before those of Linux desktops.
    all.places = {
        {.url = inHome("Library/Caches"), .kind = JunkKind::cache, .look = byName},
        {.url = paths.cacheHome, .kind = JunkKind::cache, .keep = KeepList::caches},
        {.url = inHome("Library/Logs"), .kind = JunkKind::log, .look = byName},
        {.url = inHome(".local/share/xorg"), .kind = JunkKind::log},
        {.url = paths.stateHome.appendingPathComponent("log"), .kind = JunkKind::log},
        {.url = inHome(".npm/_logs"), .kind = JunkKind::log},
        {.url = paths.temporary, .kind = JunkKind::temporary, .keep = KeepList::temporary, .olderThanDays = 2},
        // What lies here is meant to outlive a restart.
        {.url = paths.systemRoot.appendingPathComponent("var/tmp"),
         .kind = JunkKind::temporary,
         .keep = KeepList::temporary,
         .olderThanDays = 30},
        {.url = inHome("Library/Application Support"), .kind = JunkKind::leftover, .look = byName},
        {.url = inHome(".var/app"), .kind = JunkKind::leftover, .keep = KeepList::personal, .isFlatpakData = true},
        {.url = paths.dataHome, .kind = JunkKind::leftover, .keep = KeepList::support},
        {.url = paths.configHome, .kind = JunkKind::leftover, .keep = KeepList::support},
    };
    // After the leftovers: the caches in a folder that is offered as a whole are not listed.
    std::vector<JunkPlace> caches = cachePlaces(paths);
    std::move(caches.begin(), caches.end(), std::back_inserter(all.places));
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

std::string_view flatpakName(std::string_view identifier) {
    for (;;) {
        const std::size_t dot = identifier.rfind('.');
        const std::string last = foldedName(identifier.substr(dot + 1));
        if (dot == std::string_view::npos || !(last == "desktop" || last == "client" || last == "app")) {
            return identifier.substr(dot + 1);
        }
        identifier = identifier.substr(0, dot);
    }
}
