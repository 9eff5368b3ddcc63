#pragma once

#include "StorageOverview/StorageCategory.h"
#include "StorageOverview/VolumeInfo.h"

#include <QtCore/QObject>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class UserFolders;

/// Measures the categories in the background, one measurement at a time: a request during a measurement gets its
/// result, so that entering the screen many times does not start many walks of the same folders. Lives on the main
/// thread, longer than the stores that use it.
class CategoryMeasurement : public QObject {
    Q_OBJECT

public:
    using Answer = std::function<void(const StorageCategories&)>;

    /// `userFolders` must outlive this.
    explicit CategoryMeasurement(UserFolders& userFolders, QObject* parent = nullptr);
    ~CategoryMeasurement() override;
    Q_DISABLE_COPY_MOVE(CategoryMeasurement)

    /// Calls `answer` later on the main thread, unless this is destroyed before. If something that was skipped answers
    /// later, and no newer request was made, `answer` is called again. A measurement that is already running keeps the
    /// main volume of its first request.
    void request(const std::optional<VolumeInfo>& mainVolume, Answer answer);

private:
    /// Requests that share a measurement, and how often it was repeated.
    struct Measurement {
        std::optional<VolumeInfo> mainVolume;
        std::vector<Answer> answers;
        int repeated = 0;
    };

    void measure(const std::shared_ptr<Measurement>& measurement);

    UserFolders& m_userFolders;
    std::shared_ptr<Measurement> m_current;  ///< The latest one.
    bool m_isRunning = false;
};
