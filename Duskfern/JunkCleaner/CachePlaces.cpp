#include "JunkCleaner/CachePlaces.h"

namespace {

enum class Base : std::size_t { home, cache, data, config };

struct Row {
    Base base;
    std::string_view folder;  ///< In the base; `below` of the place begins there.
    std::string_view below;
    std::string_view only;
    std::string_view except;
    std::string_view program;
    std::string_view processes;
    ContentLook look;
    bool isSafe = true;
};

/// What Chromium writes into the data folder of a program that is built on it, and makes anew.
constexpr std::string_view chromium = "Cache|Code Cache|GPUCache|CachedData|CachedExtensionVSIXs|DawnCache";
constexpr std::string_view storage = "CacheStorage";

/// One of these tells that a folder is Chromium's: "Cache" alone could be anybody's.
constexpr std::string_view chromiumSigns =
    "Code Cache|GPUCache|CachedData|CachedExtensionVSIXs|DawnCache|DawnWebGPUCache|DawnGraphiteCache|Local Storage|"
    "Session Storage|IndexedDB|blob_storage|Preferences|Local State|Cookies|Network|Service Worker|SingletonLock";

/// Folders of IDEs that are no caches, although they lie among them.
constexpr std::string_view ideWork = "LocalHistory|tasks|shelf|consoles|scratches|userHistory|restart|plugins";

constexpr ContentLook all = ContentLook::onlyCopies;
constexpr ContentLook fetched = ContentLook::fetched;

constexpr Row rows[] = {
    // Flatpaks and snaps have a cache folder each.
    {Base::home, ".var/app", "@/cache", {}, {}, {}, {}, all},
    {Base::home, "snap", "@/common/.cache", {}, {}, {}, {}, all},
    // Programs built on Electron keep their caches among their data. Those of a browser's profiles are left alone.
    {Base::config, {}, "@", chromium, {}, {}, {}, all},
    {Base::config, {}, "@/Service Worker", storage, {}, {}, {}, all},
    {Base::config, {}, "@/Partitions/*", chromium, {}, {}, {}, all},
    {Base::config, {}, "@/Partitions/*/Service Worker", storage, {}, {}, {}, all},
    {Base::config, {}, "*/@", chromium, {}, {}, {}, all},
    {Base::config, {}, "*/@/Service Worker", storage, {}, {}, {}, all},
    {Base::home, ".var/app", "@/config/*", chromium, {}, {}, {}, all},
    {Base::home, ".var/app", "@/config/*/Service Worker", storage, {}, {}, {}, all},
    {Base::home, ".var/app", "@/config/*/Partitions/*", chromium, {}, {}, {}, all},
    {Base::home, ".var/app", "@/config/*/Partitions/*/Service Worker", storage, {}, {}, {}, all},
    {Base::home, ".var/app", "@/config/*/*", chromium, {}, {}, {}, all},
    {Base::home, ".var/app", "@/config/*/*/Service Worker", storage, {}, {}, {}, all},
    // Downloads of package managers, which they fetch anew.
    {Base::home, ".npm", {}, "_cacache", {}, "npm", "npm|npx", fetched},
    {Base::home, ".gradle", {}, "caches", {}, "Gradle", "GradleDaemon|GradleWrapperMain|gradle", fetched},
    {Base::home, ".cargo/registry", {}, "cache|src", {}, "Cargo", "cargo|rustc|rust-analyzer", fetched},
    {Base::home, "go/pkg/mod", {}, "cache", {}, "Go", "go|gopls", fetched},
    {Base::home, ".m2/repository", {}, {}, {}, "Maven", "mvn|mvnd|Launcher|MavenServer", ContentLook::localBuilds},
    // Shaders that Steam has compiled or fetched, by the places where packages install it.
    {Base::data, "Steam/steamapps", {}, "shadercache", {}, "Steam", "steam", fetched},
    {Base::home, ".steam/debian-installation/steamapps", {}, "shadercache", {}, "Steam", "steam", fetched},
    {Base::home,
     ".var/app/com.valvesoftware.Steam/data/Steam/steamapps",
     {},
     "shadercache",
     {},
     "Steam",
     "steam",
     fetched},
    {Base::home,
     ".var/app/com.valvesoftware.Steam/.local/share/Steam/steamapps",
     {},
     "shadercache",
     {},
     "Steam",
     "steam",
     fetched},
    {Base::home, "snap/steam/common/.local/share/Steam/steamapps", {}, "shadercache", {}, "Steam", "steam", fetched},
    // Folders of the cache folder that hold one thing that is no cache.
    {Base::cache, "JetBrains", "@", {}, ideWork, {}, {}, all},
    {Base::cache, "Google", "@", {}, ideWork, {}, {}, all},
    {Base::cache, "pypoetry", {}, {}, "virtualenvs", "Poetry", "poetry", fetched},
    // Changes made without a network are in the folders of calendars and contacts until they can be passed on.
    {Base::cache, "evolution", {}, {}, "mail", "Evolution", "evolution", all, false},
};

}  // namespace

std::vector<JunkPlace> cachePlaces(const UserFolderPaths& paths) {
    std::vector<JunkPlace> places;
    for (const Row& row : rows) {
        const FileURL* const bases[] = {&paths.home, &paths.cacheHome, &paths.dataHome, &paths.configHome};
        JunkPlace place;
        place.url = *bases[static_cast<std::size_t>(row.base)];
        if (!row.folder.empty()) {
            place.url = place.url.appendingPathComponent(row.folder);
        }
        place.keep = row.only.empty() && row.look == all ? KeepList::caches : KeepList::none;
        place.look = row.look;
        place.below = row.below;
        place.only = row.only;
        place.beside = row.only == chromium ? chromiumSigns : std::string_view();
        place.isFlatpakData = row.folder == ".var/app";
        place.except = row.except;
        place.program = row.program;
        place.processes = row.processes;
        place.isSafe = row.isSafe;
        if (row.base == Base::cache) {
            place.within = paths.cacheHome;
        }
        if (row.processes == "steam") {
            place.lockFile = paths.home.appendingPathComponent(".steam/steam.pid");
        }
        places.push_back(std::move(place));
    }
    return places;
}
