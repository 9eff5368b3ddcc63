#include "Desktop/PortalAppearance.h"

#include "Desktop/GioSupport.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* settings = "org.freedesktop.portal.Settings";
constexpr const char* appearance = "org.freedesktop.appearance";
constexpr const char* colorScheme = "color-scheme";
constexpr const char* gnomeInterface = "org.gnome.desktop.interface";
constexpr const char* gnomeAccessibility = "org.gnome.desktop.a11y.interface";
constexpr std::array<const char*, 3> spaces{appearance, gnomeInterface, gnomeAccessibility};

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

Appearance::Preference preferenceOf(GVariant* wrapped) {
    const GPtr<GVariant> value = unwrapped(wrapped);
    const guint32 number =
        g_variant_is_of_type(value.get(), G_VARIANT_TYPE_UINT32) ? g_variant_get_uint32(value.get()) : 0;
    switch (number) {
        case 1:
            return Appearance::Preference::dark;
        case 2:
            return Appearance::Preference::light;
        default:
            return Appearance::Preference::none;
    }
}

/// Whether a setting says yes, by a number or by a truth value; none if it does neither or is null.
std::optional<bool> answerOf(GVariant* wrapped) {
    if (wrapped == nullptr) {
        return std::nullopt;
    }
    const GPtr<GVariant> value = unwrapped(wrapped);
    if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_UINT32)) {
        return g_variant_get_uint32(value.get()) != 0;
    }
    if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_BOOLEAN)) {
        return g_variant_get_boolean(value.get()) == TRUE;
    }
    return std::nullopt;
}

/// The colour of a setting; none if it is null, of another type, or out of range, which says that none is set.
std::optional<Appearance::Accent> accentOf(GVariant* wrapped) {
    const GPtr<GVariant> value = wrapped == nullptr ? nullptr : unwrapped(wrapped);
    if (!value || !g_variant_is_of_type(value.get(), G_VARIANT_TYPE("(ddd)"))) {
        return std::nullopt;
    }
    Appearance::Accent accent;
    g_variant_get(value.get(), "(ddd)", &accent.red, &accent.green, &accent.blue);
    const auto isPart = [](double part) { return part >= 0 && part <= 1; };
    return isPart(accent.red) && isPart(accent.green) && isPart(accent.blue) ? std::optional(accent) : std::nullopt;
}

/// One setting among all that were read; null if it is not there.
GPtr<GVariant> settingIn(GVariant* all, const char* space, const char* key) {
    const GPtr<GVariant> found(g_variant_lookup_value(all, space, G_VARIANT_TYPE_VARDICT));
    return GPtr<GVariant>(found ? g_variant_lookup_value(found.get(), key, nullptr) : nullptr);
}

}  // namespace

/// The connection with the portal. Pending calls hold a weak pointer, so that late answers are ignored. The destructor
/// ends the watch and the subscription.
struct PortalAppearance::Link : std::enable_shared_from_this<Link> {
    explicit Link(PortalAppearance& scheme) : owner(scheme) {}
    ~Link();
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    void connect();
    void subscribe();
    void read();
    void readRest();
    void change(const char* space, const char* key, GVariant* value);
    [[nodiscard]] guint listen(const char* space);
    void takeRest(const char* space, const char* key, GVariant* value);

    PortalAppearance& owner;
    GObjectPtr<GCancellable> cancellable{g_cancellable_new()};
    GObjectPtr<GDBusConnection> bus;
    guint watch = 0;
    std::array<guint, spaces.size()> subscriptions{};
};

PortalAppearance::Link::~Link() {
    g_cancellable_cancel(cancellable.get());
    if (bus) {
        g_bus_unwatch_name(watch);
        for (const guint subscription : subscriptions) {
            g_dbus_connection_signal_unsubscribe(bus.get(), subscription);
        }
    }
}

