#pragma once

#include "support/WaitUntil.h"

#include <gtest/gtest.h>
#include <QtCore/QProcess>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusVariant>
#include <QtDBus/QDBusVirtualObject>

#include <optional>

/// A service on the bus that keeps every call of any of its objects until the test answers it.
class FakeService : public QDBusVirtualObject {
public:
    FakeService(const QString& address, const QString& name)
        : m_bus(QDBusConnection::connectToBus(address, connection())) {
        EXPECT_TRUE(m_bus.registerVirtualObject(QString(u'/'), this, QDBusConnection::SubPath));
        EXPECT_TRUE(m_bus.registerService(name));
    }
    ~FakeService() override {
        while (!m_calls.empty()) {
            fail();
        }
        QDBusConnection::disconnectFromBus(connection());
    }
    Q_DISABLE_COPY_MOVE(FakeService)

    /// The call that has waited longest; one of no method if none comes.
    [[nodiscard]] QDBusMessage call() const {
        waitUntil([this] { return !m_calls.empty(); });
        return m_calls.value(0);
    }
    [[nodiscard]] bool isCalled() const { return !m_calls.empty(); }

    void answer(const QVariantList& values) { send(m_calls.takeFirst().createReply(values)); }
    void fail() { send(m_calls.takeFirst().createErrorReply(QStringLiteral("org.duskfern.Refused"), {})); }

    /// Sends an answer or a signal.
    void send(const QDBusMessage& message) { EXPECT_TRUE(m_bus.send(message)); }

    QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*bus*/) override {
        m_calls.append(message);
        return true;
    }

private:
    static QString connection() { return QStringLiteral("service"); }

    QDBusConnection m_bus;
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
    Q_DISABLE_COPY_MOVE(PrivateBus)

    [[nodiscard]] QString address() const { return m_address; }

private:
    QProcess m_daemon;
    QString m_address;
};

/// Gives the tests of a suite such a bus.
class PrivateBusTest : public testing::Test {
protected:
    static void SetUpTestSuite() { bus().emplace(); }
    static void TearDownTestSuite() { bus().reset(); }

    static std::optional<PrivateBus>& bus() {
        static std::optional<PrivateBus> bus;
        return bus;
    }
    static QString address() { return bus()->address(); }
};
