#pragma once

#include "JunkCleaner/JunkStore.h"
#include "StorageOverview/CategoryMeasurement.h"
#include "StorageOverview/HomeStore.h"

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>

class MountedVolumes;
class ScanStore;

/// The stores of the screens that start anew at each visit. A store is created when the mode changes to its screen and
/// destroyed when the mode changes again. Also holds what lives longer than a visit.
class ScreenStores : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The window has one, made at launch")

public:
    /// The services of the desktop. They must outlive this.
    struct Services {
        MountedVolumes& mountedVolumes;
        JunkStore::Services junk;
    };

    /// Creates the stores for the mode of `store`, which must outlive this.
    ScreenStores(const ScanStore& store, const Services& services, QObject* parent = nullptr);
    ~ScreenStores() override;
    Q_DISABLE_COPY_MOVE(ScreenStores)

    /// The store of the home screen; null while another screen is shown. After it is replaced, the old store is
    /// destroyed from the event loop, so that its screen is destroyed first.
    Q_PROPERTY(HomeStore* home READ home NOTIFY changed)
    [[nodiscard]] HomeStore* home() const { return m_home; }

    /// The same for the junk screen.
    Q_PROPERTY(JunkStore* junk READ junk NOTIFY changed)
    [[nodiscard]] JunkStore* junk() const { return m_junk; }

    Q_SIGNAL void changed();

private:
    void updateStores();

    const ScanStore& m_store;
    Services m_services;
    CategoryMeasurement m_measurement;
    HomeStore* m_home = nullptr;  ///< Owned as a child of this, like the next.
    JunkStore* m_junk = nullptr;
};
