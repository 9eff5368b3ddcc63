#pragma once

#include "Desktop/Appearance.h"

#include <memory>
#include <optional>

/// The preferences reported by the desktop portal, kept up to date. None of them until the portal answers, and
/// without a portal. Must be created on the main thread: Qt's event loop delivers the answers through its GLib
/// dispatcher.
class PortalAppearance final : public Appearance {
    Q_OBJECT

public:
    explicit PortalAppearance(QObject* parent = nullptr);
    ~PortalAppearance() override;

    [[nodiscard]] Preference preference() const override;
    [[nodiscard]] bool reducesMotion() const override;
    [[nodiscard]] bool raisesContrast() const override;
    [[nodiscard]] std::optional<Accent> accent() const override;

private:
    struct Link;

    /// A wish that desktops tell in two ways.
    struct Wish {
        std::optional<bool> common;  ///< What all desktops may say; it comes first.
        std::optional<bool> gnome;   ///< What GNOME says.

        [[nodiscard]] bool isMade() const { return common.value_or(gnome.value_or(false)); }
    };

    void setPreference(Preference preference);
    void setMotion(const Wish& motion);
    void setContrast(const Wish& contrast);
    void setAccent(std::optional<Accent> accent);

    std::shared_ptr<Link> m_link;
    Preference m_preference = Preference::none;
    Wish m_lessMotion;
    Wish m_moreContrast;
    std::optional<Accent> m_accent;
};
