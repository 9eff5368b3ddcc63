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
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace fs = std::filesystem;

namespace {

using namespace Qt::StringLiterals;

using BusTest = PrivateBusTest;

/// The default program for folders, which writes down what it is given, and what it inherits.
class Opener {
public:
    Opener() {
        qputenv("MESA_SHADER_CACHE_DISABLE", "true");  // as the program does for itself
        write(m_program, "#!/bin/sh\nprintf '%s%s%s\\n' \"$1\" \"$GIO_USE_VFS\" \"$MESA_SHADER_CACHE_DISABLE\" >>\"" +
                             m_note.string() + "\"\n");
        fs::permissions(m_program, fs::perms::owner_all);
        write(fs::path(getenv("XDG_DATA_HOME")) / "applications/duskfern-opener.desktop",
              "[Desktop Entry]\nType=Application\nName=Opener\nExec=\"" + m_program.string() + "\" %f\n");
        write(fs::path(getenv("XDG_CONFIG_HOME")) / "mimeapps.list",
              "[Default Applications]\ninode/directory=duskfern-opener.desktop\n");
    }

    /// The folders that were opened since the last look, a line each; waits for the first.
    [[nodiscard]] std::string opened() const {
        waitUntil([this] { return fs::exists(m_note) && fs::file_size(m_note) > 0; });
        std::ifstream file(m_note, std::ios::binary);
        std::string folders{std::istreambuf_iterator<char>(file), {}};
        fs::remove(m_note);
        return folders;
    }

private:
    static void write(const fs::path& file, const std::string& text) {
        fs::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }

    const fs::path m_program = fs::path(getenv("HOME")) / "opener";
    const fs::path m_note = fs::path(getenv("HOME")) / "opened";
};

TEST_F(BusTest, ShowsItemsByTheirBytesOrElseOpensTheirFolder) {
    const Opener opener;
    const fs::path folder = fs::path(getenv("HOME")) / "100% \xff";
    fs::create_directories(folder);
    const std::vector<FileURL> two{FileURL((folder / "file").string()), FileURL((folder / "other").string())};
    BusFileManager().reveal(two);
    EXPECT_EQ(opener.opened(), folder.string() + "\n") << "nobody shows items";

    FakeService service(u"org.freedesktop.FileManager1"_s);
    BusFileManager().reveal({FileURL("/home/ana/100% ñ #?\".txt"), FileURL("/home/ana/\xff\nb"), FileURL("/")});
    const QStringList uris{u"file:///home/ana/100%25%20%C3%B1%20%23%3F%22.txt"_s, u"file:///home/ana/%FF%0Ab"_s,
                           u"file:///"_s};
    EXPECT_EQ(service.call().arguments(), (QVariantList{uris, QString()}));
    service.answer({});
    // The file manager object is long gone when the service refuses.
    BusFileManager().reveal(two);
    EXPECT_EQ(service.call().member(), u"ShowItems"_s);
    service.fail();
    EXPECT_EQ(opener.opened(), folder.string() + "\n") << "and nothing for what was shown";
}

using Settings = QMap<QString, QVariantMap>;

const QString common = u"org.freedesktop.appearance"_s;
const QString gnome = u"org.gnome.desktop.interface"_s;
const QString gnomeAccess = u"org.gnome.desktop.a11y.interface"_s;
const QString colorScheme = u"color-scheme"_s;
const QString reducedMotion = u"reduced-motion"_s;
const QString animations = u"enable-animations"_s;
const QString contrast = u"contrast"_s;
const QString highContrast = u"high-contrast"_s;
const QString accentColor = u"accent-color"_s;

/// A portal that tells what the user wishes.
struct AppearancePortal : FakeService {
    AppearancePortal() : FakeService(u"org.freedesktop.portal.Desktop"_s) { qDBusRegisterMetaType<Settings>(); }

    /// Waits for the questions for the preferred colours and for the rest, and answers them.
    void tellAll(const QVariant& colors, const Settings& rest = {}) {
        EXPECT_EQ(call().arguments(), (QVariantList{common, colorScheme}));
        answer({anything(anything(colors))});
        EXPECT_EQ(call().arguments(), (QVariantList{QStringList{common, gnome, gnomeAccess}}));
        answer({QVariant::fromValue(rest)});
    }
    void tellChange(const QString& space, const QString& key, const QVariant& value) {
        tell(u"/org/freedesktop/portal/desktop"_s, u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s,
             {space, key, anything(value)});
    }
};

/// Notes each change of the wishes.
struct WatchedAppearance {
    WatchedAppearance() {
        QObject::connect(&wishes, &Appearance::preferenceChanged,
                         [this] { changes << QVariant::fromValue(wishes.preference()).toString(); });
        QObject::connect(&wishes, &Appearance::reducesMotionChanged,
                         [this] { changes << (wishes.reducesMotion() ? u"still"_s : u"moving"_s); });
        QObject::connect(&wishes, &Appearance::raisesContrastChanged,
                         [this] { changes << (wishes.raisesContrast() ? u"contrast"_s : u"no contrast"_s); });
        QObject::connect(&wishes, &Appearance::accentChanged, [this] {
            const auto [red, green, blue] = wishes.accent().value_or(Appearance::Accent{-1, -1, -1});
            changes << u"%1 %2 %3"_s.arg(red).arg(green).arg(blue);
        });
    }
    void expectChanges(const QStringList& expected) const {
        waitUntil([&] { return changes.size() >= expected.size(); });
        EXPECT_EQ(changes, expected);
    }

