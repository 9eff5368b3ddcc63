#include "Desktop/PortalColorScheme.h"

#include "Desktop/GioSupport.h"

#include <cstring>

namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* settings = "org.freedesktop.portal.Settings";
constexpr const char* appearance = "org.freedesktop.appearance";
constexpr const char* colorScheme = "color-scheme";

/// Timeout of the first read.
constexpr int readTimeoutMilliseconds = 500;

/// The number in a variant: a signal wraps it in one variant, an answer in two.
ColorScheme::Preference preferenceOf(GVariant* wrapped) {
    GPtr<GVariant> value(g_variant_ref(wrapped));
    while (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_VARIANT)) {
        value.reset(g_variant_get_variant(value.get()));
    }
    const guint32 number =
        g_variant_is_of_type(value.get(), G_VARIANT_TYPE_UINT32) ? g_variant_get_uint32(value.get()) : 0;
    switch (number) {
        case 1:
            return ColorScheme::Preference::dark;
        case 2:
            return ColorScheme::Preference::light;
        default:
            return ColorScheme::Preference::none;
    }
}

}  // namespace

/// The connection with the portal. Pending calls hold a weak pointer, so that late answers are ignored. The destructor
/// ends the watch and the subscription.
struct PortalColorScheme::Link : std::enable_shared_from_this<Link> {
    explicit Link(PortalColorScheme& scheme) : owner(scheme) {}
    ~Link();
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    void connect();
    void subscribe();
    void read();

    PortalColorScheme& owner;
    GObjectPtr<GCancellable> cancellable{g_cancellable_new()};
    GObjectPtr<GDBusConnection> bus;
    guint watch = 0;
    guint subscription = 0;
};

PortalColorScheme::Link::~Link() {
    g_cancellable_cancel(cancellable.get());
    if (bus) {
        g_bus_unwatch_name(watch);
        g_dbus_connection_signal_unsubscribe(bus.get(), subscription);
    }
}

void PortalColorScheme::Link::connect() {
    const auto onBus = [weak = weak_from_this()](GObject*, GAsyncResult* result) {
        GObjectPtr<GDBusConnection> connection(g_bus_get_finish(result, nullptr));
        const std::shared_ptr<Link> link = weak.lock();
        if (link && connection) {
            // The default would exit the program when the session bus closes.
            g_dbus_connection_set_exit_on_close(connection.get(), FALSE);
            link->bus = std::move(connection);
            link->subscribe();
        }
    };
    // Not cancellable: the connection is shared, so cancelling would fail the call for other users of it too.
    g_bus_get(G_BUS_TYPE_SESSION, nullptr, runAsyncHandler, onceDone(onBus));
}

void PortalColorScheme::Link::subscribe() {
    const auto onChanged = [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* arguments,
                              gpointer link) {
        if (!g_variant_is_of_type(arguments, G_VARIANT_TYPE("(ssv)"))) {
            return;
        }
        const char* key = nullptr;
        GPtr<GVariant> value;
        g_variant_get(arguments, "(&s&sv)", nullptr, &key, static_cast<GVariant**>(Out(value)));
        if (std::strcmp(key, colorScheme) == 0) {
            static_cast<Link*>(link)->owner.setPreference(preferenceOf(value.get()));
        }
    };
    subscription = g_dbus_connection_signal_subscribe(bus.get(), portalName, settings, "SettingChanged", portalPath,
                                                      appearance, G_DBUS_SIGNAL_FLAGS_NONE, onChanged, this, nullptr);
    // Reads the value when the portal starts, and again when it restarts.
    const auto onAppeared = [](GDBusConnection*, const char*, const char*, gpointer link) {
        static_cast<Link*>(link)->read();
    };
    watch = g_bus_watch_name_on_connection(bus.get(), portalName, G_BUS_NAME_WATCHER_FLAGS_AUTO_START, onAppeared,
                                           nullptr, this, nullptr);
}

void PortalColorScheme::Link::read() {
    const auto onAnswer = [weak = weak_from_this()](GObject* source, GAsyncResult* result) {
        const GPtr<GVariant> answer(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, nullptr));
        const std::shared_ptr<Link> link = weak.lock();
        if (link && answer) {
            const GPtr<GVariant> value(g_variant_get_child_value(answer.get(), 0));
            link->owner.setPreference(preferenceOf(value.get()));
        }
    };
    g_dbus_connection_call(bus.get(), portalName, portalPath, settings, "Read",
                           g_variant_new("(ss)", appearance, colorScheme), G_VARIANT_TYPE("(v)"),
                           G_DBUS_CALL_FLAGS_NONE, readTimeoutMilliseconds, cancellable.get(), runAsyncHandler,
                           onceDone(onAnswer));
}

PortalColorScheme::PortalColorScheme(QObject* parent) : ColorScheme(parent), m_link(std::make_shared<Link>(*this)) {
    m_link->connect();
}

PortalColorScheme::~PortalColorScheme() = default;

ColorScheme::Preference PortalColorScheme::preference() const {
    return m_preference;
}

void PortalColorScheme::setPreference(Preference preference) {
    if (preference != m_preference) {
        m_preference = preference;
        Q_EMIT preferenceChanged();
    }
}
