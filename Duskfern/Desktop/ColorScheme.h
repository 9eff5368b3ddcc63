#pragma once

#include <QtCore/QObject>

/// Whether the person wants the desktop's programs dark or light.
class ColorScheme : public QObject {
    Q_OBJECT

public:
    enum class Preference {
        none,  ///< The desktop does not say; the palette decides.
        dark,
        light,
    };
    Q_ENUM(Preference)

    using QObject::QObject;

    /// What is known now. Returns at once.
    [[nodiscard]] virtual Preference preference() const = 0;

Q_SIGNALS:
    void preferenceChanged();
};
