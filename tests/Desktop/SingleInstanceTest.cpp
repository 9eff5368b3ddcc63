#include "Desktop/SingleInstance.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusPendingCall>

#include <optional>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using namespace Qt::StringLiterals;
using Role = SingleInstance::Role;

const QString id = u"app.duskfern.Single-Test"_s;
const QString path = u"/app/duskfern/Single_Test"_s;

class SingleInstanceTest : public PrivateBusTest {
protected:
    /// Calls the program that runs, as a desktop or a later start does, and waits for its answer.
    [[nodiscard]] QDBusMessage::MessageType call(const QString& method, const QVariantList& arguments) const {
        QDBusMessage message = QDBusMessage::createMethodCall(id, path, u"org.freedesktop.Application"_s, method);
        message.setArguments(arguments);
        const QDBusPendingCall answer = desktop.bus.asyncCall(message);
        EXPECT_TRUE(waitUntil([&] { return answer.isFinished(); }));
        return answer.reply().type();
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
        const QVariantMap ofAnotherType{{u"activation-token"_s, 7}};
        EXPECT_EQ(call(u"Activate"_s, {both}), QDBusMessage::ReplyMessage);
        EXPECT_EQ(call(u"ActivateAction"_s, {u"junk"_s, QVariantList(), older}), QDBusMessage::ReplyMessage);
        EXPECT_EQ(call(u"Open"_s, {QStringList{u"file:///"_s}, ofAnotherType}), QDBusMessage::ReplyMessage);
        EXPECT_EQ(call(u"Activate"_s, {u"text"_s}), QDBusMessage::ErrorMessage);
    }
    EXPECT_EQ(told, (decltype(told){{{}, u"token"_s}, {u"junk"_s, u"id"_s}, {{}, {}}}));
    EXPECT_EQ(call(u"Activate"_s, {QVariantMap()}), QDBusMessage::ErrorMessage);
    EXPECT_TRUE(waitUntil([this] { return !desktop.bus.interface()->isServiceRegistered(id); }));
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
        ASSERT_EQ(call.arguments().size(), count);
        const auto added = qdbus_cast<QVariantMap>(call.arguments().constLast());
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
