#include "Desktop/PortalFolderChooser.h"

#include "Desktop/FileURI.h"
#include "Desktop/GioSupport.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* fileChooser = "org.freedesktop.portal.FileChooser";
constexpr const char* request = "org.freedesktop.portal.Request";

/// The first version of the interface that can choose folders.
constexpr guint32 directoryVersion = 3;

/// A portal that does not tell its version, or that it has opened the dialog, within these times is treated as missing.
constexpr int versionTimeoutMilliseconds = 1000;
constexpr int openTimeoutMilliseconds = 3000;

/// A dialog that ended sooner was not closed by the user: the portal could not show it.
constexpr std::chrono::milliseconds shortestDialog{500};

/// The response code of a portal request.
enum class ResponseCode : guint32 {
    chosen = 0,
    cancelled = 1,
    other = 2,  ///< Closed by the window manager, or never shown.
};

/// The object path of the request made by a call from `bus` with this token.
std::string requestPath(GDBusConnection* bus, const std::string& token) {
    std::string sender = g_dbus_connection_get_unique_name(bus) + 1;  // behind the colon
    std::replace(sender.begin(), sender.end(), '.', '_');
    return std::string(portalPath) + "/request/" + sender + '/' + token;
}

/// Waits for the answer only to keep the connection alive: the bus drops messages of a connection that is closed.
void closeRequest(GDBusConnection* bus, const std::string& path) {
    const auto onAnswer = [](GObject* source, GAsyncResult* result) {
        const GPtr<GVariant> answer(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, nullptr));
    };
    g_dbus_connection_call(bus, portalName, path.c_str(), request, "Close", nullptr, nullptr,
                           G_DBUS_CALL_FLAGS_NO_AUTO_START, openTimeoutMilliseconds, nullptr, runAsyncHandler,
                           onceDone(onAnswer));
}

GVariant* openFileArguments(const FolderQuestion& question, const std::string& token) {
    GVariantBuilder options;
    g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&options, "{sv}", "handle_token", g_variant_new_string(token.c_str()));
    g_variant_builder_add(&options, "{sv}", "accept_label", g_variant_new_string(question.prompt.toUtf8().constData()));
    g_variant_builder_add(&options, "{sv}", "modal", g_variant_new_boolean(TRUE));
    g_variant_builder_add(&options, "{sv}", "multiple", g_variant_new_boolean(FALSE));
    g_variant_builder_add(&options, "{sv}", "directory", g_variant_new_boolean(TRUE));
    if (question.start) {
        g_variant_builder_add(&options, "{sv}", "current_folder",
                              g_variant_new_bytestring(question.start->path().c_str()));
    }
    return g_variant_new("(ssa{sv})", question.parentWindow.c_str(), "Elegir carpeta", &options);
}

/// The folder in the results of a request.
std::optional<FileURL> chosenFolder(GVariant* results) {
    const GPtr<GVariant> uris(g_variant_lookup_value(results, "uris", G_VARIANT_TYPE_STRING_ARRAY));
    if (!uris || g_variant_n_children(uris.get()) == 0) {
        return std::nullopt;
    }
    const GPtr<GVariant> first(g_variant_get_child_value(uris.get(), 0));
    return fileURLFromURI(g_variant_get_string(first.get(), nullptr));
}

}  // namespace

/// One request to the portal. Pending calls hold a weak pointer, so that late answers are ignored.
struct PortalFolderChooser::Request : std::enable_shared_from_this<Request> {
    Request(PortalFolderChooser& chooser, FolderQuestion asked, Answer answered)
        : owner(chooser), question(std::move(asked)), answer(std::move(answered)) {}
    ~Request();
    Request(const Request&) = delete;
    Request& operator=(const Request&) = delete;

    void connect();
    void askVersion();
    void open();
    void opened(const std::string& path);
    void subscribe(const std::string& path);
    void ended(GVariant* arguments);
    void finish(const std::optional<FileURL>& url);
    void fallBack();

    PortalFolderChooser& owner;
    FolderQuestion question;
    Answer answer;
    GObjectPtr<GDBusConnection> bus;
    std::string subscribedPath;  ///< The path of the request whose response is awaited.
    bool isOpen = false;         ///< Whether the portal shows the dialog.
    std::chrono::steady_clock::time_point begin;
    guint subscription = 0;
    guint watch = 0;
};

PortalFolderChooser::Request::~Request() {
    if (subscription != 0) {
        g_dbus_connection_signal_unsubscribe(bus.get(), subscription);
    }
    if (watch != 0) {
        g_bus_unwatch_name(watch);
    }
    if (isOpen) {
        closeRequest(bus.get(), subscribedPath);
    }
}

void PortalFolderChooser::Request::connect() {
    const auto onBus = [weak = weak_from_this()](GObject*, GAsyncResult* result) {
        GObjectPtr<GDBusConnection> connection(g_bus_get_finish(result, nullptr));
        const std::shared_ptr<Request> self = weak.lock();
        if (!self) {
            return;
        }
        if (!connection) {
            self->fallBack();
            return;
        }
        // The default would exit the program when the session bus closes.
        g_dbus_connection_set_exit_on_close(connection.get(), FALSE);
        self->bus = std::move(connection);
        self->askVersion();
    };
    // Not cancellable: the connection is shared, so cancelling would fail the call for other users of it too.
    g_bus_get(G_BUS_TYPE_SESSION, nullptr, runAsyncHandler, onceDone(onBus));
}

