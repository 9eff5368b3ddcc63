#include "Desktop/SingleInstance.h"

#include "Desktop/GioSupport.h"
#include "Foundation/Threads.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <utility>

namespace {

using namespace std::chrono_literals;

constexpr auto busPatience = 400ms;
constexpr auto busMilliseconds = static_cast<int>(busPatience.count());
/// A program that is busy for longer is taken for one that hangs.
constexpr int otherMilliseconds = 1500;
constexpr auto otherPatience = 4s;

/// What RequestName takes and answers.
constexpr guint32 doNotQueue = 4;
constexpr guint32 ownedByAnother = 3;

constexpr const char* interfaceName = "org.freedesktop.Application";
constexpr const char* tokenKey = "activation-token";
constexpr const char* startupKey = "desktop-startup-id";

constexpr const char* interfaceXml = R"(<node><interface name="org.freedesktop.Application">
    <method name="Activate"><arg type="a{sv}" direction="in"/></method>
    <method name="Open"><arg type="as" direction="in"/><arg type="a{sv}" direction="in"/></method>
    <method name="ActivateAction">
        <arg type="s" direction="in"/><arg type="av" direction="in"/><arg type="a{sv}" direction="in"/>
    </method>
</interface></node>)";

struct NodeUnref {
    void operator()(GDBusNodeInfo* node) const { g_dbus_node_info_unref(node); }
};

/// The object of an application id on the bus.
std::string pathOf(const std::string& id) {
    std::string path = '/' + id;
    for (char& character : path) {
        character = character == '.' ? '/' : character == '-' ? '_' : character;
    }
    return path;
}

/// What a method of the interface asks for. Its last argument is what the desktop adds.
SingleInstance::Request requestFrom(const std::string& method, GVariant* arguments) {
    SingleInstance::Request request;
    if (method == "ActivateAction") {
        const char* action = nullptr;
        g_variant_get_child(arguments, 0, "&s", &action);
        request.action = QString::fromUtf8(action);
    }
    const GPtr<GVariant> added(g_variant_get_child_value(arguments, g_variant_n_children(arguments) - 1));
    for (const char* key : {tokenKey, startupKey}) {
        const char* token = nullptr;
        if (request.token.isEmpty() && g_variant_lookup(added.get(), key, "&s", &token) == TRUE) {
            request.token = QString::fromUtf8(token);
        }
    }
    return request;
}

GVariant* argumentsFor(const SingleInstance::Request& request) {
    GVariantBuilder added;
    g_variant_builder_init(&added, G_VARIANT_TYPE_VARDICT);
    if (const QByteArray token = request.token.toUtf8(); !token.isEmpty()) {
        for (const char* key : {tokenKey, startupKey}) {
            g_variant_builder_add(&added, "{sv}", key, g_variant_new_string(token.constData()));
        }
    }
    return request.action.isEmpty() ? g_variant_new("(a{sv})", &added)
                                    : g_variant_new("(sava{sv})", request.action.toUtf8().constData(), nullptr, &added);
}

}  // namespace

/// Shared with the thread that asks. `owner` is read and cleared on the main thread only.
struct SingleInstance::Link : std::enable_shared_from_this<Link> {
    enum class State { asking, passing, first, later };

    void ask();
    [[nodiscard]] bool serve();
    [[nodiscard]] guint32 callBus(const char* method, GVariant* arguments) const;
    [[nodiscard]] bool passOn() const;
    bool become(State next);
    void end();

    SingleInstance* owner = nullptr;
    std::string id;
    Request request;

    std::mutex mutex;
    std::condition_variable changed;
    State state = State::asking;
    bool isEnded = false;
    GObjectPtr<GDBusConnection> bus;
    guint object = 0;
};

/// False if it is decided already: the main thread waits no longer.
bool SingleInstance::Link::become(State next) {
    const std::lock_guard lock(mutex);
    if (state == State::first) {
        return false;
    }
    state = next;
    changed.notify_all();
    return true;
}

void SingleInstance::Link::ask() {
    if (!serve()) {
        become(State::first);
        return;
    }
    // The second round is for a program that ends while it is asked.
    for (int round = 0; round < 2; ++round) {
        const guint32 answer = callBus("RequestName", g_variant_new("(su)", id.c_str(), doNotQueue));
        if (answer != ownedByAnother) {
            break;
        }
        if (!become(State::passing) || (passOn() && become(State::later))) {
            return;
        }
    }
    become(State::first);
}

