#pragma once

#include "Desktop/GioSupport.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>
#include <QtCore/QProcess>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusVariant>
#include <QtDBus/QDBusVirtualObject>

#include <optional>

/// A service on the session bus that keeps every call of any of its objects until the test answers it.
class FakeService : public QDBusVirtualObject {
public:
    explicit FakeService(const QString& name)
        : bus(QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), name)) {
        EXPECT_TRUE(bus.registerVirtualObject(QString(u'/'), this, QDBusConnection::SubPath));
        EXPECT_TRUE(bus.registerService(name));
    }
    ~FakeService() override {
        while (isCalled()) {
            fail();
        }
        QDBusConnection::disconnectFromBus(bus.name());
    }

    /// The call that has waited longest; one of no method if none comes.
    [[nodiscard]] QDBusMessage call() const {
        waitUntil([this] { return isCalled(); });
        return m_calls.value(0);
    }
    [[nodiscard]] bool isCalled() const { return !m_calls.empty(); }

    /// Answer that call.
    void answer(const QVariantList& values) { end(call().createReply(values)); }
    void fail() { end(call().createErrorReply(QStringLiteral("org.duskfern.Refused"), {})); }

    void tell(const QString& path, const QString& interface, const QString& signal,
              const QVariantList& arguments) const {
        QDBusMessage message = QDBusMessage::createSignal(path, interface, signal);
        message.setArguments(arguments);
        EXPECT_TRUE(bus.send(message));
    }

    QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*bus*/) override {
        m_calls.append(message);
        return true;
    }

    QDBusConnection bus;

private:
    void end(const QDBusMessage& reply) {
        EXPECT_TRUE(bus.send(reply));
        m_calls = m_calls.mid(1);
    }

    QList<QDBusMessage> m_calls;
};

/// A value as a method returns it, or a signal carries it, that may be of any type.
inline QVariant anything(const QVariant& value) {
    return QVariant::fromValue(QDBusVariant(value));
}

/// A session bus that programs and tests use while it lives: nothing reaches the one of the desktop they are run from,
/// and no service is started by it. Not GLib's, which forks a process of many threads to watch it.
class PrivateBus {
public:
    PrivateBus() {
        m_daemon.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                                                       QStringLiteral("--config-file=" DUSKFERN_SESSION_BUS)});
        EXPECT_TRUE(m_daemon.waitForReadyRead());
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_address.toUtf8());
    }
    ~PrivateBus() {
        m_daemon.terminate();
        m_daemon.waitForFinished();
    }

    [[nodiscard]] QString address() const { return m_address; }

private:
    QProcess m_daemon;
    QString m_address;
};

/// Gives the tests of a suite such a bus. Whatever they try has to outlive it: GLib's default is to end a program whose
/// bus goes.
class PrivateBusTest : public testing::Test {
protected:
    static void SetUpTestSuite() { sharedBus.emplace(); }
    static void TearDownTestSuite() { sharedBus.reset(); }
    void SetUp() override { g_dbus_connection_set_exit_on_close(m_connection.get(), TRUE); }
    void TearDown() override { EXPECT_FALSE(g_dbus_connection_get_exit_on_close(m_connection.get())); }

private:
    inline static std::optional<PrivateBus> sharedBus;
    const GObjectPtr<GDBusConnection> m_connection{g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)};
};
