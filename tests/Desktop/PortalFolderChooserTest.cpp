#include "Desktop/PortalFolderChooser.h"
#include "support/FakeDesktop.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>
#include <QtCore/QSysInfo>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusObjectPath>

#include <vector>

namespace {

using namespace Qt::StringLiterals;

using Answers = std::vector<std::optional<FileURL>>;

/// A portal whose dialog the test answers. Without a version it says nothing by itself.
class FakePortal : public FakeService {
public:
    explicit FakePortal(const QString& address, std::optional<unsigned> version = 3)
        : FakeService(address, u"org.freedesktop.portal.Desktop"_s), m_version(version) {}

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (m_version && message.member() == u"Get"_s) {
            send(message.createReply(anything(*m_version)));
            return true;
        }
        return FakeService::handleMessage(message, bus);
    }

    [[nodiscard]] bool isAsked() const { return call().member() == u"OpenFile"_s; }
    [[nodiscard]] QVariantMap options() const { return qdbus_cast<QVariantMap>(call().arguments().value(2)); }

    /// Waits for the question and opens the dialog: at the path where the caller listens, or at another one.
    [[nodiscard]] bool open(const QString& otherPath = {}) {
        if (!isAsked()) {
            return false;
        }
        m_caller = call().service();
        const QString sender = m_caller.mid(1).replace(u'.', u'_');
        m_path = otherPath.isEmpty() ? u"/org/freedesktop/portal/desktop/request/"_s + sender + u'/' +
                                           options()[u"handle_token"_s].toString()
                                     : otherPath;
        answer({QVariant::fromValue(QDBusObjectPath(m_path))});
        return true;
    }

    void respond(unsigned ending, const QStringList& uris) {
        QDBusMessage response =
            QDBusMessage::createTargetedSignal(m_caller, m_path, u"org.freedesktop.portal.Request"_s, u"Response"_s);
        response.setArguments({ending, uris.empty() ? QVariantMap() : QVariantMap{{u"uris"_s, uris}}});
        send(response);
    }

    /// Whether the dialog is told to close, which is then answered.
    [[nodiscard]] bool isClosed() {
        const bool isTold = call().member() == u"Close"_s && call().path() == m_path;
        if (isTold) {
            answer({});
        }
        return isTold;
    }

private:
    std::optional<unsigned> m_version;
    QString m_path;
    QString m_caller;
};

class PortalFolderChooserTest : public PrivateBusTest {
protected:
    void ask(const FolderQuestion& question = {u"Elegir"_s, std::nullopt, {}}) {
        chooser->choose(question, [this](const std::optional<FileURL>& url) { answers.push_back(url); });
    }
    void expectAnswer(const std::optional<FileURL>& url, const std::string& why) {
        ASSERT_TRUE(waitUntil([&] { return !answers.empty(); })) << why;
        EXPECT_EQ(std::exchange(answers, {}), Answers{url}) << why;
    }

    FakeFolderChooser fallback;
    std::optional<PortalFolderChooser> chooser{std::in_place, fallback};
    Answers answers;
};

TEST_F(PortalFolderChooserTest, SaysWhatIsToBeChosen) {
    FakePortal portal(address());
    ask({u"Elegir"_s, FileURL("/a\xff"), "x11:4a"});
    ASSERT_TRUE(portal.isAsked());
    EXPECT_EQ(portal.call().arguments().mid(0, 2), (QVariantList{u"x11:4a"_s, u"Elegir carpeta"_s}));
    QVariantMap options = portal.options();
    EXPECT_FALSE(options.take(u"handle_token"_s).toString().isEmpty());
    EXPECT_EQ(options, (QVariantMap{{u"accept_label"_s, u"Elegir"_s},
                                    {u"modal"_s, true},
                                    {u"multiple"_s, false},
                                    {u"directory"_s, true},
                                    // With the byte that ends it.
                                    {u"current_folder"_s, QByteArray("/a\xff", 4)}}));
    chooser.reset();
}

