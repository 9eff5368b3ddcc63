#include "JunkCleaner/CleaningReasons.h"

#include <QtCore/QStringList>

#include <algorithm>
#include <vector>

namespace {

/// Worded for any number of items.
QString reasonText(const std::optional<TrashError>& error) {
    if (!error) {
        return QStringLiteral("El disco no responde");
    }
    switch (*error) {
        case TrashError::gone:
            return QStringLiteral("Ya no existe");
        case TrashError::changed:
        case TrashError::changedMeanwhile:
            return QStringLiteral("Ha cambiado desde el análisis");
        case TrashError::stopped:
            return QStringLiteral("El programa se cierra");
        case TrashError::noPermission:
        case TrashError::foreign:
            return QStringLiteral("No tienes permiso");
        case TrashError::isProtected:
            return QStringLiteral("Está protegido contra cambios");
        case TrashError::closedInside:
            return QStringLiteral("Contiene elementos que no puedes leer o quitar");
        case TrashError::cannotBeEmptied:
            return QStringLiteral("Contiene carpetas de otra persona");
        case TrashError::readOnly:
            return QStringLiteral("Está en un disco de solo lectura");
        case TrashError::full:
        case TrashError::noInodes:
            return QStringLiteral("No queda espacio en el disco");
        case TrashError::quota:
            return QStringLiteral("Has agotado tu cuota de disco");
        case TrashError::homeFull:
            return QStringLiteral("No cabe en el disco de tu carpeta personal");
        case TrashError::noHome:
        case TrashError::noTrash:
        case TrashError::ofTrash:
            return QStringLiteral("La papelera no se puede usar");
        case TrashError::nameTooLong:
        case TrashError::pathTooLong:
            return QStringLiteral("Su nombre o su ruta es demasiado larga");
        case TrashError::mounted:
            return QStringLiteral("Es un disco montado o contiene uno");
        case TrashError::holdsHome:
            return QStringLiteral("Contiene tu carpeta personal");
        case TrashError::attributes:
        case TrashError::special:
            return QStringLiteral("No se puede copiar a la papelera");
        case TrashError::tooManyOpen:
            return QStringLiteral("Hay demasiados archivos abiertos");
        case TrashError::diskError:
            return QStringLiteral("Error al leer o escribir en el disco");
        case TrashError::remains:
            return QStringLiteral("Ya está en la papelera, pero queda una parte donde estaba");
        case TrashError::other:
            break;
    }
    return QStringLiteral("Otro error");
}

}  // namespace

void FailureCounts::add(const MoveResult& result) {
    if (!result.isMoved()) {
        ++m_counts[result.error];
    }
}

int FailureCounts::total() const {
    int total = 0;
    for (const auto& [error, count] : m_counts) {
        total += count;
    }
    return total;
}

QString FailureCounts::text() const {
    std::vector<std::pair<QString, int>> lines;
    for (const auto& [error, count] : m_counts) {
        const QString reason = reasonText(error);
        const auto line =
            std::find_if(lines.begin(), lines.end(), [&](const auto& other) { return other.first == reason; });
        if (line == lines.end()) {
            lines.emplace_back(reason, count);
        } else {
            line->second += count;
        }
    }
    std::stable_sort(lines.begin(), lines.end(), [](const auto& a, const auto& b) { return a.second > b.second; });
    QStringList text;
    for (const auto& [reason, count] : lines) {
        text += QStringLiteral("%1: %2").arg(reason).arg(count);
    }
    return text.join(QLatin1Char('\n'));
}
