#include "Desktop/PortalFolderChooser.h"
#include "support/FakeDesktop.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

constexpr const char* portal = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* fileChooser = "org.freedesktop.portal.FileChooser";
constexpr const char* request = "org.freedesktop.portal.Request";

using Answers = std::vector<std::optional<FileURL>>;

/// A portal whose dialog the test answers.
class FakePortal : public FakeService {
public:
    explicit FakePortal(const char* address, guint32 itsVersion = 3)
        : FakeService(address, portal, portalPath, fileChooser) {
        version = itsVersion;
    }

    [[nodiscard]] bool isAsked() {
        return waitUntil([&] { return isCalled("OpenFile"); });
    }

    /// Waits for the question and opens the dialog: at the path that was asked for, or at another one.
    [[nodiscard]] bool open(const std::string& otherPath = {}) {
        if (!isAsked()) {
            return false;
        }
        m_caller = caller();
        // Where the caller listens.
        std::string sender = m_caller.substr(1);
        std::replace(sender.begin(), sender.end(), '.', '_');
        m_path = otherPath.empty() ? std::string(portalPath) + "/request/" + sender + '/' + token() : otherPath;
        addObject(m_path.c_str(), request);
        answer(g_variant_new("(o)", m_path.c_str()));
        return true;
    }

    void respond(guint32 ending, const std::vector<std::string>& uris) {
        GVariantBuilder results;
        g_variant_builder_init(&results, G_VARIANT_TYPE_VARDICT);
        if (!uris.empty()) {
            GVariantBuilder list;
            g_variant_builder_init(&list, G_VARIANT_TYPE_STRING_ARRAY);
            for (const std::string& uri : uris) {
                g_variant_builder_add(&list, "s", uri.c_str());
            }
            g_variant_builder_add(&results, "{sv}", "uris", g_variant_builder_end(&list));
        }
        tell(m_caller.c_str(), m_path.c_str(), request, "Response", g_variant_new("(ua{sv})", ending, &results));
    }

    /// Whether the dialog is told to close, which is then answered.
    [[nodiscard]] bool isClosed() {
        const bool isTold = waitUntil([&] { return isCalled("Close"); }) && object() == m_path;
        if (isTold) {
            answer(nullptr);
        }
        return isTold;
    }

    [[nodiscard]] std::string token() const {
        const GPtr<GVariant> options(g_variant_get_child_value(arguments(), 2));
        const char* token = "";
        g_variant_lookup(options.get(), "handle_token", "&s", &token);
        return token;
    }

private:
    std::string m_path;
    std::string m_caller;
};

/// Keeps its question until it is cancelled.
struct WaitingChooser final : FolderChooser {
    void choose(const FolderQuestion&, Answer answer) override { waiting = std::move(answer); }
    void cancel() override { std::exchange(waiting, nullptr)(std::nullopt); }

    Answer waiting;
};

