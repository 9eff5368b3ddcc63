#include "Foundation/FileExtension.h"

#include <QtCore/QString>

#include <algorithm>

std::string lowerCaseExtension(std::string_view name, std::size_t maximumLength) {
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos) {
        return {};
    }
    const std::string_view extension = name.substr(dot + 1);
    // The lower case of a letter outside ASCII may be in ASCII: the Kelvin sign has three bytes and becomes "k".
    if (extension.size() > 3 * maximumLength) {
        return {};
    }
    std::string lower(extension);
    const auto isASCII = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    if (!std::all_of(lower.begin(), lower.end(), isASCII)) {
        return QString::fromUtf8(lower.data(), static_cast<qsizetype>(lower.size())).toLower().toStdString();
    }
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return lower;
}