    PortalAppearance wishes;
    QStringList changes;
};

/// A colour as the portal tells it.
QVariant colorOf(double red, double green, double blue) {
    QDBusArgument structure;
    structure.beginStructure();
    structure << red << green << blue;
    structure.endStructure();
    return QVariant::fromValue(structure);
}

TEST_F(BusTest, ReadsWhatThePortalTells) {
    const std::tuple<const char*, QVariant, Settings, QStringList> cases[] = {
        {"nothing", 0U, {}, {}},
        {"all that desktops have in common",
         1U,
         {{common, {{reducedMotion, 1U}, {contrast, 1U}, {accentColor, colorOf(0.25, 0, 1)}}}},
         {u"dark"_s, u"still"_s, u"contrast"_s, u"0.25 0 1"_s}},
        {"GNOME's own",
         2U,
         {{gnome, {{animations, false}}}, {gnomeAccess, {{highContrast, true}}}},
         {u"light"_s, u"still"_s, u"contrast"_s}},
        {"what they have in common comes first",
         0U,
         {{common, {{reducedMotion, 0U}, {contrast, 0U}}},
          {gnome, {{animations, false}}},
          {gnomeAccess, {{highContrast, true}}}},
         {}},
        {"an unknown number, motion, and a colour that says none",
         7U,
         {{gnome, {{animations, true}}}, {common, {{accentColor, colorOf(0.5, -1, 0.5)}}}},
         {}},
        {"other types", u"1"_s, {{common, {{reducedMotion, u"1"_s}, {accentColor, 2U}}}}, {}},
    };
    for (const auto& [what, colors, settings, changes] : cases) {
        SCOPED_TRACE(what);
        AppearancePortal portal;
        const WatchedAppearance watched;
        portal.tellAll(colors, settings);
        // Marks the end of what the portal had to say before.
        portal.tellChange(common, accentColor, colorOf(0, 0.5, 0));
        watched.expectChanges(changes + QStringList{u"0 0.5 0"_s});
    }
}

TEST_F(BusTest, FollowsAPortalThatComesLater) {
    const WatchedAppearance watched;
    std::optional<AppearancePortal> portal(std::in_place);
    portal->fail();
    portal->tellChange(common, colorScheme, 1U);
    portal->tellChange(gnome, colorScheme, 2U);  // which is not for all desktops
    portal->tellChange(common, colorScheme, 0U);
    portal->tellChange(gnome, animations, false);
    portal->tellChange(common, reducedMotion, 0U);
    portal->tellChange(gnome, animations, true);
    portal->tellChange(common, reducedMotion, 1U);
    portal->tellChange(gnomeAccess, highContrast, true);
    portal->tellChange(common, contrast, 0U);
    portal->tellChange(common, accentColor, colorOf(0, 0.5, 0));
    portal->tellChange(common, accentColor, 2U);
    watched.expectChanges({u"dark"_s, u"none"_s, u"still"_s, u"moving"_s, u"still"_s, u"contrast"_s, u"no contrast"_s,
                           u"0 0.5 0"_s, u"-1 -1 -1"_s});
    portal.reset();
    portal.emplace().tellAll(2U);
    EXPECT_TRUE(waitUntil([&] { return watched.wishes.preference() == Appearance::Preference::light; }));
}

TEST_F(BusTest, ForgetsAnswersThatComeAfterItsEnd) {
    { const PortalAppearance endsBeforeTheBusIsThere; }
    AppearancePortal portal;
    auto brief = std::make_unique<PortalAppearance>();
    ASSERT_TRUE(waitUntil([&] { return portal.isCalled(); }));
    portal.tellChange(common, colorScheme, 1U);
    brief.reset();
    portal.tellAll(1U);

    // Whoever still listened would have been told by the time the next one has its answer.
    const WatchedAppearance next;
    portal.tellAll(2U);
    next.expectChanges({u"light"_s});
}

/// GLib's default is to end a program whose bus goes.
TEST_F(BusTest, TheProgramOutlivesTheBus) {
    const Opener forTheFileManager;
    FakeFolderChooser fallback;
    PortalFolderChooser chooser(fallback);
    std::optional<PortalAppearance> appearance;
    std::optional<SingleInstance> instance;
    const std::pair<const char*, std::function<void()>> users[] = {
        {"the file manager", [] { BusFileManager().reveal({FileURL("/")}); }},
        {"the colours", [&] { appearance.emplace(); }},
        {"the folder chooser", [&] { chooser.choose({}, [](const std::optional<FileURL>&) {}); }},
        {"the only start", [&] { instance.emplace(u"app.duskfern.Test"_s, SingleInstance::Request()); }},
    };
    const GObjectPtr<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    for (const auto& [who, useBus] : users) {
        g_dbus_connection_set_exit_on_close(bus.get(), TRUE);
        useBus();
        EXPECT_TRUE(waitUntil([&] { return g_dbus_connection_get_exit_on_close(bus.get()) == FALSE; })) << who;
    }
}

}  // namespace
