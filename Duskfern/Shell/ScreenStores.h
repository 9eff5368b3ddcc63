#pragma once

#include "JunkCleaner/JunkStore.h"
#include "StorageOverview/CategoryMeasurement.h"
#include "StorageOverview/HomeStore.h"

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>

class MountedVolumes;
class ScanStore;

/// The stores of the screens that begin anew each time they are shown: made when the mode changes to their screen, gone
/// when it changes to another one. What lives longer than a visit is kept here.
class ScreenStores : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The window has one, made at launch")

public:
    /// The desktop as these stores use it; outlives this.
    struct Services {
        MountedVolumes& mountedVolumes;
        JunkStore::Services junk;
    };

    /// Follows the mode of `store`, which outlives this.
    ScreenStores(const ScanStore& store, const Services& services, QObject* parent = nullptr);
    ~ScreenStores() override;
    Q_DISABLE_COPY_MOVE(ScreenStores)

    /// The store of the home screen; null while another screen is shown. It lives until the event loop has run after
    /// it was replaced, so that its screen can go first.
    Q_PROPERTY(HomeStore* home READ home NOTIFY changed)
    [[nodiscard]] HomeStore* home() const { return m_home; }

    /// Likewise, of the screen that cleans.
    Q_PROPERTY(JunkStore* junk READ junk NOTIFY changed)
    [[nodiscard]] JunkStore* junk() const { return m_junk; }

    Q_SIGNAL void changed();

private:
    void follow();

    const ScanStore& m_store;
    Services m_services;
    CategoryMeasurement m_measurement;
    HomeStore* m_home = nullptr;  ///< A child of this, as the next.
    JunkStore* m_junk = nullptr;
};