void PortalFolderChooser::Request::askVersion() {
    const auto onAnswer = [weak = weak_from_this()](GObject* source, GAsyncResult* result) {
        const GPtr<GVariant> tuple(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, nullptr));
        const std::shared_ptr<Request> self = weak.lock();
        if (!self) {
            return;
        }
        GPtr<GVariant> version;
        if (tuple) {
            g_variant_get(tuple.get(), "(v)", static_cast<GVariant**>(Out(version)));
        }
        if (version && g_variant_is_of_type(version.get(), G_VARIANT_TYPE_UINT32) &&
            g_variant_get_uint32(version.get()) >= directoryVersion) {
            self->open();
        } else {
            self->fallBack();
        }
    };
    g_dbus_connection_call(bus.get(), portalName, portalPath, "org.freedesktop.DBus.Properties", "Get",
                           g_variant_new("(ss)", fileChooser, "version"), G_VARIANT_TYPE("(v)"), G_DBUS_CALL_FLAGS_NONE,
                           versionTimeoutMilliseconds, nullptr, runAsyncHandler, onceDone(onAnswer));
}

void PortalFolderChooser::Request::open() {
    const std::string token = "duskfern" + std::to_string(g_random_int());
    // Subscribes before the call: the response may come before the call has returned the path.
    const std::string path = requestPath(bus.get(), token);
    subscribe(path);
    begin = std::chrono::steady_clock::now();
    const auto onAnswer = [weak = weak_from_this(), path](GObject* source, GAsyncResult* result) {
        GPtr<GError> error;
        const GPtr<GVariant> handle(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, Out(error)));
        const char* opened = nullptr;
        if (handle) {
            g_variant_get(handle.get(), "(&o)", &opened);
        } else if (g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_TIMED_OUT)) {
            opened = path.c_str();  // The dialog may still open.
        }
        const std::shared_ptr<Request> self = weak.lock();
        if (self && handle) {
            self->opened(opened);
            return;
        }
        if (opened != nullptr) {
            closeRequest(G_DBUS_CONNECTION(source), opened);
        }
        if (self) {
            self->fallBack();
        }
    };
    g_dbus_connection_call(bus.get(), portalName, portalPath, fileChooser, "OpenFile",
                           openFileArguments(question, token), G_VARIANT_TYPE("(o)"), G_DBUS_CALL_FLAGS_NONE,
                           openTimeoutMilliseconds, nullptr, runAsyncHandler, onceDone(onAnswer));
}

/// Called when the dialog is open. Portals before version 0.9 choose another path for the request.
void PortalFolderChooser::Request::opened(const std::string& path) {
    isOpen = true;
    if (path != subscribedPath) {
        subscribe(path);
    }
    const auto onVanished = [](GDBusConnection*, const char*, gpointer self) {
        static_cast<Request*>(self)->isOpen = false;
        static_cast<Request*>(self)->finish(std::nullopt);
    };
    watch = g_bus_watch_name_on_connection(bus.get(), portalName, G_BUS_NAME_WATCHER_FLAGS_NONE, nullptr, onVanished,
                                           this, nullptr);
}

/// Subscribes to the response of the request at this path, instead of any other.
void PortalFolderChooser::Request::subscribe(const std::string& path) {
    const auto onResponse = [](GDBusConnection*, const char*, const char*, const char*, const char*,
                               GVariant* arguments, gpointer self) {
        if (g_variant_is_of_type(arguments, G_VARIANT_TYPE("(ua{sv})"))) {
            static_cast<Request*>(self)->ended(arguments);
        }
    };
    if (subscription != 0) {
        g_dbus_connection_signal_unsubscribe(bus.get(), subscription);
    }
    subscribedPath = path;
    subscription = g_dbus_connection_signal_subscribe(bus.get(), portalName, request, "Response", path.c_str(), nullptr,
                                                      G_DBUS_SIGNAL_FLAGS_NONE, onResponse, this, nullptr);
}

void PortalFolderChooser::Request::ended(GVariant* arguments) {
    isOpen = false;
    guint32 code = 0;
    GPtr<GVariant> results;
    g_variant_get(arguments, "(u@a{sv})", &code, static_cast<GVariant**>(Out(results)));
    if (static_cast<ResponseCode>(code) == ResponseCode::chosen) {
        finish(chosenFolder(results.get()));
    } else if (static_cast<ResponseCode>(code) == ResponseCode::other &&
               std::chrono::steady_clock::now() - begin < shortestDialog) {
        fallBack();
    } else {
        finish(std::nullopt);
    }
}

void PortalFolderChooser::Request::finish(const std::optional<FileURL>& url) {
    const std::shared_ptr<Request> self = std::exchange(owner.m_request, nullptr);
    answer(url);
}

void PortalFolderChooser::Request::fallBack() {
    const std::shared_ptr<Request> self = std::exchange(owner.m_request, nullptr);
    owner.m_fallback.choose(question, std::move(answer));
}

PortalFolderChooser::PortalFolderChooser(FolderChooser& fallback) : m_fallback(fallback) {}

PortalFolderChooser::~PortalFolderChooser() = default;

void PortalFolderChooser::choose(const FolderQuestion& question, Answer answer) {
    m_request = std::make_shared<Request>(*this, question, std::move(answer));
    m_request->connect();
}

void PortalFolderChooser::cancel() {
    if (m_request) {
        m_request->finish(std::nullopt);
    } else {
        m_fallback.cancel();
    }
}
