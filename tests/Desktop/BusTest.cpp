#include "Desktop/BusFileManager.h"
#include "Desktop/GioSupport.h"
#include "Desktop/PortalAppearance.h"
#include "Desktop/PortalFolderChooser.h"
#include "Desktop/SingleInstance.h"
#include "support/FakeDesktop.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <QtDBus/QDBusMetaType>
#include <cstdlib>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

using namespace Qt::StringLiterals;

using Preference = Appearance::Preference;
using Preferences = std::vector<Preference>;

struct FileManagerService : FakeService {
    explicit FileManagerService(const QString& address) : FakeService(address, u"org.freedesktop.FileManager1"_s) {}
};

using Settings = QMap<QString, QVariantMap>;

/// A portal that knows the preferred colours, and at once whether motion is wanted.
struct ColorPortal : FakeService {
    explicit ColorPortal(const QString& address, Settings all = {})
        : FakeService(address, u"org.freedesktop.portal.Desktop"_s), motion(std::move(all)) {
        qDBusRegisterMetaType<Settings>();
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.member() != u"ReadAll"_s) {
            return FakeService::handleMessage(message, bus);
        }
        asked = message.arguments().value(0).toStringList();
        send(message.createReply(QVariant::fromValue(motion)));
        return true;
    }

    void answerWith(const QVariant& value) { answer({anything(anything(value))}); }
    void tellChange(const char* space, const char* key, const QVariant& value) {
        QDBusMessage change = QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s,
                                                         u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        change.setArguments({QString::fromUtf8(space), QString::fromUtf8(key), anything(value)});
        send(change);
    }
    void tellColors(unsigned value) { tellChange("org.freedesktop.appearance", "color-scheme", value); }

    Settings motion;
    QStringList asked;
};

/// The colours, and what was told of them.
struct WatchedColors {
    WatchedColors() {
        QObject::connect(&scheme, &Appearance::preferenceChanged, [this] { seen.push_back(scheme.preference()); });
    }
    [[nodiscard]] bool become(Preference wanted) const {
        return waitUntil([&] { return scheme.preference() == wanted; });
    }

    PortalAppearance scheme;
    Preferences seen;
};

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
        qputenv("MESA_SHADER_CACHE_DISABLE", "true");  // as the program does for itself
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
        waitUntil([&] { return fs::exists(note) && fs::file_size(note) > 0; });
        std::ifstream file(note, std::ios::binary);
        std::string folders{std::istreambuf_iterator<char>(file), {}};
        fs::remove(note);
        return folders;
    }
};

TEST_F(BusTest, RevealsEveryItemByItsBytes) {
    FileManagerService service(address());
    BusFileManager().reveal({FileURL("/home/ana/100% ñ #?\".txt"), FileURL("/home/ana/\xff\nb"), FileURL("/")});
    const QStringList uris{u"file:///home/ana/100%25%20%C3%B1%20%23%3F%22.txt"_s, u"file:///home/ana/%FF%0Ab"_s,
                           u"file:///"_s};
    EXPECT_EQ(service.call().arguments(), (QVariantList{uris, QString()}));
    service.answer({});
    BusFileManager().reveal({FileURL((home() / "refused").string())});
    EXPECT_EQ(service.call().member(), u"ShowItems"_s);
    service.fail();
    EXPECT_EQ(opened(), home().string() + "\n") << "and nothing for what was shown";
}

TEST_F(BusTest, OpensTheFolderWhereNobodyShowsItems) {
    const fs::path folder = home() / "100% \xff";
    fs::create_directories(folder);
    const FileURL file((folder / "file").string());
    BusFileManager().reveal({file});
    EXPECT_EQ(opened(), folder.string() + "\n");

    // The file manager object is long gone when the service refuses.
    FileManagerService service(address());
    BusFileManager().reveal({file, FileURL((folder / "other").string())});
    ASSERT_TRUE(waitUntil([&] { return service.isCalled(); }));
    service.fail();
    EXPECT_EQ(opened(), folder.string() + "\n");
}

TEST_F(BusTest, ReadsThePreferenceThePortalTells) {
    ColorPortal portal(address());
    const std::pair<QVariant, Preference> rows[] = {{1U, Preference::dark},
                                                    {2U, Preference::light},
                                                    {0U, Preference::none},
                                                    {7U, Preference::none},
                                                    {u"1"_s, Preference::none}};
    for (const auto& [value, preference] : rows) {
        const WatchedColors colors;
        EXPECT_EQ(colors.scheme.preference(), Preference::none);
        EXPECT_EQ(portal.call().arguments(), (QVariantList{u"org.freedesktop.appearance"_s, u"color-scheme"_s}));
        portal.answerWith(value);
        // Marks the end of what the portal had to say before.
        const Preference last = preference == Preference::dark ? Preference::light : Preference::dark;
        portal.tellColors(last == Preference::dark ? 1 : 2);
        ASSERT_TRUE(colors.become(last));
        EXPECT_EQ(colors.seen, preference == Preference::none ? Preferences{last} : (Preferences{preference, last}));
    }
}

TEST_F(BusTest, FollowsThePreferenceOfAPortalThatComesLater) {
    const WatchedColors colors;
    std::optional<ColorPortal> portal(std::in_place, address());
    ASSERT_TRUE(waitUntil([&] { return portal->isCalled(); }));
    portal->fail();
    portal->tellColors(1);
    portal->tellChange("org.freedesktop.appearance", "accent-color", 2U);
    portal->tellChange("org.gnome.desktop.interface", "color-scheme", 2U);
    portal->tellColors(0);
    ASSERT_TRUE(waitUntil([&] { return colors.seen.size() >= 2; }));
    EXPECT_EQ(colors.seen, (Preferences{Preference::dark, Preference::none}));

    portal.reset();
    portal.emplace(address());
    ASSERT_TRUE(waitUntil([&] { return portal->isCalled(); }));
    portal->answerWith(2U);
    EXPECT_TRUE(colors.become(Preference::light));
}

