#pragma once

#include "Desktop/ColorScheme.h"

#include <memory>

/// The preference as the desktop portal tells it, and follows it while the program runs. Starts as `none` and stays so
/// without a portal. Everything happens later, on the thread that made it, which must be the main thread: Qt's event
/// loop delivers the answers by way of its GLib dispatcher.
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
