#include "Desktop/BusFileManager.h"

#include "Desktop/FileURI.h"
#include "Desktop/GioSupport.h"

#include <set>
#include <string>

namespace {

void openFolders(const std::set<std::string>& folders) {
    // GIO_USE_VFS, set by this program for itself, would take the Trash and network access from the file manager.
    const GObjectPtr<GAppLaunchContext> context(g_app_launch_context_new());
    g_app_launch_context_unsetenv(context.get(), "GIO_USE_VFS");
    g_app_launch_context_unsetenv(context.get(), "MESA_SHADER_CACHE_DISABLE");
    for (const std::string& folder : folders) {
        g_app_info_launch_default_for_uri_async(folder.c_str(), context.get(), nullptr, nullptr, nullptr);
    }
}

/// The arguments of ShowItems: URIs and an empty startup id.
GVariant* itemsToShow(const std::vector<std::string>& uris) {
    GVariantBuilder items;
    g_variant_builder_init(&items, G_VARIANT_TYPE("as"));
    for (const std::string& item : uris) {
        g_variant_builder_add(&items, "s", item.c_str());
    }
    return g_variant_new("(ass)", &items, "");
}

}  // namespace

void BusFileManager::reveal(const std::vector<FileURL>& urls) {
    if (urls.empty()) {
        return;
    }
    std::vector<std::string> uris;
    std::set<std::string> folders;
    for (const FileURL& url : urls) {
        uris.push_back(fileURI(url));
        folders.insert(fileURI(url.deletingLastPathComponent()));
    }
    const auto onAnswer = [folders](GObject* bus, GAsyncResult* result) {
        if (!GPtr<GVariant>(g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr))) {
            openFolders(folders);
        }
    };
    const auto onBus = [uris, folders, onAnswer](GObject*, GAsyncResult* result) {
        const GObjectPtr<GDBusConnection> bus(g_bus_get_finish(result, nullptr));
        if (!bus) {
            openFolders(folders);
            return;
        }
        // The default would exit the program when the session bus closes.
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
        g_dbus_connection_call(bus.get(), "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                               "org.freedesktop.FileManager1", "ShowItems", itemsToShow(uris), nullptr,
                               G_DBUS_CALL_FLAGS_NONE, -1, nullptr, runAsyncHandler, onceDone(onAnswer));
    };
    g_bus_get(G_BUS_TYPE_SESSION, nullptr, runAsyncHandler, onceDone(onBus));
}
