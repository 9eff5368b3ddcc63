#include "Desktop/BusFileManager.h"
#include "Desktop/GioSupport.h"
#include "Desktop/PortalAppearance.h"
#include "Desktop/SingleInstance.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusMetaType>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <tuple>

namespace fs = std::filesystem;

namespace {

using namespace Qt::StringLiterals;

using BusTest = PrivateBusTest;

/// Makes a program the default one for folders. It writes down what it is given, and what it inherits.
void installOpener() {
    qputenv("MESA_SHADER_CACHE_DISABLE", "true");  // as the program does for itself
    const GObjectPtr<GAppInfo> opener(g_app_info_create_from_commandline(
        R"(sh -c 'echo "$1$GIO_USE_VFS$MESA_SHADER_CACHE_DISABLE" >>"$HOME/opened"' sh)", "Opener",
        G_APP_INFO_CREATE_NONE, nullptr));
    EXPECT_TRUE(g_app_info_set_as_default_for_type(opener.get(), "inode/directory", nullptr));
}

/// The folders that it has opened since the last look, a line each; waits for the first.
std::string opened() {
    const fs::path note = fs::path(getenv("HOME")) / "opened";
    waitUntil([&] { return fs::exists(note) && fs::file_size(note) > 0; });
    std::ifstream file(note, std::ios::binary);
    fs::remove(note);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST_F(BusTest, ShowsItemsByTheirBytesOrElseOpensTheirFolder) {
    installOpener();
    const fs::path folder = fs::path(getenv("HOME")) / "100% \xff";
    fs::create_directories(folder);
    const std::vector<FileURL> two{FileURL((folder / "file").string()), FileURL((folder / "other").string())};
    BusFileManager().reveal(two);
    EXPECT_EQ(opened(), folder.string() + "\n") << "nobody shows items";

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
    EXPECT_EQ(opened(), folder.string() + "\n") << "and nothing for what was shown";
}

using Settings = QMap<QString, QVariantMap>;

const QString common = u"org.freedesktop.appearance"_s;
const QString gnome = u"org.gnome.desktop.interface"_s;
const QString gnomeAccess = u"org.gnome.desktop.a11y.interface"_s;
const QString colorScheme = u"color-scheme"_s;
const QString reducedMotion = u"reduced-motion"_s;
const QString animations = u"enable-animations"_s;
const QString contrast = u"contrast"_s;
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

/// Notes all wishes at each change of one.
struct WatchedAppearance {
    WatchedAppearance() {
        for (const auto change : {&Appearance::preferenceChanged, &Appearance::reducesMotionChanged,
                                  &Appearance::raisesContrastChanged, &Appearance::accentChanged}) {
            QObject::connect(&wishes, change, [this] {
                noted = QVariant::fromValue(wishes.preference()).toString();
                noted += wishes.reducesMotion() ? u" still"_s : QString();
                noted += wishes.raisesContrast() ? u" contrast"_s : QString();
                if (const auto accent = wishes.accent()) {
                    noted += u" %1 %2 %3"_s.arg(accent->red).arg(accent->green).arg(accent->blue);
                }
            });
        }
    }
    void expect(const QString& expected) const {
        waitUntil([&] { return noted == expected; });
        EXPECT_EQ(noted.toStdString(), expected.toStdString());
    }

    const PortalAppearance wishes;
    QString noted;
};

/// A colour as the portal tells it.
QVariant colorOf(double red, double green, double blue) {
    QDBusArgument structure;
    structure.beginStructure();
    structure << red << green << blue;
    structure.endStructure();
    return QVariant::fromValue(structure);
}

TEST_F(BusTest, FollowsWhatThePortalTells) {
    const std::tuple<QString, QString, QVariant, QString> changes[] = {
        {gnome, colorScheme, 2U, u"dark still contrast 0.25 0 1"_s},  // which is not for all desktops
        {common, colorScheme, 7U, u"none still contrast 0.25 0 1"_s},
        {common, accentColor, 2U, u"none still contrast"_s},
        {common, accentColor, colorOf(0, 0.5, 0), u"none still contrast 0 0.5 0"_s},
        {common, accentColor, colorOf(0.5, -1, 0.5), u"none still contrast"_s},
        {common, contrast, 0U, u"none still"_s},
        {common, reducedMotion, u"0"_s, u"none"_s},
        {gnome, animations, false, u"none still"_s},
        {common, reducedMotion, 0U, u"none"_s},
    };
    const WatchedAppearance watched;
    AppearancePortal().fail();
    std::optional<AppearancePortal> portal(std::in_place);
    portal->tellAll(1U, {{common, {{reducedMotion, 1U}, {accentColor, colorOf(0.25, 0, 1)}}},
                         {gnomeAccess, {{u"high-contrast"_s, true}}}});
    watched.expect(u"dark still contrast 0.25 0 1"_s);
    for (const auto& [space, key, value, wishes] : changes) {
        portal->tellChange(space, key, value);
        watched.expect(wishes);
        ASSERT_FALSE(HasFailure());
    }
    portal.reset();
    portal.emplace().tellAll(2U, {{common, {{contrast, 1U}}}, {gnome, {{animations, false}}}});
    watched.expect(u"light still contrast"_s);
}

TEST_F(BusTest, ForgetsAnswersThatComeAfterItsEnd) {
    { const PortalAppearance endsBeforeTheBusIsThere; }
    AppearancePortal portal;
    {
        const PortalAppearance brief;
        ASSERT_TRUE(waitUntil([&] { return portal.isCalled(); }));
        portal.tellChange(common, colorScheme, 1U);
    }
    portal.tellAll(1U);
    // Whoever still listened would have been told by the time the next one has its answer.
    const WatchedAppearance next;
    portal.tellAll(2U);
    next.expect(u"light"_s);
}

using Role = SingleInstance::Role;

const QString id = u"app.duskfern.Single-Test"_s;
const QString path = u"/app/duskfern/Single_Test"_s;

class SingleInstanceTest : public PrivateBusTest {
protected:
    /// Calls the program that runs, as a desktop or a later start does, and waits for its answer.
    [[nodiscard]] QDBusMessage::MessageType call(const QString& method, const QVariantList& arguments) const {
        QDBusMessage message = QDBusMessage::createMethodCall(id, path, u"org.freedesktop.Application"_s, method);
        message.setArguments(arguments);
        return desktop.bus.call(message, QDBus::BlockWithGui).type();
    }

    const FakeService desktop{u"org.duskfern.Desktop"_s};
};

TEST_F(SingleInstanceTest, TheFirstIsToldWhatLaterStartsAskFor) {
    std::vector<std::pair<QString, QString>> told;
    {
        SingleInstance first(id, {});
        QObject::connect(&first, &SingleInstance::requested, [&](const SingleInstance::Request& request) {
            told.emplace_back(request.action, request.token);
        });
        ASSERT_EQ(first.role(), Role::first);
        const QVariantMap older{{u"desktop-startup-id"_s, u"id"_s}};
        const QVariantMap both{{u"desktop-startup-id"_s, u"id"_s}, {u"activation-token"_s, u"token"_s}};
        EXPECT_EQ(call(u"Activate"_s, {both}), QDBusMessage::ReplyMessage);
        EXPECT_EQ(call(u"ActivateAction"_s, {u"junk"_s, QVariantList(), older}), QDBusMessage::ReplyMessage);
    }
    EXPECT_EQ(told, (decltype(told){{{}, u"token"_s}, {u"junk"_s, u"id"_s}}));
    EXPECT_EQ(call(u"Activate"_s, {QVariantMap()}), QDBusMessage::ErrorMessage);
}

TEST_F(SingleInstanceTest, ALaterOnePassesItsRequestOn) {
    FakeService running(id);
    const std::tuple<SingleInstance::Request, QString, qsizetype> cases[] = {
        {{}, u"Activate"_s, 1}, {{u"space"_s, u"token"_s}, u"ActivateAction"_s, 3}};
    for (const auto& [request, method, count] : cases) {
        SingleInstance later(id, request);
        const QDBusMessage call = running.call();
        EXPECT_EQ(call.path(), path);
        EXPECT_EQ(call.member(), method);
        const auto added = qdbus_cast<QVariantMap>(call.arguments().value(count - 1));
        EXPECT_EQ(added.value(u"activation-token"_s).toString(), request.token);
        EXPECT_TRUE(count == 1 || call.arguments().constFirst() == request.action);
        running.answer({});
        EXPECT_EQ(later.role(), Role::later);
    }
}

TEST_F(SingleInstanceTest, IsTheFirstWhenTheOtherEndsMeanwhile) {
    std::optional<FakeService> running(std::in_place, id);
    SingleInstance next(id, {});
    EXPECT_EQ(running->call().member(), u"Activate"_s);
    running.reset();
    EXPECT_EQ(next.role(), Role::first);
    EXPECT_EQ(call(u"Activate"_s, {QVariantMap()}), QDBusMessage::ReplyMessage) << "and has its name";
}

TEST_F(SingleInstanceTest, OpensAWindowWhenTheOtherHangs) {
    const FakeService hanging(id);
    SingleInstance next(id, {});
    EXPECT_EQ(next.role(), Role::first);
}

}  // namespace