class PortalFolderChooserTest : public PrivateBusTest {
protected:
    void ask(const FolderQuestion& question = {QStringLiteral("Elegir"), std::nullopt, {}}) {
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
    FakePortal service(address());
    ask({QStringLiteral("Elegir"), FileURL("/a\xff"), "x11:4a"});
    ASSERT_TRUE(service.isAsked());
    const GPtr<char> text(g_variant_print(service.arguments(), FALSE));
    EXPECT_EQ(std::string(text.get()), "('x11:4a', 'Elegir carpeta', {'handle_token': <'" + service.token() +
                                           "'>, 'accept_label': <'Elegir'>, 'modal': <true>, 'multiple': <false>, "
                                           "'directory': <true>, 'current_folder': <b'/a\\377'>})");
    const GPtr<GVariant> options(g_variant_get_child_value(service.arguments(), 2));
    const GPtr<GVariant> folder(g_variant_lookup_value(options.get(), "current_folder", G_VARIANT_TYPE_BYTESTRING));
    EXPECT_EQ(g_variant_get_size(folder.get()), 4U) << "with the byte that ends it";
    chooser.reset();
}

TEST_F(PortalFolderChooserTest, TakesTheFolderByItsBytes) {
    struct Row {
        guint32 ending;
        std::vector<std::string> uris;
        std::optional<FileURL> answer;
    };
    const Row rows[] = {
        {0, {"file:///home/ana/M%C3%BAsica"}, FileURL("/home/ana/Música")},
        {0, {"file:///home/ana/%FF%0Ab%20%25/"}, FileURL("/home/ana/\xff\nb %")},
        {0, {"file:///"}, FileURL("/")},
        {0, {"file://localhost/x", "file:///y"}, FileURL("/x")},
        {0, {std::string("file://") + g_get_host_name() + "/x"}, FileURL("/x")},
        {0, {"file://elsewhere.example/x"}, std::nullopt},
        {0, {"smb://server/share"}, std::nullopt},
        {0, {"file:///a%00b"}, std::nullopt},
        {0, {"/x"}, std::nullopt},
        {0, {}, std::nullopt},
        {1, {"file:///x"}, std::nullopt},
    };
    FakePortal service(address());
    for (const Row& row : rows) {
        ask();
        ASSERT_TRUE(service.open());
        service.respond(row.ending, row.uris);
        expectAnswer(row.answer, row.uris.empty() ? "nothing" : row.uris.front());
    }
    EXPECT_EQ(fallback.asked, 0);

    // An old portal answers where it likes. That would overtake the listening at a path learnt only now.
    ask();
    ASSERT_TRUE(service.open("/org/freedesktop/portal/desktop/request/own"));
    EXPECT_TRUE(waitUntil([&] {
        service.respond(0, {"file:///x"});
        return !answers.empty();
    }));
    expectAnswer(FileURL("/x"), "an old portal");
}

TEST_F(PortalFolderChooserTest, ClosesTheDialogWhenCancelled) {
    FakePortal service(address());
    ask();
    ASSERT_TRUE(service.open());
    chooser->cancel();
    EXPECT_EQ(answers, Answers{std::nullopt}) << "at once";
    ASSERT_TRUE(service.isClosed());

    // Cancelled before the portal has said that it has opened it.
    ask();
    ASSERT_TRUE(service.isAsked());
    chooser->cancel();
    EXPECT_EQ(answers.size(), 2U);
    ASSERT_TRUE(service.open());
    EXPECT_TRUE(service.isClosed());
    service.respond(0, {"file:///late"});

    // The program ends while it is open, which it knows once the events have been looked at.
    ask();
    ASSERT_TRUE(service.open());
    for (int turn = 0; turn < 50; ++turn) {
        QCoreApplication::processEvents();
        g_usleep(1000);
    }
    chooser.reset();
    EXPECT_TRUE(service.isClosed());
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
        const FakeService other(address(), portal, portalPath, "org.freedesktop.portal.Settings");
        ask();
        expectAnswer(fallback.folder, "it has no dialogs");
    }
    {
        FakePortal service(address());
        ask();
        ASSERT_TRUE(service.isAsked());
        service.fail();
        expectAnswer(fallback.folder, "it refuses");
        ask();
        ASSERT_TRUE(service.open());
        service.respond(2, {});
        expectAnswer(fallback.folder, "what shows its dialogs is broken");
    }
    {
        // It has the name, and nobody reads what comes in.
        GMainContext* const context = g_main_context_new();
        g_main_context_push_thread_default(context);
        std::optional<FakePortal> service(std::in_place, address());
        g_main_context_pop_thread_default(context);
        ask();
        expectAnswer(fallback.folder, "it says nothing");
        service.reset();
        g_main_context_unref(context);
    }
    EXPECT_EQ(fallback.asked, 6);
    {
        std::optional<FakePortal> service(std::in_place, address());
        ask();
        ASSERT_TRUE(service->open());
        service.reset();
        expectAnswer(std::nullopt, "it ended while its dialog was open");
        EXPECT_EQ(fallback.asked, 6);
    }
    WaitingChooser waiting;
    chooser.emplace(waiting);
    ask();
    ASSERT_TRUE(waitUntil([&] { return waiting.waiting != nullptr; }));
    chooser->cancel();
    expectAnswer(std::nullopt, "the other one is cancelled in its turn");
}

}  // namespace