TEST_F(PortalFolderChooserTest, TakesTheFolderByItsBytes) {
    struct Row {
        unsigned ending = 0;
        QStringList uris{};
        std::optional<FileURL> answer{};
    };
    const QString host = QSysInfo::machineHostName();
    const Row rows[] = {
        {0, {u"file:///home/ana/M%C3%BAsica"_s}, FileURL("/home/ana/Música")},
        {0, {u"file:///home/ana/%FF%0Ab%20%25/"_s}, FileURL("/home/ana/\xff\nb %")},
        {0, {u"file:///"_s}, FileURL("/")},
        {0, {u"file://localhost/x"_s, u"file:///y"_s}, FileURL("/x")},
        {0, {u"file://"_s + host + u"/x"_s}, FileURL("/x")},
        {0, {u"file://elsewhere.example/x"_s}, std::nullopt},
        {0, {u"smb://server/share"_s}, std::nullopt},
        {0, {u"file:///a%00b"_s}, std::nullopt},
        {0, {u"/x"_s}, std::nullopt},
        {0, {}, std::nullopt},
        {1, {u"file:///x"_s}, std::nullopt},
    };
    FakePortal portal(address());
    for (const Row& row : rows) {
        ask();
        ASSERT_TRUE(portal.open());
        portal.respond(row.ending, row.uris);
        expectAnswer(row.answer, row.uris.value(0).toStdString());
    }
    EXPECT_EQ(fallback.asked, 0);

    // An old portal answers where it likes. That would overtake the listening at a path learnt only now.
    ask();
    ASSERT_TRUE(portal.open(u"/org/freedesktop/portal/desktop/request/own"_s));
    EXPECT_TRUE(waitUntil([&] {
        portal.respond(0, {u"file:///x"_s});
        return !answers.empty();
    }));
    expectAnswer(FileURL("/x"), "an old portal");
}

TEST_F(PortalFolderChooserTest, ClosesTheDialogWhenCancelled) {
    FakePortal portal(address());
    ask();
    ASSERT_TRUE(portal.open());
    chooser->cancel();
    EXPECT_EQ(answers, Answers{std::nullopt}) << "at once";
    ASSERT_TRUE(portal.isClosed());

    // Cancelled before the portal has said that it has opened it.
    ask();
    ASSERT_TRUE(portal.isAsked());
    chooser->cancel();
    EXPECT_EQ(answers.size(), 2U);
    ASSERT_TRUE(portal.open());
    EXPECT_TRUE(portal.isClosed());
    portal.respond(0, {u"file:///late"_s});

    // The program ends while it is open, which it knows once the events have been looked at.
    ask();
    ASSERT_TRUE(portal.open());
    for (int turn = 0; turn < 50; ++turn) {
        QCoreApplication::processEvents();
        QThread::usleep(1000);
    }
    chooser.reset();
    EXPECT_TRUE(portal.isClosed());
    EXPECT_EQ(answers, (Answers{std::nullopt, std::nullopt})) << "and nothing of what came late";
}

TEST_F(PortalFolderChooserTest, LeavesTheQuestionToTheOtherChooserWithoutAPortal) {
    fallback.folder = FileURL("/by another way");
    ask();
    expectAnswer(fallback.folder, "nobody has the name");
    {
        const FakePortal tooOld(address(), 2);
        ask();
        expectAnswer(fallback.folder, "it cannot choose folders");
        EXPECT_FALSE(tooOld.isCalled()) << "what it would do wrongly";
    }
    {
        FakePortal other(address(), std::nullopt);
        ask();
        EXPECT_EQ(other.call().member(), u"Get"_s);
        other.fail();
        expectAnswer(fallback.folder, "it has no dialogs");
        ask();
        expectAnswer(fallback.folder, "it says nothing");
    }
    {
        FakePortal portal(address());
        ask();
        ASSERT_TRUE(portal.isAsked());
        portal.fail();
        expectAnswer(fallback.folder, "it refuses");
        ask();
        ASSERT_TRUE(portal.open());
        portal.respond(2, {});
        expectAnswer(fallback.folder, "what shows its dialogs is broken");
    }
    EXPECT_EQ(fallback.asked, 6);
    {
        std::optional<FakePortal> portal(std::in_place, address());
        ask();
        ASSERT_TRUE(portal->open());
        portal.reset();
        expectAnswer(std::nullopt, "it ended while its dialog was open");
        EXPECT_EQ(fallback.asked, 6);
    }
    fallback.waits = true;
    ask();
    ASSERT_TRUE(waitUntil([&] { return fallback.waiting != nullptr; }));
    chooser->cancel();
    expectAnswer(std::nullopt, "the other one is cancelled in its turn");
}

}  // namespace
