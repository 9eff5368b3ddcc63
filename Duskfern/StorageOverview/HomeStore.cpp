#include "StorageOverview/HomeStore.h"

#include "StorageOverview/CategoryMeasurement.h"
#include "StorageOverview/StorageOverviewScanner.h"

#include <QtCore/QPointer>

#include <utility>

namespace {

template <class Rows>
QVariantList variants(const Rows& rows) {
    QVariantList list;
    for (const auto& row : rows) {
        list.append(QVariant::fromValue(row));
    }
    return list;
}

}  // namespace

HomeStore::HomeStore(MountedVolumes& mountedVolumes, CategoryMeasurement& measurement, QObject* parent)
    : QObject(parent), m_mountedVolumes(mountedVolumes), m_measurement(measurement) {
    for (const StorageKind kind : StorageKinds::allCases) {
        m_categories.emplace_back().kind = kind;
    }
}

HomeStore::~HomeStore() = default;

QVariantList HomeStore::volumeRows() const {
    return variants(m_volumes);
}

QVariantList HomeStore::categoryRows() const {
    return variants(m_categories);
}

void HomeStore::setVolumes(std::vector<VolumeInfo> volumes) {
    if (m_volumes != volumes) {
        m_volumes = std::move(volumes);
        Q_EMIT volumesChanged();
    }
}

void HomeStore::setCategories(const StorageCategories& categories) {
    if (m_categories != categories) {
        m_categories = categories;
        Q_EMIT categoriesChanged();
    }
}

void HomeStore::setIsScanning(bool isScanning) {
    if (std::exchange(m_isScanning, isScanning) != isScanning) {
        Q_EMIT isScanningChanged();
    }
}

void HomeStore::refresh() {
    if (m_isScanning) {
        return;
    }
    setIsScanning(true);
    setVolumes(StorageOverviewScanner::volumes(
        m_mountedVolumes.ask([self = QPointer(this)](const MountedVolumes::Answers& answers) {
            if (self != nullptr) {
                self->setVolumes(StorageOverviewScanner::volumes(answers));
            }
        })));
    const std::optional<VolumeInfo> mainVolume = m_volumes.empty() ? std::nullopt : std::optional(m_volumes.front());
    m_measurement.request(mainVolume, [self = QPointer(this)](const StorageCategories& categories) {
        if (self != nullptr) {
            self->setCategories(categories);
            self->setIsScanning(false);
        }
    });
}
