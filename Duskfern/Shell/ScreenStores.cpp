#include "Shell/ScreenStores.h"

#include "SpaceScan/ScanStore.h"

ScreenStores::ScreenStores(const ScanStore& store, const Services& services, QObject* parent)
    : QObject(parent), m_store(store), m_services(services), m_measurement(services.junk.userFolders) {
    connect(&store, &ScanStore::modeChanged, this, &ScreenStores::updateStores);
    updateStores();
}

ScreenStores::~ScreenStores() = default;

void ScreenStores::updateStores() {
    HomeStore* const oldHome = m_home;
    JunkStore* const oldJunk = m_junk;
    const ScanStore::Mode mode = m_store.mode();
    m_home = mode == ScanStore::Mode::home ? new HomeStore(m_services.mountedVolumes, m_measurement, this) : nullptr;
    m_junk = mode == ScanStore::Mode::junk ? new JunkStore(m_services.junk, this) : nullptr;
    Q_EMIT changed();
    for (QObject* const old : {static_cast<QObject*>(oldHome), static_cast<QObject*>(oldJunk)}) {
        if (old != nullptr) {
            old->deleteLater();
        }
    }
}
