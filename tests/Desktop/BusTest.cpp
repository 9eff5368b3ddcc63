#include "Desktop/BusFileManager.h"
#include "Desktop/GioSupport.h"
#include "Desktop/PortalColorScheme.h"

#include <gtest/gtest.h>
#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QEventLoop>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr const char* fileManager = "org.freedesktop.FileManager1";
constexpr const char* portal = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* settings = "org.freedesktop.portal.Settings";

constexpr const char* interfaces =
    "<node>"
    "<interface name='org.freedesktop.FileManager1'><method name='ShowItems'>"
    "<arg type='as' direction='in'/><arg type='s' direction='in'/></method></interface>"
    "<interface name='org.freedesktop.portal.Settings'><method name='Read'>"
    "<arg type='s' direction='in'/><arg type='s' direction='in'/><arg type='v' direction='out'/></method></interface>"
    "</node>";

/// Lets Qt's event loop run, as in the program, until the condition holds. False when it never does.
template <typename Condition>
bool eventually(Condition condition) {
    const QDeadlineTimer deadline(10000);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        g_usleep(1000);
    }
    return true;
}

/// A service on the bus that keeps every call until the test answers it.
class FakeService {
public:
    FakeService(const char* address, const char* name, const char* path, const char* interface) : m_path(path) {
        const auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
        m_bus.reset(g_dbus_connection_new_for_address_sync(address, flags, nullptr, nullptr, nullptr));
        GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(interfaces, nullptr);
        const GDBusInterfaceVTable table = {onCall, nullptr, nullptr, {}};
        g_dbus_connection_register_object(m_bus.get(), path, g_dbus_node_info_lookup_interface(node, interface), &table,
                                          this, nullptr, nullptr);
        g_dbus_node_info_unref(node);
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
    [[nodiscard]] GVariant* arguments() const { return g_dbus_method_invocation_get_parameters(m_calls.front().get()); }

    void answer(GVariant* value) {
        g_dbus_method_invocation_return_value(m_calls.front().release(), value);
        sent();
    }
    void fail() {
        g_dbus_method_invocation_return_dbus_error(m_calls.front().release(), "org.duskfern.Refused", "refused");
        sent();
    }
    void tellChange(const char* space, const char* key, GVariant* value) {
        g_dbus_connection_emit_signal(m_bus.get(), nullptr, m_path, settings, "SettingChanged",
                                      g_variant_new("(ssv)", space, key, value), nullptr);
    }

private:
    void sent() {
        m_calls.erase(m_calls.begin());
        g_dbus_connection_flush_sync(m_bus.get(), nullptr, nullptr);
    }
    static void onCall(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*,
                       GDBusMethodInvocation* invocation, gpointer service) {
        static_cast<FakeService*>(service)->m_calls.emplace_back(invocation);
    }

    const char* m_path;
    GObjectPtr<GDBusConnection> m_bus;
    std::vector<GObjectPtr<GDBusMethodInvocation>> m_calls;
};

GVariant* portalAnswer(guint32 value) {
    return g_variant_new("(v)", g_variant_new_variant(g_variant_new_uint32(value)));
}

/// Gives the tests a session bus of their own: nothing reaches the one of the desktop they are run from.
class BusTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        // GTestDBus forgets these for good.
        const std::array<const char*, 2> variables = {"DISPLAY", "XDG_RUNTIME_DIR"};
        std::array<std::optional<std::string>, 2> values;
        for (size_t i = 0; i < variables.size(); ++i) {
            if (const char* value = getenv(variables[i])) {
                values[i] = value;
            }
        }
        dbus() = g_test_dbus_new(G_TEST_DBUS_NONE);
        g_test_dbus_up(dbus());
        for (size_t i = 0; i < variables.size(); ++i) {
            if (values[i]) {
                setenv(variables[i], values[i]->c_str(), 1);
            }
        }
        installOpener();
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
    static fs::path home() { return getenv("HOME"); }

    /// Makes a program that writes down what it is given the default one for folders.
    static void installOpener() {
        const fs::path program = home() / "opener";
        std::ofstream(program) << "#!/bin/sh\nprintf '%s\\n' \"$1\" >>\"$0.opened\"\n";
        fs::permissions(program, fs::perms::owner_all);
        const fs::path applications = fs::path(getenv("XDG_DATA_HOME")) / "applications";
        fs::create_directories(applications);
        std::ofstream(applications / "duskfern-opener.desktop")
            << "[Desktop Entry]\nType=Application\nName=Opener\nMimeType=inode/directory;\nExec=\"" << program.string()
            << "\" %f\n";
        fs::create_directories(getenv("XDG_CONFIG_HOME"));
        std::ofstream(fs::path(getenv("XDG_CONFIG_HOME")) / "mimeapps.list")
            << "[Default Applications]\ninode/directory=duskfern-opener.desktop\n";
    }
    /// The folders that were opened since the last look, a line each; waits for the first.
    static std::string opened() {
        const fs::path note = home() / "opener.opened";
        if (!eventually([&] { return fs::exists(note) && fs::file_size(note) > 0; })) {
            return "nothing";
        }
        std::ifstream file(note, std::ios::binary);
        std::string folders{std::istreambuf_iterator<char>(file), {}};
        fs::remove(note);
        return folders;
    }
};

using Preference = ColorScheme::Preference;

}  // namespace

