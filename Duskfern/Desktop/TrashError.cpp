#include "Desktop/Trash.h"

namespace {

QString pattern(TrashError error) {
    switch (error) {
        case TrashError::gone:
            return QStringLiteral("No se encontró “%1”. Puede que se haya movido o eliminado.");
        case TrashError::changed:
            return QStringLiteral("“%1” ha cambiado desde que se mostró. Analiza de nuevo antes de moverlo.");
        case TrashError::stopped:
            return QStringLiteral("No se movió “%1” a la papelera porque el programa se cierra.");
        case TrashError::noPermission:
            return QStringLiteral("No tienes permiso para mover “%1” a la papelera.");
        case TrashError::readOnly:
            return QStringLiteral("“%1” está en un disco de solo lectura y no se puede mover a la papelera.");
        case TrashError::full:
            return QStringLiteral("No se pudo mover “%1” a la papelera porque no queda espacio en el disco.");
        case TrashError::noTrash:
            return QStringLiteral("No se pudo mover “%1” a la papelera porque el disco en el que está no la admite.");
        case TrashError::nameTooLong:
            return QStringLiteral("El nombre “%1” es demasiado largo para la papelera. Acórtalo e inténtalo de nuevo.");
        case TrashError::other:
            break;
    }
    return QStringLiteral("No se pudo mover “%1” a la papelera.");
}

}  // namespace

QString trashErrorText(TrashError error, const FileURL& url) {
    return pattern(error).arg(displayText(url.lastPathComponent()));
}
