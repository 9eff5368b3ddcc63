#include "Shell/ScreenStores.h"

#include "SpaceScan/ScanStore.h"

ScreenStores::ScreenStores(const ScanStore& store, const Services& services, QObject* parent)
    : QObject(parent), m_store(store), m_services(services), m_measurement(services.userFolders) {
    connect(&store, &ScanStore::modeChanged, this, &ScreenStores::follow);
    follow();
}

ScreenStores::~ScreenStores() = default;

void ScreenStores::follow() {
    HomeStore* const oldHome = m_home;
    const ScanStore::Mode mode = m_store.mode();
    m_home = mode == ScanStore::Mode::home ? new HomeStore(m_services.mountedVolumes, m_measurement, this) : nullptr;
    Q_EMIT changed();
    if (oldHome != nullptr) {
        oldHome->deleteLater();
    }
}
