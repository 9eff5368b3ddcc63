#include "Desktop/BusFileManager.h"
#include "Desktop/PortalColorScheme.h"
#include "Desktop/PortalFolderChooser.h"
#include "support/FakeDesktop.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

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

/// A change of preference that a portal tells.
void tellChange(FakeService& service, const char* space, const char* key, GVariant* value) {
    service.tell(nullptr, portalPath, settings, "SettingChanged", g_variant_new("(ssv)", space, key, value));
}

GVariant* portalAnswer(guint32 value) {
    return g_variant_new("(v)", g_variant_new_variant(g_variant_new_uint32(value)));
}

class BusTest : public PrivateBusTest {
protected:
    static void SetUpTestSuite() {
        PrivateBusTest::SetUpTestSuite();
        installOpener();
    }

    static fs::path home() { return getenv("HOME"); }

    /// Makes a program that writes down what it is given, and what it inherits, the default one for folders.
    static void installOpener() {
        const fs::path program = home() / "opener";
        std::ofstream(program)
            << "#!/bin/sh\nprintf '%s%s%s\\n' \"$1\" \"$GIO_USE_VFS\" \"$MESA_SHADER_CACHE_DISABLE\" >>\"$0.opened\"\n";
        setenv("MESA_SHADER_CACHE_DISABLE", "true",
               1);  // as the program does for itself
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
        if (!waitUntil([&] { return fs::exists(note) && fs::file_size(note) > 0; })) {
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
    ASSERT_TRUE(waitUntil([&] { return service.isCalled(); }));

    const GPtr<char> text(g_variant_print(service.arguments(), FALSE));
    EXPECT_STREQ(text.get(),
                 "(['file:///home/ana/100%25%20%C3%B1%20%23%3F%22.txt', 'file:///home/ana/%FF%0Ab', 'file:///'], '')");
    service.answer(nullptr);
    BusFileManager().reveal({FileURL((home() / "refused").string())});
    ASSERT_TRUE(waitUntil([&] { return service.isCalled(); }));
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
    ASSERT_TRUE(waitUntil([&] { return service.isCalled(); }));
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
        ASSERT_TRUE(waitUntil([&] { return service.isCalled(); }));
        const GPtr<char> question(g_variant_print(service.arguments(), FALSE));
        EXPECT_STREQ(question.get(), "('org.freedesktop.appearance', 'color-scheme')");
        service.answer(answer);
        // Marks the end of what the portal had to say before.
        const Preference last = expected == Preference::dark ? Preference::light : Preference::dark;
        tellChange(service, "org.freedesktop.appearance", "color-scheme",
                   g_variant_new_uint32(last == Preference::dark ? 1 : 2));
        ASSERT_TRUE(waitUntil([&] { return scheme.preference() == last; }));
        EXPECT_EQ(seen, expected == Preference::none ? std::vector{last} : (std::vector{expected, last}));
    }
}

TEST_F(BusTest, FollowsThePreferenceOfAPortalThatComesLater) {
    PortalColorScheme scheme;
    std::vector<Preference> seen;
    QObject::connect(&scheme, &ColorScheme::preferenceChanged, [&] { seen.push_back(scheme.preference()); });
    std::optional<FakeService> service(std::in_place, address(), portal, portalPath, settings);
    ASSERT_TRUE(waitUntil([&] { return service->isCalled(); }));
    service->fail();

    tellChange(*service, "org.freedesktop.appearance", "color-scheme", g_variant_new_uint32(1));
    tellChange(*service, "org.freedesktop.appearance", "accent-color", g_variant_new_uint32(2));
    tellChange(*service, "org.gnome.desktop.interface", "color-scheme", g_variant_new_uint32(2));
    tellChange(*service, "org.freedesktop.appearance", "color-scheme", g_variant_new_uint32(0));
    ASSERT_TRUE(waitUntil([&] { return seen.size() >= 2; }));
    EXPECT_EQ(seen, (std::vector{Preference::dark, Preference::none}));

    service.reset();
    service.emplace(address(), portal, portalPath, settings);
    ASSERT_TRUE(waitUntil([&] { return service->isCalled(); }));
    service->answer(portalAnswer(2));
    EXPECT_TRUE(waitUntil([&] { return scheme.preference() == Preference::light; }));
}

TEST_F(BusTest, ForgetsAnswersThatComeAfterItsEnd) {
    { const PortalColorScheme endsBeforeTheBusIsThere; }
    FakeService service(address(), portal, portalPath, settings);
    auto scheme = std::make_unique<PortalColorScheme>();
    ASSERT_TRUE(waitUntil([&] { return service.isCalled(); }));
    tellChange(service, "org.freedesktop.appearance", "color-scheme", g_variant_new_uint32(1));
    service.answer(portalAnswer(1));
    scheme.reset();

    // Whoever still listened would have been told by the time the next one has its answer.
    PortalColorScheme next;
    ASSERT_TRUE(waitUntil([&] { return service.isCalled(); }));
    service.answer(portalAnswer(2));
    EXPECT_TRUE(waitUntil([&] { return next.preference() == Preference::light; }));
}

TEST_F(BusTest, ReadsWhetherMotionIsWanted) {
    struct Case {
        const char* what;
        const char* answer;
        bool isReduced;
    };
    const std::array<Case, 7> cases{{
        {"nobody tells", "{}", false},
        {"reduced", "{'org.freedesktop.appearance': {'reduced-motion': <uint32 1>}}", true},
        {"GNOME without animations", "{'org.gnome.desktop.interface': {'enable-animations': <false>}}", true},
        {"GNOME with them", "{'org.gnome.desktop.interface': {'enable-animations': <true>}}", false},
        {"what all desktops may say comes first",
         "{'org.freedesktop.appearance': {'reduced-motion': <uint32 0>},"
         " 'org.gnome.desktop.interface': {'enable-animations': <false>}}",
         false},
        {"of another type", "{'org.freedesktop.appearance': {'reduced-motion': <'1'>}}", false},
        {"in one more variant", "{'org.gnome.desktop.interface': {'enable-animations': <<false>>}}", true},
    }};
    for (const auto& [what, answer, isReduced] : cases) {
        FakeService service(address(), portal, portalPath, settings);
        service.readsAll = true;
        const PortalColorScheme scheme;
        int changes = 0;
        QObject::connect(&scheme, &ColorScheme::reducesMotionChanged, [&] { ++changes; });
        ASSERT_TRUE(waitUntil([&] { return service.isCalled("Read"); })) << what;
        service.fail();
        ASSERT_TRUE(waitUntil([&] { return service.isCalled("ReadAll"); })) << what;
        const GPtr<char> question(g_variant_print(service.arguments(), FALSE));
        EXPECT_STREQ(question.get(), "(['org.freedesktop.appearance', 'org.gnome.desktop.interface'],)");
        const GPtr<GVariant> values(g_variant_parse(G_VARIANT_TYPE("a{sa{sv}}"), answer, nullptr, nullptr, nullptr));
        service.answer(g_variant_new("(@a{sa{sv}})", values.get()));
        // The end of what the portal had to say before.
        tellChange(service, "org.freedesktop.appearance", "color-scheme", g_variant_new_uint32(1));
        ASSERT_TRUE(waitUntil([&] { return scheme.preference() == Preference::dark; })) << what;
        EXPECT_EQ(scheme.reducesMotion(), isReduced) << what;
        EXPECT_EQ(changes, isReduced ? 1 : 0) << what;

        tellChange(service, "org.gnome.desktop.interface", "enable-animations", g_variant_new_boolean(TRUE));
        tellChange(service, "org.freedesktop.appearance", "reduced-motion", g_variant_new_uint32(1));
        EXPECT_TRUE(waitUntil([&] { return scheme.reducesMotion(); })) << what;
        tellChange(service, "org.freedesktop.appearance", "reduced-motion", g_variant_new_uint32(0));
        EXPECT_TRUE(waitUntil([&] { return !scheme.reducesMotion(); })) << what;
    }
}

/// GLib's default is to end a program whose bus goes.
TEST_F(BusTest, TheProgramOutlivesTheBus) {
    const GObjectPtr<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    const auto expectOutlived = [&](const char* who) {
        EXPECT_TRUE(waitUntil([&] { return g_dbus_connection_get_exit_on_close(bus.get()) == FALSE; })) << who;
        g_dbus_connection_set_exit_on_close(bus.get(), TRUE);
    };
    g_dbus_connection_set_exit_on_close(bus.get(), TRUE);
    BusFileManager().reveal({FileURL("/")});
    expectOutlived("the file manager");
    const PortalColorScheme scheme;
    expectOutlived("the colours");
    FakeFolderChooser fallback;
    PortalFolderChooser chooser(fallback);
    chooser.choose({}, [](const std::optional<FileURL>&) {});
    expectOutlived("the folder chooser");
    g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
}
