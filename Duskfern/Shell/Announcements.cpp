#include "Shell/Announcements.h"

#include "Foundation/Formatters.h"

#include <chrono>
#include <utility>

namespace {

QString counted(qint64 number, const char* one, const char* many) {
    return number == 1 ? QString::fromUtf8(one) : QString::fromUtf8(many).arg(Formatters::grouped(number));
}

QString files(qint64 number) {
    return number == 0 ? QStringLiteral("Ningún archivo") : counted(number, "1 archivo", "%1 archivos");
}

}  // namespace

Announcements::Announcements(QObject* parent) : QObject(parent) {
    m_filterPause.setSingleShot(true);
    m_filterPause.setInterval(std::chrono::milliseconds(500));
    connect(&m_filterPause, &QTimer::timeout, this, &Announcements::announceFiles);
}

void Announcements::setStore(ScanStore* store) {
    m_store = store;
    connect(store, &ScanStore::isScanningChanged, this, [this] {
        if (m_store->isScanning()) {
            Q_EMIT announced(QStringLiteral("Analizando…"));
        } else {
            Q_EMIT announced(QStringLiteral("Análisis completado: %1, %2. %3 elementos no accesibles.")
                                 .arg(files(m_store->fileCount()), Formatters::size(m_store->totalSize()))
                                 .arg(m_store->skippedCount()));
        }
    });
    connect(store, &ScanStore::filesChanged, this, &Announcements::announceRemoval);
    for (const auto changed : {&ScanStore::searchChanged, &ScanStore::categoryChanged}) {
        connect(store, changed, &m_filterPause, qOverload<>(&QTimer::start));
    }
    Q_EMIT storesChanged();
}

void Announcements::setScreens(ScreenStores* screens) {
    m_screens = screens;
    connect(screens, &ScreenStores::changed, this, &Announcements::watchScreens);
    watchScreens();
    Q_EMIT storesChanged();
}

/// The stores of the other screens live as long as a visit.
void Announcements::watchScreens() {
    if (HomeStore* const home = m_screens->home()) {
        connect(home, &HomeStore::isScanningChanged, this, [this, home] {
            Q_EMIT announced(home->isScanning() ? QStringLiteral("Calculando tamaños… Puede tardar unos minutos")
                                                : QStringLiteral("Tamaños calculados"));
        });
    }
    if (JunkStore* const junk = m_screens->junk()) {
        connect(junk, &JunkStore::isScanningChanged, this, [this, junk] {
            Q_EMIT announced(junk->isScanning()
                                 ? QStringLiteral("Analizando basura…")
                                 : QStringLiteral("%1, %2 de bajo riesgo")
                                       .arg(counted(junk->count(), "1 elemento encontrado", "%1 elementos encontrados"),
                                            Formatters::grouped(junk->safeCount())));
        });
    }
}

/// Another screen does not show the files.
void Announcements::announceFiles() {
    if (m_store->mode() == ScanStore::Mode::space && m_store->hasRoot() && !m_store->isScanning()) {
        Q_EMIT announced(files(m_store->filteredCount()));
    }
}

/// Outside a scan, files only go because they were moved to the Trash.
void Announcements::announceRemoval() {
    const qint64 before = std::exchange(m_fileCount, m_store->fileCount());
    if (!m_store->isScanning() && m_fileCount == before - 1) {
        Q_EMIT announced(QStringLiteral("Movido a la papelera. ") + files(m_store->filteredCount()));
    }
}
