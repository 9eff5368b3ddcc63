#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtQuick/QQuickItem>

/// What is said to screen readers beyond the state of items, for QML.
class ScreenReader : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// Tells that the keyboard acts on `row`, although its list has the focus. Null is ignored.
    Q_INVOKABLE static void moveFocus(QQuickItem* row);
};

/// Announces texts to screen readers. Must be visible and have a size, but paints nothing.
class Announcer : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit Announcer(QQuickItem* parent = nullptr);

    /// The text that is being announced; for its accessible name. Empty after some seconds.
    Q_PROPERTY(QString text READ text NOTIFY textChanged)
    [[nodiscard]] const QString& text() const { return m_text; }
    Q_SIGNAL void textChanged();

    /// Says a text once, after what is being read.
    Q_INVOKABLE void announce(const QString& text);

private:
    void setText(const QString& text);

    QString m_text;
    QTimer m_clear;
};
