#include "Desktop/SingleInstance.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusPendingCall>

namespace {

using namespace Qt::StringLiterals;
using Role = SingleInstance::Role;

const QString id = u"app.duskfern.Single-Test"_s;
const QString path = u"/app/duskfern/Single_Test"_s;

class SingleInstanceTest : public PrivateBusTest {
protected:
    void SetUp() override {
        if (!QDBusConnection(u"desktop"_s).isConnected()) {
            QDBusConnection::connectToBus(address(), u"desktop"_s);
        }
    }
    static void TearDownTestSuite() {
        QDBusConnection::disconnectFromBus(u"desktop"_s);
        PrivateBusTest::TearDownTestSuite();
    }

    /// Calls the program that runs, as a desktop or a later start does, and waits for its answer.
    static QDBusMessage call(const QString& method, const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall(id, path, u"org.freedesktop.Application"_s, method);
        message.setArguments(arguments);
        const QDBusPendingCall answer = QDBusConnection(u"desktop"_s).asyncCall(message);
        EXPECT_TRUE(waitUntil([&] { return answer.isFinished(); }));
        return answer.reply();
    }
};

TEST_F(SingleInstanceTest, TheFirstIsToldWhatLaterStartsAskFor) {
    SingleInstance::Request last;
    int count = 0;
    {
        SingleInstance first(id, {});
        QObject::connect(&first, &SingleInstance::requested, [&](const SingleInstance::Request& request) {
            last = request;
            ++count;
        });
        ASSERT_EQ(first.role(), Role::first);
        call(u"Activate"_s, {QVariantMap{{u"desktop-startup-id"_s, u"id"_s}, {u"activation-token"_s, u"token"_s}}});
        EXPECT_EQ(count, 1);
        EXPECT_EQ(last.action, QString());
        EXPECT_EQ(last.token, u"token"_s);
        call(u"ActivateAction"_s, {u"junk"_s, QVariantList(), QVariantMap{{u"desktop-startup-id"_s, u"id"_s}}});
        EXPECT_EQ(last.action, u"junk"_s);
        EXPECT_EQ(last.token, u"id"_s);
        call(u"Open"_s, {QStringList{u"file:///"_s}, QVariantMap{{u"activation-token"_s, 7}}});
        EXPECT_EQ(last.action, QString());
        EXPECT_EQ(last.token, QString()) << "of another type";
        EXPECT_EQ(call(u"Activate"_s, {u"text"_s}).type(), QDBusMessage::ErrorMessage);
        EXPECT_EQ(count, 3);
    }
    EXPECT_EQ(call(u"Activate"_s, {QVariantMap()}).type(), QDBusMessage::ErrorMessage);
    EXPECT_TRUE(waitUntil([] { return !QDBusConnection(u"desktop"_s).interface()->isServiceRegistered(id); }));
}

TEST_F(SingleInstanceTest, ALaterOnePassesItsRequestOn) {
    FakeService running(address(), id);
    const struct {
        SingleInstance::Request request;
        QString method;
        qsizetype count;
    } cases[] = {{{}, u"Activate"_s, 1}, {{u"space"_s, u"token"_s}, u"ActivateAction"_s, 3}};
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
    std::optional<FakeService> running(std::in_place, address(), id);
    SingleInstance next(id, {});
    ASSERT_TRUE(waitUntil([&] { return running->isCalled(); }));
    running.reset();
    EXPECT_EQ(next.role(), Role::first);
    EXPECT_EQ(call(u"Activate"_s, {QVariantMap()}).type(), QDBusMessage::ReplyMessage) << "and has its name";
}

TEST_F(SingleInstanceTest, OpensAWindowWhenTheOtherHangs) {
    const FakeService hanging(address(), id);
    SingleInstance next(id, {});
    EXPECT_EQ(next.role(), Role::first);
}

}  // namespace
