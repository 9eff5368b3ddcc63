#include "StorageOverview/CategoryMeasurement.h"

#include "Desktop/UserFolders.h"
#include "Foundation/Dispatch.h"
#include "StorageOverview/StorageOverviewScanner.h"

#include <QtCore/QPointer>

#include <memory>
#include <utility>

namespace {

/// How often a measurement is repeated because of late answers.
constexpr int maximumRepeats = 3;

}  // namespace

CategoryMeasurement::CategoryMeasurement(UserFolders& userFolders, QObject* parent)
    : QObject(parent), m_userFolders(userFolders) {}

CategoryMeasurement::~CategoryMeasurement() = default;

void CategoryMeasurement::request(const std::optional<VolumeInfo>& mainVolume, Answer answer) {
    if (m_isRunning) {
        m_current->answers.push_back(std::move(answer));
        return;
    }
    m_current = std::make_shared<Measurement>(Measurement{mainVolume, {std::move(answer)}});
    measure(m_current);
}

void CategoryMeasurement::measure(const std::shared_ptr<Measurement>& current) {
    m_isRunning = true;
    Dispatch::background([self = QPointer(this), current, mainVolume = current->mainVolume,
                          &userFolders = m_userFolders](const std::stop_token& stop) {
        auto sizes = StorageOverviewScanner::categories(mainVolume, userFolders.paths(), stop);
        Dispatch::main([self, current, sizes = std::move(sizes)] {
            if (self == nullptr) {
                return;
            }
            self->m_isRunning = false;
            for (const Answer& answer : current->answers) {
                answer(sizes.categories);
            }
            if (sizes.lateAnswer == nullptr || current->repeated == maximumRepeats) {
                return;
            }
            sizes.lateAnswer->whenAnswered([self, current] {
                Dispatch::main([self, current] {
                    if (self != nullptr && self->m_current == current && !self->m_isRunning) {
                        ++current->repeated;
                        self->measure(current);
                    }
                });
            });
        });
    });
}
