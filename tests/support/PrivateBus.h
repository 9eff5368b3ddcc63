#pragma once

#include "Desktop/GioSupport.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

/// What the services of the tests can do.
constexpr const char* interfaces =
    "<node>"
    "<interface name='org.freedesktop.FileManager1'><method name='ShowItems'>"
    "<arg type='as' direction='in'/><arg type='s' direction='in'/></method></interface>"
    "<interface name='org.freedesktop.portal.Settings'><method name='Read'>"
    "<arg type='s' direction='in'/><arg type='s' direction='in'/><arg type='v' direction='out'/></method>"
    "<method name='ReadAll'><arg type='as' direction='in'/><arg type='a{sa{sv}}' direction='out'/></method>"
    "</interface>"
    "<interface name='org.freedesktop.portal.FileChooser'><method name='OpenFile'>"
    "<arg type='s' direction='in'/><arg type='s' direction='in'/><arg type='a{sv}' direction='in'/>"
    "<arg type='o' direction='out'/></method><property name='version' type='u' access='read'/></interface>"
    "<interface name='org.freedesktop.portal.Request'><method name='Close'/></interface>"
    "</node>";

/// A service on the bus that keeps every call until the test answers it.
class FakeService {
public:
    FakeService(const char* address, const char* name, const char* path, const char* interface) {
        const auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
        m_bus.reset(g_dbus_connection_new_for_address_sync(address, flags, nullptr, nullptr, nullptr));
        addObject(path, interface);
        const GPtr<GVariant> owned(g_dbus_connection_call_sync(
            m_bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
            g_variant_new("(su)", name, 0U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
        EXPECT_NE(owned, nullptr);
    }
    ~FakeService() {
        while (!m_calls.empty()) {
            fail();
        }
        g_dbus_connection_close_sync(m_bus.get(), nullptr, nullptr);
    }
    FakeService(const FakeService&) = delete;
    FakeService& operator=(const FakeService&) = delete;

    [[nodiscard]] bool isCalled() const { return !m_calls.empty(); }
    [[nodiscard]] bool isCalled(std::string_view method) const {
        return isCalled() && method == g_dbus_method_invocation_get_method_name(m_calls.front().get());
    }
    [[nodiscard]] std::string caller() const { return g_dbus_method_invocation_get_sender(m_calls.front().get()); }
    [[nodiscard]] std::string object() const { return g_dbus_method_invocation_get_object_path(m_calls.front().get()); }
    [[nodiscard]] GVariant* arguments() const { return g_dbus_method_invocation_get_parameters(m_calls.front().get()); }

    void answer(GVariant* value) {
        g_dbus_method_invocation_return_value(m_calls.front().release(), value);
        sent();
    }
    void fail() {
        g_dbus_method_invocation_return_dbus_error(m_calls.front().release(), "org.duskfern.Refused", "refused");
        sent();
    }

    /// Sends a signal, to one receiver or (null) to all.
    void tell(const char* receiver, const char* path, const char* interface, const char* signal, GVariant* value) {
        g_dbus_connection_emit_signal(m_bus.get(), receiver, path, interface, signal, value, nullptr);
        g_dbus_connection_flush_sync(m_bus.get(), nullptr, nullptr);
    }

    /// One more object, whose calls are kept like those of the first.
    void addObject(const char* path, const char* interface) {
        GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(interfaces, nullptr);
        const GDBusInterfaceVTable table = {onCall, onGet, nullptr, {}};
        g_dbus_connection_register_object(m_bus.get(), path, g_dbus_node_info_lookup_interface(node, interface), &table,
                                          this, nullptr, nullptr);
        g_dbus_node_info_unref(node);
    }

    guint32 version = 0;    ///< What the objects say of themselves.
    bool readsAll = false;  ///< Whether `ReadAll` is kept too; it is refused otherwise.

private:
    void sent() {
        m_calls.erase(m_calls.begin());
        g_dbus_connection_flush_sync(m_bus.get(), nullptr, nullptr);
    }
    static GVariant* onGet(GDBusConnection*, const char*, const char*, const char*, const char*, GError**,
                           gpointer service) {
        return g_variant_new_uint32(static_cast<FakeService*>(service)->version);
    }
    static void onCall(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*,
                       GDBusMethodInvocation* invocation, gpointer service) {
        auto* const self = static_cast<FakeService*>(service);
        self->m_calls.emplace_back(invocation);
        if (std::string_view(g_dbus_method_invocation_get_method_name(invocation)) == "ReadAll" && !self->readsAll) {
            g_dbus_method_invocation_return_dbus_error(self->m_calls.back().release(), "org.duskfern.Unknown", "");
            self->m_calls.pop_back();
        }
    }

    GObjectPtr<GDBusConnection> m_bus;
    std::vector<GObjectPtr<GDBusMethodInvocation>> m_calls;
};

/// Gives the tests a session bus of their own: nothing reaches the one of the desktop they are run from.
class PrivateBusTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        // GTestDBus forgets these for good.
        const QByteArray display = qgetenv("DISPLAY");
        const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
        dbus() = g_test_dbus_new(G_TEST_DBUS_NONE);
        g_test_dbus_up(dbus());
        qputenv("DISPLAY", display);
        qputenv("XDG_RUNTIME_DIR", runtime);
    }
    static void TearDownTestSuite() {
        g_test_dbus_down(dbus());
        g_object_unref(dbus());
    }

    static GTestDBus*& dbus() {
        static GTestDBus* bus = nullptr;
        return bus;
    }
    static const char* address() { return g_test_dbus_get_bus_address(dbus()); }
};