/// Connects with the bus and answers calls there. Done before the name is asked for, because calls may follow at once.
bool SingleInstance::Link::serve() {
    GObjectPtr<GDBusConnection> connection(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (!connection) {
        return false;
    }
    // The default would exit the program when the session bus closes.
    g_dbus_connection_set_exit_on_close(connection.get(), FALSE);

    static constexpr auto onCall = [](GDBusConnection*, const char*, const char*, const char*, const char* method,
                                      GVariant* arguments, GDBusMethodInvocation* call, gpointer link) {
        g_dbus_method_invocation_return_value(call, nullptr);
        if (const std::shared_ptr<Link> alive = static_cast<std::weak_ptr<Link>*>(link)->lock();
            alive && alive->owner != nullptr) {
            Q_EMIT alive->owner->requested(requestFrom(method, arguments));
        }
    };
    static constexpr GDBusInterfaceVTable methods{onCall, nullptr, nullptr, {}};
    const std::unique_ptr<GDBusNodeInfo, NodeUnref> node(g_dbus_node_info_new_for_xml(interfaceXml, nullptr));
    const std::lock_guard lock(mutex);
    bus = std::move(connection);
    // Called on the main thread, because this one has no event loop of its own.
    object = g_dbus_connection_register_object(
        bus.get(), pathOf(id).c_str(), node->interfaces[0], &methods, new std::weak_ptr<Link>(weak_from_this()),
        [](gpointer link) { delete static_cast<std::weak_ptr<Link>*>(link); }, nullptr);
    return object != 0 && !isEnded;
}

/// Calls the bus itself. Its answer; 0 if there is none.
guint32 SingleInstance::Link::callBus(const char* method, GVariant* arguments) const {
    const GPtr<GVariant> answer(g_dbus_connection_call_sync(
        bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method, arguments,
        G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, busMilliseconds, nullptr, nullptr));
    guint32 number = 0;
    if (answer) {
        g_variant_get(answer.get(), "(u)", &number);
    }
    return number;
}

/// Whether the program that runs has taken the request.
bool SingleInstance::Link::passOn() const {
    const char* const method = request.action.isEmpty() ? "Activate" : "ActivateAction";
    return GPtr<GVariant>(g_dbus_connection_call_sync(bus.get(), id.c_str(), pathOf(id).c_str(), interfaceName, method,
                                                      argumentsFor(request), nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START,
                                                      otherMilliseconds, nullptr, nullptr)) != nullptr;
}

void SingleInstance::Link::end() {
    owner = nullptr;
    const std::lock_guard lock(mutex);
    isEnded = true;
    if (object != 0) {
        g_dbus_connection_unregister_object(bus.get(), object);
        g_dbus_connection_call(bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                               "ReleaseName", g_variant_new("(s)", id.c_str()), nullptr, G_DBUS_CALL_FLAGS_NONE,
                               busMilliseconds, nullptr, nullptr, nullptr);
    }
}

SingleInstance::SingleInstance(const QString& applicationId, const Request& request, QObject* parent)
    : QObject(parent), m_link(std::make_shared<Link>()) {
    m_link->owner = this;
    m_link->id = applicationId.toStdString();
    m_link->request = request;
    if (!Threads::start([link = m_link] { link->ask(); })) {
        m_link->become(Link::State::first);
    }
}

SingleInstance::~SingleInstance() {
    m_link->end();
}

SingleInstance::Role SingleInstance::role() {
    Link& link = *m_link;
    std::unique_lock lock(link.mutex);
    link.changed.wait_for(lock, busPatience, [&] { return link.state != Link::State::asking; });
    link.changed.wait_for(lock, otherPatience, [&] { return link.state != Link::State::passing; });
    if (link.state == Link::State::later) {
        return Role::later;
    }
    link.state = Link::State::first;
    return Role::first;
}

SingleInstance::Request SingleInstance::requestOf(const QString& action) {
    const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
    return {action, token.isEmpty() ? qEnvironmentVariable("DESKTOP_STARTUP_ID") : token};
}
