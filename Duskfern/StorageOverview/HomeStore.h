#pragma once

#include "StorageOverview/StorageCategory.h"
#include "StorageOverview/VolumeInfo.h"

#include <QtCore/QObject>
#include <QtCore/QVariantList>

class CategoryMeasurement;
class MountedVolumes;

/// The state of the home screen: the mounted volumes, and the categories of the main one. Lives on the main thread
/// while the screen is shown; a measurement that it requested ends without it. Each change emits one notification,
/// after the value is set.
class HomeStore : public QObject {
    Q_OBJECT

public:
    /// Starts without volumes and with all categories at 0. Both services must outlive the store.
    HomeStore(MountedVolumes& mountedVolumes, CategoryMeasurement& measurement, QObject* parent = nullptr);
    ~HomeStore() override;
    Q_DISABLE_COPY_MOVE(HomeStore)

    /// The mounted volumes, the main one first; for QML a list of `volumeInfo`.
    Q_PROPERTY(QVariantList volumes READ volumeRows NOTIFY volumesChanged)
    [[nodiscard]] const std::vector<VolumeInfo>& volumes() const { return m_volumes; }
    [[nodiscard]] QVariantList volumeRows() const;
    Q_SIGNAL void volumesChanged();

    /// One record per kind; for QML a list of `storageCategory`.
    Q_PROPERTY(QVariantList categories READ categoryRows NOTIFY categoriesChanged)
    [[nodiscard]] const StorageCategories& categories() const { return m_categories; }
    [[nodiscard]] QVariantList categoryRows() const;
    Q_SIGNAL void categoriesChanged();

    /// True from the start of a refresh until the categories are measured.
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY isScanningChanged)
    [[nodiscard]] bool isScanning() const { return m_isScanning; }
    Q_SIGNAL void isScanningChanged();

    /// Lists the volumes again, those that answer late as soon as they do, and measures the categories in the
    /// background; the old values stay until then. Does nothing while a refresh runs.
    Q_INVOKABLE void refresh();

private:
    void setVolumes(std::vector<VolumeInfo> volumes);
    void setCategories(const StorageCategories& categories);
    void setIsScanning(bool isScanning);

    MountedVolumes& m_mountedVolumes;
    CategoryMeasurement& m_measurement;
    std::vector<VolumeInfo> m_volumes;
    StorageCategories m_categories;
    bool m_isScanning = false;
};
