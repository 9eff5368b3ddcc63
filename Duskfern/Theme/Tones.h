#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtGui/QColor>

/// Tones of a colour that can be seen on a surface.
class Tones : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// The colour itself or, nearest to it, one mixed with black or white that has this contrast with the surface;
    /// black or white if none has. Both colours are opaque.
    [[nodiscard]] Q_INVOKABLE static QColor against(const QColor& color, const QColor& surface, double ratio);
};
