#include "Desktop/Trash.h"

namespace {

QString pattern(TrashError error) {
    switch (error) {
        case TrashError::gone:
            return QStringLiteral("No se encontró “%1”. Puede que se haya movido o eliminado.");
        case TrashError::changed:
            return QStringLiteral("“%1” ha cambiado desde que se mostró. Analiza de nuevo antes de moverlo.");
        case TrashError::changedMeanwhile:
            return QStringLiteral("“%1” ha cambiado mientras se copiaba a la papelera y sigue donde estaba.");
        case TrashError::stopped:
            return QStringLiteral("No se movió “%1” a la papelera porque el programa se cierra.");
        case TrashError::noPermission:
            return QStringLiteral("No tienes permiso para mover “%1” a la papelera.");
        case TrashError::foreign:
            return QStringLiteral("“%1” es de otra persona y no puedes quitarlo de la carpeta en la que está.");
        case TrashError::isProtected:
            return QStringLiteral("“%1” está protegido contra cambios y no se puede mover a la papelera.");
        case TrashError::closedInside:
            return QStringLiteral(
                "“%1” contiene elementos que no puedes leer o quitar de su carpeta, por lo que no se "
                "puede mover a la papelera.");
        case TrashError::cannotBeEmptied:
            return QStringLiteral("“%1” contiene carpetas de otra persona que no podrías eliminar de la papelera.");
        case TrashError::readOnly:
            return QStringLiteral("“%1” está en un disco de solo lectura y no se puede mover a la papelera.");
        case TrashError::full:
            return QStringLiteral("No se pudo mover “%1” a la papelera porque no queda espacio en el disco.");
        case TrashError::quota:
            return QStringLiteral("No se pudo mover “%1” a la papelera porque has agotado tu cuota de disco.");
        case TrashError::noInodes:
            return QStringLiteral("No se pudo mover “%1” a la papelera porque en el disco no caben más archivos.");
        case TrashError::homeFull:
            return QStringLiteral(
                "No se pudo mover “%1” a la papelera porque no cabe en el disco de tu carpeta "
                "personal.");
        case TrashError::noHome:
            return QStringLiteral("No se pudo mover “%1” a la papelera porque no se encuentra tu carpeta personal.");
        case TrashError::noTrash:
            return QStringLiteral("No se pudo mover “%1” porque la carpeta de la papelera no se puede usar ni crear.");
        case TrashError::nameTooLong:
            return QStringLiteral(
                "“%1” contiene nombres demasiado largos para el disco de tu carpeta personal, por lo "
                "que no se puede mover a la papelera.");
        case TrashError::pathTooLong:
            return QStringLiteral("No se pudo mover “%1” a la papelera porque su ruta es demasiado larga.");
        case TrashError::mounted:
            return QStringLiteral("“%1” es un disco montado o contiene uno, y no se puede mover a la papelera.");
        case TrashError::ofTrash:
            return QStringLiteral("“%1” es parte de una papelera o la contiene, y no se puede mover a ella.");
        case TrashError::holdsHome:
            return QStringLiteral("“%1” es tu carpeta personal o la contiene, y no se puede mover a la papelera.");
        case TrashError::attributes:
            return QStringLiteral(
                "No se pudo mover “%1” a la papelera porque el disco de tu carpeta personal no admite "
                "sus atributos.");
        case TrashError::special:
            return QStringLiteral("“%1” es o contiene un archivo especial que no se puede copiar a la papelera.");
        case TrashError::tooManyOpen:
            return QStringLiteral("No se pudo mover “%1” a la papelera porque hay demasiados archivos abiertos.");
        case TrashError::diskError:
            return QStringLiteral("No se pudo mover “%1” a la papelera por un error al leer o escribir en el disco.");
        case TrashError::remains:
            return QStringLiteral("“%1” ya está en la papelera, pero no se pudo quitar todo de donde estaba.");
        case TrashError::other:
            break;
    }
    return QStringLiteral("No se pudo mover “%1” a la papelera.");
}

}  // namespace

QString trashErrorText(TrashError error, const FileURL& url) {
    return pattern(error).arg(elidedName(displayText(url.lastPathComponent())));
}
