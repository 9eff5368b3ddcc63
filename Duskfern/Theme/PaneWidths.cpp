#include "Theme/PaneWidths.h"

#include <algorithm>

qreal PaneWidths::first(qreal wanted, qreal room, qreal minimumFirst, qreal maximumFirst, qreal minimumSecond) {
    const qreal minima = minimumFirst + minimumSecond;
    if (room <= minima) {
        return room * minimumFirst / minima;
    }
    return std::max(minimumFirst, std::min({wanted, maximumFirst, room - minimumSecond}));
}
