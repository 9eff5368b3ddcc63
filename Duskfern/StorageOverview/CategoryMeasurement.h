#pragma once

#include "StorageOverview/StorageCategory.h"
#include "StorageOverview/VolumeInfo.h"

#include <QtCore/QObject>

#include <functional>
#include <memory>
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

    /// Calls `answer` later, on the main thread, unless this is destroyed before. When something that was passed over
    /// answers after all, and nobody has asked anew, it is called again. A measurement that runs already keeps the main
    /// volume it was started with.
    void request(const std::optional<VolumeInfo>& mainVolume, Answer answer);

private:
    /// What somebody wants to know, and how often it was measured again because of a late answer.
    struct Round {
        std::optional<VolumeInfo> mainVolume;
        std::vector<Answer> answers;
        int repeated = 0;
    };

    void measure(const std::shared_ptr<Round>& round);

    UserFolders& m_userFolders;
    std::shared_ptr<Round> m_round;  ///< The last one that was begun.
    bool m_isRunning = false;
};
