#include "StorageOverview/CategoryMeasurement.h"

#include "Desktop/UserFolders.h"
#include "Foundation/Dispatch.h"
#include "StorageOverview/StorageOverviewScanner.h"

#include <QtCore/QPointer>

#include <memory>
#include <utility>

namespace {

/// How often a measurement is repeated because something answered late.
constexpr int maximumRepetitions = 3;

}  // namespace

CategoryMeasurement::CategoryMeasurement(UserFolders& userFolders, QObject* parent)
    : QObject(parent), m_userFolders(userFolders) {}

CategoryMeasurement::~CategoryMeasurement() = default;

void CategoryMeasurement::request(const std::optional<VolumeInfo>& mainVolume, Answer answer) {
    if (m_isRunning) {
        m_round->answers.push_back(std::move(answer));
        return;
    }
    m_round = std::make_shared<Round>(Round{mainVolume, {std::move(answer)}});
    measure(m_round);
}

void CategoryMeasurement::measure(const std::shared_ptr<Round>& round) {
    m_isRunning = true;
    Dispatch::background([self = QPointer(this), round, mainVolume = round->mainVolume,
                          &userFolders = m_userFolders](const std::stop_token& stop) {
        auto sizes = StorageOverviewScanner::categories(mainVolume, userFolders.paths(), stop);
        Dispatch::main([self, round, sizes = std::move(sizes)] {
            if (self == nullptr) {
                return;
            }
            self->m_isRunning = false;
            for (const Answer& answer : round->answers) {
                answer(sizes.categories);
            }
            if (sizes.lateAnswer == nullptr || round->repeated == maximumRepetitions) {
                return;
            }
            sizes.lateAnswer->whenAnswered([self, round] {
                Dispatch::main([self, round] {
                    if (self != nullptr && self->m_round == round && !self->m_isRunning) {
                        ++round->repeated;
                        self->measure(round);
                    }
                });
            });
        });
    });
}
