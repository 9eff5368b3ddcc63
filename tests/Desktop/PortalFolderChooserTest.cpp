#include "Desktop/PortalFolderChooser.h"
#include "support/FakeDesktop.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusObjectPath>

#include <tuple>

namespace {

using namespace Qt::StringLiterals;

using Answers = std::vector<std::optional<FileURL>>;

/// A portal whose dialog the test answers.
class FakePortal : public FakeService {
public:
    FakePortal() : FakeService(u"org.freedesktop.portal.Desktop"_s) {}

    void tellVersion(unsigned version) {
        EXPECT_EQ(call().member(), u"Get"_s);
        answer({anything(version)});
    }

    /// Waits for the question, whose options it returns.
    QVariantMap takeQuestion() {
        tellVersion(3);
        EXPECT_EQ(call().member(), u"OpenFile"_s);
        auto options = qdbus_cast<QVariantMap>(call().arguments().value(2));
        m_path = u"/org/freedesktop/portal/desktop/request/"_s + call().service().mid(1).replace(u'.', u'_') + u'/' +
                 options[u"handle_token"_s].toString();
        return options;
    }
    /// Opens the dialog: at the path where the caller listens, or at another one, as old portals do.
    void open(const QString& otherPath = {}) {
        m_path = otherPath.isEmpty() ? m_path : otherPath;
        answer({QVariant::fromValue(QDBusObjectPath(m_path))});
    }

    void respond(unsigned ending, const QStringList& uris) {
        tell(m_path, u"org.freedesktop.portal.Request"_s, u"Response"_s, {ending, QVariantMap{{u"uris"_s, uris}}});
    }

    /// The dialog is told to close, which is then answered.
    void expectClosed() {
        EXPECT_EQ(call().member(), u"Close"_s);
        EXPECT_EQ(call().path(), m_path);
        answer({});
    }

private:
    QString m_path;
};

class PortalFolderChooserTest : public PrivateBusTest {
protected:
    PortalFolderChooserTest() { fallback.folder = FileURL("/by another way"); }

    void ask(const FolderQuestion& question = {u"Elegir"_s, std::nullopt, {}}) {
        chooser->choose(question, [this](const std::optional<FileURL>& url) { answers.push_back(url); });
    }
    /// Asks, and waits until the portal opens the dialog.
    void open() {
        ask();
        portal->takeQuestion();
        portal->open();
    }
    void expectAnswer(const std::optional<FileURL>& url, const std::string& why) {
        EXPECT_TRUE(waitUntil([&] { return !answers.empty(); })) << why;
        EXPECT_EQ(std::exchange(answers, {}), Answers{url}) << why;
    }

    std::optional<FakePortal> portal{std::in_place};
    FakeFolderChooser fallback;
    std::optional<PortalFolderChooser> chooser{std::in_place, fallback};
    Answers answers;
};

TEST_F(PortalFolderChooserTest, SaysWhatIsToBeChosen) {
    ask({u"Elegir"_s, FileURL("/a\xff"), "x11:4a"});
    QVariantMap options = portal->takeQuestion();
    EXPECT_EQ(portal->call().arguments().mid(0, 2), (QVariantList{u"x11:4a"_s, u"Elegir carpeta"_s}));
    EXPECT_FALSE(options.take(u"handle_token"_s).toString().isEmpty());
    EXPECT_EQ(options, (QVariantMap{{u"accept_label"_s, u"Elegir"_s},
                                    {u"modal"_s, true},
                                    {u"multiple"_s, false},
                                    {u"directory"_s, true},
                                    // With the byte that ends it.
                                    {u"current_folder"_s, QByteArray("/a\xff", 4)}}));
}

TEST_F(PortalFolderChooserTest, TakesTheFolderByItsBytes) {
    const std::tuple<unsigned, QStringList, std::optional<FileURL>> rows[] = {
        {0, {u"file:///home/ana/M%C3%BAsica%FF%0Ab%20%25/"_s}, FileURL("/home/ana/Música\xff\nb %")},
        {0, {u"file://localhost/x"_s}, FileURL("/x")},
        {0, {u"file://elsewhere.example/x"_s}, std::nullopt},
        {0, {u"file:///a%00b"_s}, std::nullopt},
        {0, {}, std::nullopt},
        {1, {u"file:///x"_s}, std::nullopt},
    };
    for (const auto& [ending, uris, answer] : rows) {
        open();
        portal->respond(ending, uris);
        expectAnswer(answer, uris.value(0).toStdString());
    }
}

TEST_F(PortalFolderChooserTest, ClosesTheDialogWhenCancelled) {
    ask();
    portal->takeQuestion();
    chooser->cancel();
    expectAnswer(std::nullopt, "before the portal has said that it has opened it");
    portal->open();
    portal->expectClosed();
    portal->respond(0, {u"file:///late"_s});

    for (const bool programEnds : {false, true}) {
        ask();
        portal->takeQuestion();
        portal->open(programEnds ? QString() : u"/org/freedesktop/portal/desktop/request/own"_s);
        // It knows that the dialog is open once the events have been looked at.
        waitUntil([deadline = QDeadlineTimer(50)] { return deadline.hasExpired(); });
        EXPECT_EQ(answers, Answers{}) << "nothing of what came late";
        if (programEnds) {
            chooser.reset();
        } else {
            chooser->cancel();
        }
        EXPECT_EQ(std::exchange(answers, {}), programEnds ? Answers() : Answers{std::nullopt}) << "at once";
        portal->expectClosed();
    }
}

TEST_F(PortalFolderChooserTest, LeavesTheQuestionToTheOtherChooserWithoutAPortal) {
    portal.reset();
    ask();
    expectAnswer(fallback.folder, "nobody has the name");

    portal.emplace();
    ask();
    portal->tellVersion(2);
    expectAnswer(fallback.folder, "it cannot choose folders");
    ask();
    portal->takeQuestion();
    portal->fail();
    expectAnswer(fallback.folder, "it refuses");
    open();
    portal->respond(2, {});
    expectAnswer(fallback.folder, "what shows its dialogs is broken");
    ask();
    expectAnswer(fallback.folder, "it says nothing");

    portal.emplace();
    open();
    portal.reset();
    expectAnswer(std::nullopt, "it ended while its dialog was open");
}

}  // namespace