void PortalAppearance::Link::connect() {
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
guint PortalAppearance::Link::listen(const char* space) {
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

void PortalAppearance::Link::change(const char* space, const char* key, GVariant* value) {
    if (std::strcmp(space, appearance) == 0 && std::strcmp(key, colorScheme) == 0) {
        owner.setPreference(preferenceOf(value));
    } else {
        takeRest(space, key, value);
    }
}

/// Takes a setting other than the colour scheme; a null value says that it is not there.
void PortalAppearance::Link::takeRest(const char* space, const char* key, GVariant* value) {
    const auto is = [&](const char* otherSpace, const char* otherKey) {
        return std::strcmp(space, otherSpace) == 0 && std::strcmp(key, otherKey) == 0;
    };
    if (is(appearance, "reduced-motion")) {
        owner.setMotion({answerOf(value), owner.m_lessMotion.gnome});
    } else if (is(gnomeInterface, "enable-animations")) {
        const std::optional<bool> animated = answerOf(value);
        owner.setMotion({owner.m_lessMotion.common, animated ? std::optional(!*animated) : std::nullopt});
    } else if (is(appearance, "contrast")) {
        owner.setContrast({answerOf(value), owner.m_moreContrast.gnome});
    } else if (is(gnomeAccessibility, "high-contrast")) {
        owner.setContrast({owner.m_moreContrast.common, answerOf(value)});
    } else if (is(appearance, "accent-color")) {
        owner.setAccent(accentOf(value));
    }
}

void PortalAppearance::Link::subscribe() {
    std::transform(spaces.begin(), spaces.end(), subscriptions.begin(),
                   [this](const char* space) { return listen(space); });
    // Reads the values when the portal starts, and again when it restarts.
    const auto onAppeared = [](GDBusConnection*, const char*, const char*, gpointer link) {
        static_cast<Link*>(link)->read();
        static_cast<Link*>(link)->readRest();
    };
    watch = g_bus_watch_name_on_connection(bus.get(), portalName, G_BUS_NAME_WATCHER_FLAGS_AUTO_START, onAppeared,
                                           nullptr, this, nullptr);
}

void PortalAppearance::Link::read() {
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

/// Reads the rest at once, because most desktops have only some of it.
void PortalAppearance::Link::readRest() {
    const auto onAnswer = [weak = weak_from_this()](GObject* source, GAsyncResult* result) {
        const GPtr<GVariant> answer(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, nullptr));
        const std::shared_ptr<Link> link = weak.lock();
        if (!link || !answer) {
            return;
        }
        const GPtr<GVariant> all(g_variant_get_child_value(answer.get(), 0));
        const std::pair<const char*, const char*> settingsToRead[] = {{appearance, "reduced-motion"},
                                                                      {gnomeInterface, "enable-animations"},
                                                                      {appearance, "contrast"},
                                                                      {gnomeAccessibility, "high-contrast"},
                                                                      {appearance, "accent-color"}};
        for (const auto& [space, key] : settingsToRead) {
            link->takeRest(space, key, settingIn(all.get(), space, key).get());
        }
    };
    g_dbus_connection_call(bus.get(), portalName, portalPath, settings, "ReadAll",
                           g_variant_new("(@as)", g_variant_new_strv(spaces.data(), spaces.size())),
                           G_VARIANT_TYPE("(a{sa{sv}})"), G_DBUS_CALL_FLAGS_NONE, readTimeoutMilliseconds,
                           cancellable.get(), runAsyncHandler, onceDone(onAnswer));
}

PortalAppearance::PortalAppearance(QObject* parent) : Appearance(parent), m_link(std::make_shared<Link>(*this)) {
    m_link->connect();
}

PortalAppearance::~PortalAppearance() = default;

Appearance::Preference PortalAppearance::preference() const {
    return m_preference;
}

void PortalAppearance::setPreference(Preference preference) {
    if (preference != m_preference) {
        m_preference = preference;
        Q_EMIT preferenceChanged();
    }
}

bool PortalAppearance::reducesMotion() const {
    return m_lessMotion.isMade();
}

void PortalAppearance::setMotion(const Wish& motion) {
    if (std::exchange(m_lessMotion, motion).isMade() != motion.isMade()) {
        Q_EMIT reducesMotionChanged();
    }
}

bool PortalAppearance::raisesContrast() const {
    return m_moreContrast.isMade();
}

void PortalAppearance::setContrast(const Wish& contrast) {
    if (std::exchange(m_moreContrast, contrast).isMade() != contrast.isMade()) {
        Q_EMIT raisesContrastChanged();
    }
}

std::optional<Appearance::Accent> PortalAppearance::accent() const {
    return m_accent;
}

void PortalAppearance::setAccent(std::optional<Accent> accent) {
    if (std::exchange(m_accent, accent) != accent) {
        Q_EMIT accentChanged();
    }
}
