#include "SpaceMap/StatusTexts.h"

#include "Foundation/Formatters.h"

QString StatusTexts::analysis(bool isScanning, qint64 scannedCount, qint64 skippedCount) {
    return isScanning ? QStringLiteral("Analizando… %1 archivos").arg(Formatters::grouped(scannedCount))
                      : QStringLiteral("Análisis completado · %1 elementos no accesibles").arg(skippedCount);
}

QString StatusTexts::moving(int percent) {
    const QString text = QStringLiteral("Moviendo a la papelera…");
    return percent < 0 ? text : text + QStringLiteral(" %1%").arg(percent);
}
