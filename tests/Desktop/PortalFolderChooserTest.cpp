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

/// A portal whose dialog the test answers.
class FakePortal : public FakeService {
public:
    explicit FakePortal(const char* address, guint32 itsVersion = 3)
        : FakeService(address, portal, portalPath, fileChooser) {
        version = itsVersion;
    }

    /// Waits for the question and opens the dialog: at the path that was asked for, or at another one.
    [[nodiscard]] bool open(const std::string& otherPath = {}) {
        if (!eventually([&] { return isCalled("OpenFile"); })) {
            return false;
        }
        m_caller = caller();
        path = otherPath.empty() ? expectedPath() : otherPath;
        addObject(path.c_str(), request);
        answer(g_variant_new("(o)", path.c_str()));
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
        tell(m_caller.c_str(), path.c_str(), request, "Response", g_variant_new("(ua{sv})", ending, &results));
    }

    /// Whether the dialog is told to close.
    [[nodiscard]] bool isClosed() {
        return eventually([&] { return isCalled("Close"); }) && object() == path;
    }

    /// Where the caller listens for the answer to the call that waits.
    [[nodiscard]] std::string expectedPath() const {
        std::string sender = caller().substr(1);
        std::replace(sender.begin(), sender.end(), '.', '_');
        return std::string(portalPath) + "/request/" + sender + '/' + token();
    }

    [[nodiscard]] std::string token() const {
        const GPtr<GVariant> options(g_variant_get_child_value(arguments(), 2));
        const char* token = "";
        g_variant_lookup(options.get(), "handle_token", "&s", &token);
        return token;
    }

    std::string path;

private:
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
    [[nodiscard]] bool isAnswered() const {
        return eventually([&] { return !answers.empty(); });
    }

    FakeFolderChooser fallback;
    std::optional<PortalFolderChooser> chooser{std::in_place, fallback};
    std::vector<std::optional<FileURL>> answers;
};

using Answers = std::vector<std::optional<FileURL>>;

TEST_F(PortalFolderChooserTest, SaysWhatIsToBeChosen) {
    FakePortal service(address());
    ask({QStringLiteral("Elegir"), FileURL("/a\xff"), "x11:4a"});
    ASSERT_TRUE(eventually([&] { return service.isCalled("OpenFile"); }));
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
    const std::string ownHost = g_get_host_name();
    struct Row {
        guint32 ending;
        std::vector<std::string> uris;
        std::optional<FileURL> answer;
    };
    const std::vector<Row> rows = {
        {0, {"file:///home/ana/M%C3%BAsica"}, FileURL("/home/ana/Música")},
        {0, {"file:///home/ana/%FF%0Ab%20%25/"}, FileURL("/home/ana/\xff\nb %")},
        {0, {"file:///"}, FileURL("/")},
        {0, {"file://localhost/x", "file:///y"}, FileURL("/x")},
        {0, {"file://" + ownHost + "/x"}, FileURL("/x")},
        {0, {"file://elsewhere.example/x"}, std::nullopt},
        {0, {"smb://server/share"}, std::nullopt},
        {0, {"file:///a%00b"}, std::nullopt},
        {0, {"/x"}, std::nullopt},
        {0, {}, std::nullopt},
        {1, {"file:///x"}, std::nullopt},
    };
    FakePortal service(address());
    for (const Row& row : rows) {
        answers.clear();
        ask();
        ASSERT_TRUE(service.open());
        service.respond(row.ending, row.uris);
        ASSERT_TRUE(isAnswered());
        EXPECT_EQ(answers, Answers{row.answer}) << (row.uris.empty() ? "nothing" : row.uris.front());
    }
    EXPECT_EQ(fallback.asked, 0);
}

TEST_F(PortalFolderChooserTest, ListensWhereAnOldPortalAnswers) {
    FakePortal service(address());
    ask();
    ASSERT_TRUE(service.open("/org/freedesktop/portal/desktop/request/own"));
    // An answer would overtake the listening at a path learnt only now; a person is not as quick.
    EXPECT_TRUE(eventually([&] {
        service.respond(0, {"file:///x"});
        return !answers.empty();
    }));
    EXPECT_EQ(answers, Answers{FileURL("/x")});
}

TEST_F(PortalFolderChooserTest, ClosesTheDialogWhenCancelled) {
    FakePortal service(address());
    ask();
    ASSERT_TRUE(service.open());
    chooser->cancel();
    EXPECT_EQ(answers, Answers{std::nullopt}) << "at once";
    ASSERT_TRUE(service.isClosed());
    service.answer(nullptr);

    // Cancelled before the portal has said that it has opened it.
    ask();
    ASSERT_TRUE(eventually([&] { return service.isCalled("OpenFile"); }));
    chooser->cancel();
    EXPECT_EQ(answers.size(), 2U);
    ASSERT_TRUE(service.open());
    EXPECT_TRUE(service.isClosed());
    service.answer(nullptr);
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
    const auto expectFallback = [&](const char* why) {
        ASSERT_TRUE(isAnswered()) << why;
        EXPECT_EQ(answers, Answers{fallback.folder}) << why;
        answers.clear();
    };
    ask();
    expectFallback("nobody has the name");
    {
        const FakePortal tooOld(address(), 2);
        ask();
        expectFallback("it cannot choose folders");
        EXPECT_FALSE(tooOld.isCalled()) << "what it would do wrongly";
    }
    {
        const FakeService other(address(), portal, portalPath, "org.freedesktop.portal.Settings");
        ask();
        expectFallback("it has no dialogs");
    }
    {
        FakePortal service(address());
        ask();
        ASSERT_TRUE(eventually([&] { return service.isCalled("OpenFile"); }));
        service.fail();
        expectFallback("it refuses");

        ask();
        ASSERT_TRUE(service.open());
        service.respond(2, {});
        expectFallback("what shows its dialogs is broken");
    }
    EXPECT_EQ(fallback.asked, 5);

    WaitingChooser waiting;
    chooser.emplace(waiting);
    ask();
    ASSERT_TRUE(eventually([&] { return waiting.waiting != nullptr; }));
    chooser->cancel();
    EXPECT_EQ(answers, Answers{std::nullopt}) << "it is cancelled in its turn";
}

TEST_F(PortalFolderChooserTest, APortalThatEndsHasNoAnswer) {
    std::optional<FakePortal> service(std::in_place, address());
    ask();
    ASSERT_TRUE(service->open());
    service.reset();
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(answers, Answers{std::nullopt});
    EXPECT_EQ(fallback.asked, 0);
}

TEST_F(PortalFolderChooserTest, APortalThatSaysNothingIsNone) {
    fallback.folder = FileURL("/by another way");
    // It has the name, and nobody reads what comes in.
    GMainContext* const context = g_main_context_new();
    g_main_context_push_thread_default(context);
    std::optional<FakePortal> service(std::in_place, address());
    g_main_context_pop_thread_default(context);
    ask();
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(answers, Answers{fallback.folder});
    service.reset();
    g_main_context_unref(context);
}

}  // namespace
