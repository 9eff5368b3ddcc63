#pragma once

#include <QtCore/QObject>

/// Whether the user prefers dark or light programs, and less motion.
class ColorScheme : public QObject {
    Q_OBJECT

public:
    enum class Preference {
        none,  ///< The desktop does not tell; the palette decides.
        dark,
        light,
    };
    Q_ENUM(Preference)

    using QObject::QObject;

    /// The preference known so far. Does not block.
    [[nodiscard]] virtual Preference preference() const = 0;

    /// Whether nothing should move that need not, as far as known. Does not block.
    [[nodiscard]] virtual bool reducesMotion() const = 0;

Q_SIGNALS:
    void preferenceChanged();
    void reducesMotionChanged();
};