TEST_F(BusTest, RevealsEveryItemByItsBytes) {
    FakeService service(address(), fileManager, "/org/freedesktop/FileManager1", fileManager);
    const std::vector<FileURL> urls = {FileURL("/home/ana/100% ñ #?\".txt"), FileURL("/home/ana/\xff\nb"),
                                       FileURL("/")};
    BusFileManager().reveal(urls);
    ASSERT_TRUE(eventually([&] { return service.isCalled(); }));

    const GPtr<char> text(g_variant_print(service.arguments(), FALSE));
    EXPECT_STREQ(text.get(),
                 "(['file:///home/ana/100%25%20%C3%B1%20%23%3F%22.txt', 'file:///home/ana/%FF%0Ab', 'file:///'], '')");
    service.answer(nullptr);
    BusFileManager().reveal({FileURL((home() / "refused").string())});
    ASSERT_TRUE(eventually([&] { return service.isCalled(); }));
    service.fail();
    EXPECT_EQ(opened(), home().string() + "\n") << "and nothing for what was shown";
}

TEST_F(BusTest, OpensTheFolderWhereNobodyShowsItems) {
    const fs::path folder = home() / "100% \xff";
    fs::create_directories(folder);
    BusFileManager().reveal({FileURL((folder / "file").string())});
    EXPECT_EQ(opened(), folder.string() + "\n");

    // The file manager object is long gone when the service refuses.
    FakeService service(address(), fileManager, "/org/freedesktop/FileManager1", fileManager);
    BusFileManager().reveal({FileURL((folder / "file").string()), FileURL((folder / "other").string())});
    ASSERT_TRUE(eventually([&] { return service.isCalled(); }));
    service.fail();
    EXPECT_EQ(opened(), folder.string() + "\n");
}

TEST_F(BusTest, ReadsThePreferenceThePortalTells) {
    FakeService service(address(), portal, portalPath, settings);
    const std::array<std::pair<GVariant*, Preference>, 5> answers = {
        {{portalAnswer(1), Preference::dark},
         {portalAnswer(2), Preference::light},
         {portalAnswer(0), Preference::none},
         {portalAnswer(7), Preference::none},
         {g_variant_new("(v)", g_variant_new_string("1")), Preference::none}}};
    for (const auto& [answer, preference] : answers) {
        const Preference expected = preference;
        PortalColorScheme scheme;
        std::vector<Preference> seen;
        QObject::connect(&scheme, &ColorScheme::preferenceChanged, [&] { seen.push_back(scheme.preference()); });
        EXPECT_EQ(scheme.preference(), Preference::none);
        ASSERT_TRUE(eventually([&] { return service.isCalled(); }));
        const GPtr<char> question(g_variant_print(service.arguments(), FALSE));
        EXPECT_STREQ(question.get(), "('org.freedesktop.appearance', 'color-scheme')");
        service.answer(answer);
        // Marks the end of what the portal had to say before.
        const Preference last = expected == Preference::dark ? Preference::light : Preference::dark;
        service.tellChange("org.freedesktop.appearance", "color-scheme",
                           g_variant_new_uint32(last == Preference::dark ? 1 : 2));
        ASSERT_TRUE(eventually([&] { return scheme.preference() == last; }));
        EXPECT_EQ(seen, expected == Preference::none ? std::vector{last} : (std::vector{expected, last}));
    }
}

TEST_F(BusTest, FollowsThePreferenceOfAPortalThatComesLater) {
    PortalColorScheme scheme;
    std::vector<Preference> seen;
    QObject::connect(&scheme, &ColorScheme::preferenceChanged, [&] { seen.push_back(scheme.preference()); });
    std::optional<FakeService> service(std::in_place, address(), portal, portalPath, settings);
    ASSERT_TRUE(eventually([&] { return service->isCalled(); }));
    service->fail();

    service->tellChange("org.freedesktop.appearance", "color-scheme", g_variant_new_uint32(1));
    service->tellChange("org.freedesktop.appearance", "accent-color", g_variant_new_uint32(2));
    service->tellChange("org.gnome.desktop.interface", "color-scheme", g_variant_new_uint32(2));
    service->tellChange("org.freedesktop.appearance", "color-scheme", g_variant_new_uint32(0));
    ASSERT_TRUE(eventually([&] { return seen.size() >= 2; }));
    EXPECT_EQ(seen, (std::vector{Preference::dark, Preference::none}));

    service.reset();
    service.emplace(address(), portal, portalPath, settings);
    ASSERT_TRUE(eventually([&] { return service->isCalled(); }));
    service->answer(portalAnswer(2));
    EXPECT_TRUE(eventually([&] { return scheme.preference() == Preference::light; }));
}

TEST_F(BusTest, ForgetsAnswersThatComeAfterItsEnd) {
    { const PortalColorScheme endsBeforeTheBusIsThere; }
    FakeService service(address(), portal, portalPath, settings);
    auto scheme = std::make_unique<PortalColorScheme>();
    ASSERT_TRUE(eventually([&] { return service.isCalled(); }));
    service.tellChange("org.freedesktop.appearance", "color-scheme", g_variant_new_uint32(1));
    service.answer(portalAnswer(1));
    scheme.reset();

    // Whoever still listened would have been told by the time the next one has its answer.
    PortalColorScheme next;
    ASSERT_TRUE(eventually([&] { return service.isCalled(); }));
    service.answer(portalAnswer(2));
    EXPECT_TRUE(eventually([&] { return next.preference() == Preference::light; }));
}
