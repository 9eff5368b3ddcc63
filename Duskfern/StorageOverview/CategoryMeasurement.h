#pragma once

#include "StorageOverview/StorageCategory.h"
#include "StorageOverview/VolumeInfo.h"

#include <QtCore/QObject>

#include <functional>
#include <optional>
#include <vector>

class UserFolders;

/// Measures the kinds in the background, one measurement at a time: who asks while one runs gets its result too. So a
/// screen that is left and entered again many times does not pile up walks through the same folders. Lives longer than
/// the stores that ask; on the main thread.
class CategoryMeasurement : public QObject {
    Q_OBJECT

public:
    using Answer = std::function<void(const StorageCategories&)>;

    /// `userFolders` outlives this.
    explicit CategoryMeasurement(UserFolders& userFolders, QObject* parent = nullptr);
    ~CategoryMeasurement() override;
    Q_DISABLE_COPY_MOVE(CategoryMeasurement)

    /// Calls `answer` later, on the main thread, unless this is destroyed before. A measurement that runs already keeps
    /// the main volume it was started with.
    void request(const std::optional<VolumeInfo>& mainVolume, Answer answer);

private:
    void finish(const StorageCategories& categories);

    UserFolders& m_userFolders;
    std::vector<Answer> m_waiting;  ///< Empty while nothing runs.
};
