#include "support/ScreenReaderBus.h"

#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusMetaType>
#include <QtDBus/QDBusVirtualObject>

#include <utility>

/// A pair of texts, as in the lists of events; and an object of the bus: the name of its program and its path.
using BusPair = std::pair<QString, QString>;
using BusObject = std::pair<QString, QDBusObjectPath>;

namespace {

constexpr const char* bus = "duskfern-accessibility";
constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* events = "org.a11y.atspi.Event.Object";

/// Says that a screen reader is there, lets programs register, and tells them that all events are listened to.
class Registry final : public QDBusVirtualObject {
public:
    explicit Registry(QString address) : m_address(std::move(address)) {}

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& connection) override {
        const QString method = call.member();
        QVariant answer;
        if (method == QLatin1String("GetAddress")) {
            answer = m_address;
        } else if (method == QLatin1String("Get")) {
            answer = QVariant::fromValue(QDBusVariant(true));
        } else if (method == QLatin1String("NotifyListenersSync")) {
            answer = false;  // A key that the screen reader leaves to the program.
        } else if (method == QLatin1String("Embed")) {
            answer = QVariant::fromValue(BusObject{connection.baseService(), QDBusObjectPath(call.path())});
        } else if (method == QLatin1String("GetRegisteredEvents")) {
            const QString everybody = QStringLiteral(":1.0");
            answer = QVariant::fromValue(
                QList<BusPair>{{everybody, QStringLiteral("object:")}, {everybody, QStringLiteral("focus:")}});
        } else {
            return false;
        }
        return connection.send(call.createReply(answer));
    }

private:
    QString m_address;
};

/// The bits of the states that are spoken.
constexpr std::pair<int, const char*> spokenStates[] = {{4, "checked"}, {23, "selected"}};

}  // namespace

ScreenReaderBus::ScreenReaderBus() : m_bus(QString::fromLatin1(bus)) {
    qDBusRegisterMetaType<BusPair>();
    qDBusRegisterMetaType<QList<BusPair>>();
    qDBusRegisterMetaType<BusObject>();
    m_bus = QDBusConnection::connectToBus(m_daemon.address(), QString::fromLatin1(bus));
    m_registry = std::make_unique<Registry>(m_daemon.address());
    m_bus.registerVirtualObject(QStringLiteral("/org/a11y"), qobject_cast<QDBusVirtualObject*>(m_registry.get()),
                                QDBusConnection::SubPath);
    m_bus.registerService(QStringLiteral("org.a11y.Bus"));
    m_bus.registerService(QStringLiteral("org.a11y.atspi.Registry"));
    m_bus.connect({}, {}, QString::fromLatin1(events), QStringLiteral("StateChanged"), this,
                  SLOT(stateChanged(QDBusMessage)));
    m_bus.connect({}, {}, QString::fromLatin1(events), QStringLiteral("Announcement"), this,
                  SLOT(announcement(QDBusMessage)));
}

ScreenReaderBus::~ScreenReaderBus() {
    QDBusConnection::disconnectFromBus(QString::fromLatin1(bus));
}

bool ScreenReaderBus::hears(const QString& text) const {
    for (qsizetype i = m_heard; i < m_said.size(); ++i) {
        if (m_said[i].startsWith(text)) {
            m_heard = i + 1;
            return true;
        }
    }
    return false;
}

QDBusMessage ScreenReaderBus::call(const Place& place, const char* interface, const char* method,
                                   const QVariantList& arguments) const {
    QDBusMessage message = QDBusMessage::createMethodCall(place.service, place.path, QString::fromLatin1(interface),
                                                          QString::fromLatin1(method));
    message.setArguments(arguments);
    return m_bus.call(message);
}

QVariant ScreenReaderBus::property(const Place& place, const char* name) const {
    return call(place, "org.freedesktop.DBus.Properties", "Get",
                {QString::fromLatin1(accessible), QString::fromLatin1(name)})
        .arguments()
        .value(0)
        .value<QDBusVariant>()
        .variant();
}

QString ScreenReaderBus::role(const Place& place) const {
    return call(place, accessible, "GetRoleName").arguments().value(0).toString();
}

/// Name, role, description and states.
QString ScreenReaderBus::spoken(const Place& place) const {
    QStringList texts{property(place, "Name").toString(), role(place), property(place, "Description").toString()};
    texts.removeAll({});
    const QVariant states = call(place, accessible, "GetState").arguments().value(0);
    const uint bits = qdbus_cast<QList<uint>>(states.value<QDBusArgument>()).value(0);
    for (const auto& [bit, name] : spokenStates) {
        if ((bits >> bit & 1U) != 0) {
            texts << QString::fromLatin1(name);
        }
    }
    return texts.join(QStringLiteral(", "));
}

/// Name and text of the dialog in which this is.
QString ScreenReaderBus::dialogAround(Place place) const {
    QString kind = role(place);
    while (kind != QLatin1String("dialog") && kind != QLatin1String("frame") && !kind.isEmpty()) {
        place.path = qdbus_cast<BusObject>(property(place, "Parent").value<QDBusArgument>()).second.path();
        kind = place.path.isEmpty() ? QString() : role(place);
    }
    return kind == QLatin1String("dialog")
               ? QStringLiteral(", in %1 %2")
                     .arg(property(place, "Name").toString(), property(place, "Description").toString())
               : QString();
}

void ScreenReaderBus::stateChanged(const QDBusMessage& event) {
    const Place place{event.service(), event.path()};
    const QString state = event.arguments().value(0).toString();
    const bool isOn = event.arguments().value(1).toInt() == 1;
    if (state == QLatin1String("focused") && isOn) {
        m_focused = place.path;
        m_said << spoken(place) + dialogAround(place);
    } else if (state == QLatin1String("checked") && place.path == m_focused) {
        m_said << (isOn ? QStringLiteral("checked ") : QStringLiteral("not checked ")) + spoken(place);
    } else if (state == QLatin1String("showing") && isOn && role(place) == QLatin1String("notification")) {
        m_said << QStringLiteral("! ") + property(place, "Name").toString();
    }
}

void ScreenReaderBus::announcement(const QDBusMessage& event) {
    m_said << QStringLiteral("! ") + event.arguments().value(3).value<QDBusVariant>().variant().toString();
}