TEST_F(BusTest, ForgetsAnswersThatComeAfterItsEnd) {
    { const PortalAppearance endsBeforeTheBusIsThere; }
    ColorPortal portal(address());
    auto colors = std::make_unique<PortalAppearance>();
    ASSERT_TRUE(waitUntil([&] { return portal.isCalled(); }));
    portal.tellColors(1);
    portal.answerWith(1U);
    colors.reset();

    // Whoever still listened would have been told by the time the next one has its answer.
    const WatchedColors next;
    ASSERT_TRUE(waitUntil([&] { return portal.isCalled(); }));
    portal.answerWith(2U);
    EXPECT_TRUE(next.become(Preference::light));
}

/// A colour as the portal tells it.
QVariant colorOf(double red, double green, double blue) {
    QDBusArgument structure;
    structure.beginStructure();
    structure << red << green << blue;
    structure.endStructure();
    return QVariant::fromValue(structure);
}

TEST_F(BusTest, ReadsTheOtherWishes) {
    using Accent = Appearance::Accent;
    const QString all = u"org.freedesktop.appearance"_s;
    const QString gnome = u"org.gnome.desktop.interface"_s;
    const QString gnomeAccess = u"org.gnome.desktop.a11y.interface"_s;
    const QString reduced = u"reduced-motion"_s;
    const QString animations = u"enable-animations"_s;
    const QString accentColor = u"accent-color"_s;
    struct Case {
        const char* what = "";
        Settings settings;
        bool isReduced = false;
        bool isRaised = false;
        std::optional<Accent> accent = {};
    };
    const Case cases[] = {
        {"nobody tells", {}},
        {"reduced", {{all, {{reduced, 1U}}}}, true},
        {"GNOME without animations", {{gnome, {{animations, false}}}}, true},
        {"GNOME with them", {{gnome, {{animations, true}}}}},
        {"what all desktops may say comes first", {{all, {{reduced, 0U}}}, {gnome, {{animations, false}}}}},
        {"of another type", {{all, {{reduced, u"1"_s}, {accentColor, 2U}}}}},
        {"in one more variant", {{gnome, {{animations, anything(false)}}}}, true},
        {"contrast and colour",
         {{all, {{u"contrast"_s, 1U}, {accentColor, colorOf(0.25, 0, 1)}}}},
         false,
         true,
         Accent{0.25, 0, 1}},
        {"GNOME's contrast, and a colour that says none",
         {{gnomeAccess, {{u"high-contrast"_s, true}}}, {all, {{accentColor, colorOf(0.5, -1, 0.5)}}}},
         false,
         true},
    };
    for (const auto& [what, settings, isReduced, isRaised, accent] : cases) {
        ColorPortal portal(address(), settings);
        const PortalAppearance scheme;
        int changes = 0;
        for (const auto signal :
             {&Appearance::reducesMotionChanged, &Appearance::raisesContrastChanged, &Appearance::accentChanged}) {
            QObject::connect(&scheme, signal, [&] { ++changes; });
        }
        ASSERT_TRUE(waitUntil([&] { return !portal.asked.isEmpty(); })) << what;
        EXPECT_EQ(portal.asked, (QStringList{all, gnome, gnomeAccess}));
        // The end of what the portal had to say before.
        portal.tellColors(1);
        ASSERT_TRUE(waitUntil([&] { return scheme.preference() == Preference::dark; })) << what;
        EXPECT_EQ(scheme.reducesMotion(), isReduced) << what;
        EXPECT_EQ(scheme.raisesContrast(), isRaised) << what;
        EXPECT_EQ(scheme.accent(), accent) << what;
        EXPECT_EQ(changes, (isReduced ? 1 : 0) + (isRaised ? 1 : 0) + (accent ? 1 : 0)) << what;

        portal.tellChange("org.gnome.desktop.interface", "enable-animations", true);
        portal.tellChange("org.freedesktop.appearance", "reduced-motion", 1U);
        EXPECT_TRUE(waitUntil([&] { return scheme.reducesMotion(); })) << what;
        portal.tellChange("org.freedesktop.appearance", "reduced-motion", 0U);
        portal.tellChange("org.freedesktop.appearance", "contrast", isRaised ? 0U : 1U);
        portal.tellChange("org.freedesktop.appearance", "accent-color", colorOf(0, 0.5, 0));
        EXPECT_TRUE(waitUntil([&] { return scheme.accent() == Accent({0, 0.5, 0}); })) << what;
        EXPECT_FALSE(scheme.reducesMotion()) << what;
        EXPECT_NE(scheme.raisesContrast(), isRaised) << what;
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
    const PortalAppearance scheme;
    expectOutlived("the colours");
    FakeFolderChooser fallback;
    PortalFolderChooser chooser(fallback);
    chooser.choose({}, [](const std::optional<FileURL>&) {});
    expectOutlived("the folder chooser");
    SingleInstance instance(u"app.duskfern.Test"_s, {});
    EXPECT_EQ(instance.role(), SingleInstance::Role::first);
    expectOutlived("the only start");
    g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
}

}  // namespace
