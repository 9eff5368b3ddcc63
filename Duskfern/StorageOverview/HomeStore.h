#pragma once

#include "StorageOverview/StorageCategory.h"
#include "StorageOverview/VolumeInfo.h"

#include <QtCore/QObject>
#include <QtCore/QVariantList>

class CategoryMeasurement;
class MountedVolumes;

/// What the home screen shows: the mounted volumes, and what fills the main one. Lives on the main thread for as long
/// as the screen is shown; a measurement that it has asked for runs on without it. Each change notifies once, after the
/// new value is in place.
class HomeStore : public QObject {
    Q_OBJECT

public:
    /// Shows no volumes yet and every kind with nothing in it. Both services outlive the store.
    HomeStore(MountedVolumes& mountedVolumes, CategoryMeasurement& measurement, QObject* parent = nullptr);
    ~HomeStore() override;
    Q_DISABLE_COPY_MOVE(HomeStore)

    /// The mounted volumes, the main one first. For the screens: a list of `volumeInfo`.
    Q_PROPERTY(QVariantList volumes READ volumeRows NOTIFY volumesChanged)
    [[nodiscard]] const std::vector<VolumeInfo>& volumes() const { return m_volumes; }
    [[nodiscard]] QVariantList volumeRows() const;
    Q_SIGNAL void volumesChanged();

    /// One record a kind, always. For the screens: a list of `storageCategory`.
    Q_PROPERTY(QVariantList categories READ categoryRows NOTIFY categoriesChanged)
    [[nodiscard]] const StorageCategories& categories() const { return m_categories; }
    [[nodiscard]] QVariantList categoryRows() const;
    Q_SIGNAL void categoriesChanged();

    /// From the start of a refresh until its categories have come.
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY isScanningChanged)
    [[nodiscard]] bool isScanning() const { return m_isScanning; }
    Q_SIGNAL void isScanningChanged();

    /// Lists the volumes anew, at once those that answer soon and the others when they answer, and measures the kinds
    /// in the background; the old kinds stay until the new have come. Does nothing while that runs.
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
