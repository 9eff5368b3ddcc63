#include "Desktop/PortalColorScheme.h"

#include "Desktop/GioSupport.h"

#include <array>
#include <cstring>
#include <utility>

namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* settings = "org.freedesktop.portal.Settings";
constexpr const char* appearance = "org.freedesktop.appearance";
constexpr const char* colorScheme = "color-scheme";
constexpr const char* reducedMotion = "reduced-motion";
constexpr const char* gnomeInterface = "org.gnome.desktop.interface";
constexpr const char* enableAnimations = "enable-animations";

/// Timeout of the first read.
constexpr int readTimeoutMilliseconds = 500;

/// What is in a variant: a signal wraps it in one variant, an answer in two.
GPtr<GVariant> unwrapped(GVariant* wrapped) {
    GPtr<GVariant> value(g_variant_ref(wrapped));
    while (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_VARIANT)) {
        value.reset(g_variant_get_variant(value.get()));
    }
    return value;
}

ColorScheme::Preference preferenceOf(GVariant* wrapped) {
    const GPtr<GVariant> value = unwrapped(wrapped);
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

/// Whether a setting says yes, by a number or by a truth value; none if it does neither.
std::optional<bool> answerOf(GVariant* wrapped) {
    const GPtr<GVariant> value = unwrapped(wrapped);
    if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_UINT32)) {
        return g_variant_get_uint32(value.get()) != 0;
    }
    if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_BOOLEAN)) {
        return g_variant_get_boolean(value.get()) == TRUE;
    }
    return std::nullopt;
}

/// The answer of one setting among all that were read; none if it is not there.
std::optional<bool> answerIn(GVariant* all, const char* space, const char* key) {
    const GPtr<GVariant> found(g_variant_lookup_value(all, space, G_VARIANT_TYPE_VARDICT));
    const GPtr<GVariant> value(found ? g_variant_lookup_value(found.get(), key, nullptr) : nullptr);
    return value ? answerOf(value.get()) : std::nullopt;
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
    void readMotion();
    void change(const char* space, const char* key, GVariant* value);
    [[nodiscard]] guint listen(const char* space);

    PortalColorScheme& owner;
    GObjectPtr<GCancellable> cancellable{g_cancellable_new()};
    GObjectPtr<GDBusConnection> bus;
    guint watch = 0;
    std::array<guint, 2> subscriptions{};
};

PortalColorScheme::Link::~Link() {
    g_cancellable_cancel(cancellable.get());
    if (bus) {
        g_bus_unwatch_name(watch);
        for (const guint subscription : subscriptions) {
            g_dbus_connection_signal_unsubscribe(bus.get(), subscription);
        }
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

/// Listens to changes of the settings in a space.
guint PortalColorScheme::Link::listen(const char* space) {
    const auto onChanged = [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* arguments,
                              gpointer link) {
        if (!g_variant_is_of_type(arguments, G_VARIANT_TYPE("(ssv)"))) {
            return;
        }
        const char* changedSpace = nullptr;
        const char* key = nullptr;
        GPtr<GVariant> value;
        g_variant_get(arguments, "(&s&sv)", &changedSpace, &key, static_cast<GVariant**>(Out(value)));
        static_cast<Link*>(link)->change(changedSpace, key, value.get());
    };
    return g_dbus_connection_signal_subscribe(bus.get(), portalName, settings, "SettingChanged", portalPath, space,
                                              G_DBUS_SIGNAL_FLAGS_NONE, onChanged, this, nullptr);
}

void PortalColorScheme::Link::change(const char* space, const char* key, GVariant* value) {
    const auto is = [&](const char* otherSpace, const char* otherKey) {
        return std::strcmp(space, otherSpace) == 0 && std::strcmp(key, otherKey) == 0;
    };
    if (is(appearance, colorScheme)) {
        owner.setPreference(preferenceOf(value));
    } else if (is(appearance, reducedMotion)) {
        owner.setReduced(answerOf(value));
    } else if (is(gnomeInterface, enableAnimations)) {
        owner.setAnimated(answerOf(value));
    }
}

void PortalColorScheme::Link::subscribe() {
    subscriptions = {listen(appearance), listen(gnomeInterface)};
    // Reads the values when the portal starts, and again when it restarts.
    const auto onAppeared = [](GDBusConnection*, const char*, const char*, gpointer link) {
        static_cast<Link*>(link)->read();
        static_cast<Link*>(link)->readMotion();
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

/// Reads all at once, because most desktops have only one of the two.
void PortalColorScheme::Link::readMotion() {
    const auto onAnswer = [weak = weak_from_this()](GObject* source, GAsyncResult* result) {
        const GPtr<GVariant> answer(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, nullptr));
        const std::shared_ptr<Link> link = weak.lock();
        if (link && answer) {
            const GPtr<GVariant> all(g_variant_get_child_value(answer.get(), 0));
            link->owner.setReduced(answerIn(all.get(), appearance, reducedMotion));
            link->owner.setAnimated(answerIn(all.get(), gnomeInterface, enableAnimations));
        }
    };
    const std::array<const char*, 2> spaces{appearance, gnomeInterface};
    g_dbus_connection_call(bus.get(), portalName, portalPath, settings, "ReadAll",
                           g_variant_new("(@as)", g_variant_new_strv(spaces.data(), spaces.size())),
                           G_VARIANT_TYPE("(a{sa{sv}})"), G_DBUS_CALL_FLAGS_NONE, readTimeoutMilliseconds,
                           cancellable.get(), runAsyncHandler, onceDone(onAnswer));
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

bool PortalColorScheme::reducesMotion() const {
    return m_reducesMotion;
}

void PortalColorScheme::setReduced(std::optional<bool> reduced) {
    m_reduced = reduced;
    updateMotion();
}

void PortalColorScheme::setAnimated(std::optional<bool> animated) {
    m_animated = animated;
    updateMotion();
}

void PortalColorScheme::updateMotion() {
    const bool reduces = m_reduced.value_or(!m_animated.value_or(true));
    if (std::exchange(m_reducesMotion, reduces) != reduces) {
        Q_EMIT reducesMotionChanged();
    }
}
