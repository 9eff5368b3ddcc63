#include "StorageOverview/CategoryMeasurement.h"

#include "Desktop/UserFolders.h"
#include "Foundation/Dispatch.h"
#include "StorageOverview/StorageOverviewScanner.h"

#include <QtCore/QPointer>

#include <utility>

CategoryMeasurement::CategoryMeasurement(UserFolders& userFolders, QObject* parent)
    : QObject(parent), m_userFolders(userFolders) {}

CategoryMeasurement::~CategoryMeasurement() = default;

void CategoryMeasurement::request(const std::optional<VolumeInfo>& mainVolume, Answer answer) {
    m_waiting.push_back(std::move(answer));
    if (m_waiting.size() > 1) {
        return;
    }
    Dispatch::background(
        [self = QPointer(this), mainVolume, paths = m_userFolders.paths()](const std::stop_token& stop) {
            const StorageCategories categories = StorageOverviewScanner::categories(mainVolume, paths, stop);
            Dispatch::main([self, categories] {
                if (self != nullptr) {
                    self->finish(categories);
                }
            });
        });
}

void CategoryMeasurement::finish(const StorageCategories& categories) {
    for (const Answer& answer : std::exchange(m_waiting, {})) {
        answer(categories);
    }
}
