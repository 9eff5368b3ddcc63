#include "Desktop/PortalColorScheme.h"

#include "Desktop/GioSupport.h"

#include <cstring>

namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* settings = "org.freedesktop.portal.Settings";
constexpr const char* appearance = "org.freedesktop.appearance";
constexpr const char* colorScheme = "color-scheme";

/// A portal that takes longer than this counts as silent.
constexpr int readTimeoutMilliseconds = 500;

/// Reads the number, which the portal wraps in one variant in a signal and in two in an answer.
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

/// The connection with the portal. Calls under way hold it weakly, so that an answer that comes too late finds nothing;
/// the subscription ends with it.
struct PortalColorScheme::Link {
    explicit Link(PortalColorScheme& scheme) : owner(scheme) {}
    ~Link() {
        g_cancellable_cancel(cancellable.get());
        if (bus) {
            g_dbus_connection_signal_unsubscribe(bus.get(), subscription);
        }
    }
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    static void connect(const std::shared_ptr<Link>& link);
    void follow(GObjectPtr<GDBusConnection> connection, const std::weak_ptr<Link>& self);
    void read(const std::weak_ptr<Link>& self) const;

    PortalColorScheme& owner;
    GObjectPtr<GCancellable> cancellable{g_cancellable_new()};
    GObjectPtr<GDBusConnection> bus;
    guint subscription = 0;
};

namespace {

/// Runs on the thread that subscribed; GIO frees the user data after the last call.
void onSettingChanged(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*, GVariant* arguments,
                      gpointer userData) {
    const gchar* name = nullptr;
    const gchar* key = nullptr;
    GVariant* value = nullptr;
    if (!g_variant_is_of_type(arguments, G_VARIANT_TYPE("(ssv)"))) {
        return;
    }
    g_variant_get(arguments, "(&s&sv)", &name, &key, &value);
    const GPtr<GVariant> owned(value);
    if (std::strcmp(key, colorScheme) == 0) {
        (*static_cast<std::function<void(GVariant*)>*>(userData))(value);
    }
}

void freeHandler(gpointer handler) {
    std::unique_ptr<std::function<void(GVariant*)>>(static_cast<std::function<void(GVariant*)>*>(handler)).reset();
}

}  // namespace

void PortalColorScheme::Link::connect(const std::shared_ptr<Link>& link) {
    const std::weak_ptr<Link> weak = link;
    g_bus_get(G_BUS_TYPE_SESSION, link->cancellable.get(), runAsyncHandler,
              onceDone([weak](GObject*, GAsyncResult* result) {
                  GObjectPtr<GDBusConnection> bus(g_bus_get_finish(result, nullptr));
                  const std::shared_ptr<Link> self = weak.lock();
                  if (self && bus) {
                      self->follow(std::move(bus), weak);
                  }
              }));
}

void PortalColorScheme::Link::follow(GObjectPtr<GDBusConnection> connection, const std::weak_ptr<Link>& self) {
    bus = std::move(connection);
    // The default would end the program together with the session bus.
    g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    auto changed = std::make_unique<std::function<void(GVariant*)>>([self](GVariant* value) {
        if (const std::shared_ptr<Link> link = self.lock()) {
            link->owner.setPreference(preferenceOf(value));
        }
    });
    subscription =
        g_dbus_connection_signal_subscribe(bus.get(), portalName, settings, "SettingChanged", portalPath, appearance,
                                           G_DBUS_SIGNAL_FLAGS_NONE, onSettingChanged, changed.release(), freeHandler);
    read(self);
}

void PortalColorScheme::Link::read(const std::weak_ptr<Link>& self) const {
    g_dbus_connection_call(
        bus.get(), portalName, portalPath, settings, "Read", g_variant_new("(ss)", appearance, colorScheme),
        G_VARIANT_TYPE("(v)"), G_DBUS_CALL_FLAGS_NONE, readTimeoutMilliseconds, cancellable.get(), runAsyncHandler,
        onceDone([self](GObject* source, GAsyncResult* result) {
            const GPtr<GVariant> answer(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, nullptr));
            const std::shared_ptr<Link> link = self.lock();
            if (link && answer) {
                const GPtr<GVariant> value(g_variant_get_child_value(answer.get(), 0));
                link->owner.setPreference(preferenceOf(value.get()));
            }
        }));
}

PortalColorScheme::PortalColorScheme(QObject* parent) : ColorScheme(parent), m_link(std::make_shared<Link>(*this)) {
    Link::connect(m_link);
}

PortalColorScheme::~PortalColorScheme() = default;

ColorScheme::Preference PortalColorScheme::preference() const {
    return m_preference;
}

void PortalColorScheme::setPreference(Preference preference) {
    if (std::exchange(m_preference, preference) != preference) {
        Q_EMIT preferenceChanged();
    }
}
