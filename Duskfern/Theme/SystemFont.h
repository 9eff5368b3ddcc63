#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>

/// The desktop's application font, including its text scaling.
class SystemFont : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit SystemFont(QObject* parent = nullptr);

    Q_PROPERTY(QString family READ family NOTIFY changed)
    [[nodiscard]] static QString family();

    /// In logical pixels.
    Q_PROPERTY(qreal pixelSize READ pixelSize NOTIFY changed)
    [[nodiscard]] static qreal pixelSize();

    Q_SIGNAL void changed();

    bool eventFilter(QObject* watched, QEvent* event) override;
};
