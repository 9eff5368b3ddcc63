#include "Theme/Tones.h"

#include "Theme/Contrast.h"

QColor Tones::against(const QColor& color, const QColor& surface, double ratio) {
    const QColor end = contrast(Qt::black, surface) > contrast(Qt::white, surface) ? Qt::black : Qt::white;
    const auto mixed = [&](int percent) {
        const auto part = [&](int from, int to) { return from + (to - from) * percent / 100; };
        return QColor(part(color.red(), end.red()), part(color.green(), end.green()), part(color.blue(), end.blue()));
    };
    int percent = 0;
    while (percent < 100 && contrast(mixed(percent), surface) < ratio) {
        ++percent;
    }
    return mixed(percent);
}
