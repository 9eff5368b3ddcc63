#pragma once

#include <QtCore/QObject>

#include <optional>

/// What the user wishes of the look of all programs: dark or light, less motion, more contrast, a colour.
class Appearance : public QObject {
    Q_OBJECT

public:
    enum class Preference {
        none,  ///< The desktop does not tell; the palette decides.
        dark,
        light,
    };
    Q_ENUM(Preference)

    /// A colour in sRGB, each part from 0 to 1.
    struct Accent {
        double red = 0;
        double green = 0;
        double blue = 0;

        friend bool operator==(const Accent&, const Accent&) = default;
    };

    using QObject::QObject;

    /// The preference known so far. Does not block.
    [[nodiscard]] virtual Preference preference() const = 0;

    /// Whether nothing should move that need not, as far as known. Does not block.
    [[nodiscard]] virtual bool reducesMotion() const = 0;

    /// Whether outlines and lesser texts should stand out more than usual, as far as known. Does not block.
    [[nodiscard]] virtual bool raisesContrast() const = 0;

    /// The colour of what is selected or has the focus, as far as known; none for the program's own. Does not block.
    [[nodiscard]] virtual std::optional<Accent> accent() const = 0;

Q_SIGNALS:
    void preferenceChanged();
    void reducesMotionChanged();
    void raisesContrastChanged();
    void accentChanged();
};
