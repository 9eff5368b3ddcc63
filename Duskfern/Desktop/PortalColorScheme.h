#pragma once

#include "Desktop/ColorScheme.h"

#include <memory>
#include <optional>

/// The preferences reported by the desktop portal, kept up to date. `none` and motion until the portal answers, and
/// without a portal. Must be created on the main thread: Qt's event loop delivers the answers through its GLib
/// dispatcher.
class PortalColorScheme final : public ColorScheme {
    Q_OBJECT

public:
    explicit PortalColorScheme(QObject* parent = nullptr);
    ~PortalColorScheme() override;

    [[nodiscard]] Preference preference() const override;
    [[nodiscard]] bool reducesMotion() const override;

private:
    struct Link;

    void setPreference(Preference preference);
    void setReduced(std::optional<bool> reduced);
    void setAnimated(std::optional<bool> animated);
    void updateMotion();

    std::shared_ptr<Link> m_link;
    Preference m_preference = Preference::none;
    std::optional<bool> m_reduced;   ///< What all desktops may say; it comes first.
    std::optional<bool> m_animated;  ///< What GNOME says.
    bool m_reducesMotion = false;
};
