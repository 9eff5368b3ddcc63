#include "Desktop/PropertyList.h"

#include <QtCore/QXmlStreamReader>

std::optional<QString> bundleIdentifier(const QByteArray& contents) {
    QXmlStreamReader reader(contents);
    if (!reader.readNextStartElement() || reader.name() != QLatin1String("plist") || !reader.readNextStartElement() ||
        reader.name() != QLatin1String("dict")) {
        return std::nullopt;
    }
    bool isNext = false;
    while (reader.readNextStartElement()) {
        if (reader.name() == QLatin1String("key")) {
            isNext = reader.readElementText() == QLatin1String("CFBundleIdentifier");
        } else if (isNext && reader.name() == QLatin1String("string")) {
            return reader.readElementText().trimmed();
        } else {
            reader.skipCurrentElement();
        }
    }
    return std::nullopt;
}
