#pragma once

#include "Desktop/ColorScheme.h"

#include <memory>

/// The colour preference reported by the desktop portal, kept up to date. `none` until the portal answers, and without
/// a portal. Must be created on the main thread: Qt's event loop delivers the answers through its GLib dispatcher.
class PortalColorScheme final : public ColorScheme {
    Q_OBJECT

public:
    explicit PortalColorScheme(QObject* parent = nullptr);
    ~PortalColorScheme() override;

    [[nodiscard]] Preference preference() const override;

private:
    struct Link;

    void setPreference(Preference preference);

    std::shared_ptr<Link> m_link;
    Preference m_preference = Preference::none;
};
