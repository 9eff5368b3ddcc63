#pragma once

#include "support/PrivateBus.h"

#include <QtCore/QStringList>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusMetaType>

#include <algorithm>
#include <map>
#include <utility>

/// A pair of texts, as in the lists of events; and an object of the bus: the name of its program and its path.
using BusPair = std::pair<QString, QString>;
using BusObject = std::pair<QString, QDBusObjectPath>;

/// A session bus of the test, and accessibility bus, with a screen reader on it, which writes down what it would say:
/// what gets the focus with its role, description and state; ticks that change there; and announcements, which begin
/// with "! ".
class ScreenReaderBus : public QDBusVirtualObject {
    Q_OBJECT

public:
    ScreenReaderBus() {
        qDBusRegisterMetaType<BusPair>();
        qDBusRegisterMetaType<QList<BusPair>>();
        qDBusRegisterMetaType<BusObject>();
        m_bus.registerVirtualObject(QStringLiteral("/org/a11y"), this, QDBusConnection::SubPath);
        m_bus.registerService(QStringLiteral("org.a11y.Bus"));
        m_bus.registerService(QStringLiteral("org.a11y.atspi.Registry"));
        const QString events = QStringLiteral("org.a11y.atspi.Event.Object");
        m_bus.connect({}, {}, events, QStringLiteral("StateChanged"), this, SLOT(stateChanged(QDBusMessage)));
        m_bus.connect({}, {}, events, QStringLiteral("Announcement"), this, SLOT(announcement(QDBusMessage)));
    }
    ~ScreenReaderBus() override { QDBusConnection::disconnectFromBus(name()); }
    Q_DISABLE_COPY_MOVE(ScreenReaderBus)

    /// Whether a text was said that begins so, after the one that was asked for last.
    [[nodiscard]] bool hears(const QString& text) {
        const auto said =
            std::find_if(m_said.begin(), m_said.end(), [&](const QString& it) { return it.startsWith(text); });
        const bool isHeard = said != m_said.end();
        m_said.erase(m_said.begin(), isHeard ? said + 1 : m_said.begin());
        return isHeard;
    }

    /// What was said after that.
    [[nodiscard]] QString unheard() const { return m_said.join(QStringLiteral("\n")); }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    /// Says that a screen reader is there, lets programs register, and tells them that all events are listened to.
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& connection) override {
        const QString everybody = QStringLiteral(":1.0");
        const QList<BusPair> events{{everybody, QStringLiteral("object:")}, {everybody, QStringLiteral("focus:")}};
        const std::map<QString, QVariant> answers{
            {QStringLiteral("GetAddress"), m_daemon.address()},
            {QStringLiteral("Get"), anything(true)},
            {QStringLiteral("NotifyListenersSync"), false},  // A key that the screen reader leaves to the program.
            {QStringLiteral("Embed"),
             QVariant::fromValue(BusObject{connection.baseService(), QDBusObjectPath(call.path())})},
            {QStringLiteral("GetRegisteredEvents"), QVariant::fromValue(events)},
        };
        const auto answer = answers.find(call.member());
        return answer != answers.end() && connection.send(call.createReply(answer->second));
    }

private:
    /// An object of a program on the bus.
    struct Place {
        QString service;
        QString path;
    };

    [[nodiscard]] QVariant call(const Place& place, const char* interface, const char* method,
                                const QVariantList& arguments = {}) const {
        QDBusMessage message = QDBusMessage::createMethodCall(place.service, place.path, QString::fromLatin1(interface),
                                                              QString::fromLatin1(method));
        message.setArguments(arguments);
        return m_bus.call(message).arguments().value(0);
    }
    [[nodiscard]] QVariant property(const Place& place, const char* name) const {
        return call(place, "org.freedesktop.DBus.Properties", "Get",
                    {QString::fromLatin1(accessible), QString::fromLatin1(name)})
            .value<QDBusVariant>()
            .variant();
    }
    [[nodiscard]] QString role(const Place& place) const { return call(place, accessible, "GetRoleName").toString(); }

    /// Name, role, description and states.
    [[nodiscard]] QString spoken(const Place& place) const {
        QStringList texts{property(place, "Name").toString(), role(place), property(place, "Description").toString()};
        texts.removeAll({});
        const auto states = call(place, accessible, "GetState").value<QDBusArgument>();
        const uint bits = qdbus_cast<QList<uint>>(states).value(0);
        for (const auto& [bit, state] : {std::pair(4, "checked"), {23, "selected"}}) {
            if ((bits >> bit & 1U) != 0) {
                texts << QString::fromLatin1(state);
            }
        }
        return texts.join(QStringLiteral(", "));
    }

    Q_SLOT void stateChanged(const QDBusMessage& event) {
        const Place place{event.service(), event.path()};
        const QString state = event.arguments().value(0).toString();
        const bool isOn = event.arguments().value(1).toInt() == 1;
        if (state == QLatin1String("focused") && isOn) {
            m_focused = place.path;
            m_said << spoken(place);
        } else if (state == QLatin1String("checked") && place.path == m_focused) {
            m_said << (isOn ? QStringLiteral("checked ") : QStringLiteral("not checked ")) + spoken(place);
        } else if (state == QLatin1String("showing") && isOn && role(place) == QLatin1String("notification")) {
            m_said << QStringLiteral("! ") + property(place, "Name").toString();
        }
    }
    Q_SLOT void announcement(const QDBusMessage& event) {
        m_said << QStringLiteral("! ") + event.arguments().value(3).value<QDBusVariant>().variant().toString();
    }

    static QString name() { return QStringLiteral("accessibility"); }
    static constexpr const char* accessible = "org.a11y.atspi.Accessible";

    PrivateBus m_daemon;
    QDBusConnection m_bus = QDBusConnection::connectToBus(m_daemon.address(), name());
    QString m_focused;  ///< The path of what has the focus.
    QStringList m_said;
};
