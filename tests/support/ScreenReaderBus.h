#pragma once

#include "support/PrivateBus.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>

#include <memory>

/// A session bus of the test, and accessibility bus, with a screen reader on it, which writes down what it would say:
/// what gets the focus with its role, description and state; ticks that change there; and announcements, which begin
/// with "! ".
class ScreenReaderBus : public QObject {
    Q_OBJECT

public:
    ScreenReaderBus();
    ~ScreenReaderBus() override;
    Q_DISABLE_COPY_MOVE(ScreenReaderBus)

    /// Whether a text was said that begins so, after the one that was asked for last.
    [[nodiscard]] bool hears(const QString& text) const;

    /// What was said after that.
    [[nodiscard]] QString unheard() const { return m_said.mid(m_heard).join(QStringLiteral("\n")); }

private:
    Q_SLOT void stateChanged(const QDBusMessage& event);
    Q_SLOT void announcement(const QDBusMessage& event);

    /// An object of a program on the bus.
    struct Place {
        QString service;
        QString path;
    };
    [[nodiscard]] QDBusMessage call(const Place& place, const char* interface, const char* method,
                                    const QVariantList& arguments = {}) const;
    [[nodiscard]] QVariant property(const Place& place, const char* name) const;
    [[nodiscard]] QString role(const Place& place) const;
    [[nodiscard]] QString spoken(const Place& place) const;
    [[nodiscard]] QString dialogAround(Place place) const;

    PrivateBus m_daemon;
    QDBusConnection m_bus;
    std::unique_ptr<QObject> m_registry;
    QString m_focused;  ///< The path of what has the focus.
    QStringList m_said;
    mutable qsizetype m_heard = 0;
};
