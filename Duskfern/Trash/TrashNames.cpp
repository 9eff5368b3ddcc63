#include "Trash/TrashNames.h"

#include <algorithm>
#include <array>

namespace {

/// A longer part after a dot is not treated as an extension.
constexpr std::size_t longestExtension = 24;

bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

bool isPlain(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
           byte == '-' || byte == '.' || byte == '_' || byte == '~';
}

}  // namespace

std::string_view cutName(std::string_view name, std::size_t size) {
    if (name.size() <= size) {
        return name;
    }
    std::size_t end = size;
    while (end > 0 && size - end < 3 && continuesCharacter(name[end])) {
        --end;
    }
    return name.substr(0, continuesCharacter(name[end]) ? size : end);
}

std::string nameInTrash(std::string_view name, std::optional<std::uint32_t> number, std::size_t longest) {
    const std::size_t room = longest > trashInfoSuffix.size() ? longest - trashInfoSuffix.size() : 1;
    if (!number && name.size() <= room) {
        return std::string(name);
    }
    // The first dot, to keep ".tar.gz" together, unless the extension would be too long.
    std::size_t dot = name.find('.', 1);
    if (dot != std::string_view::npos && name.size() - dot > longestExtension) {
        dot = name.rfind('.');
    }
    if (dot == std::string_view::npos || dot == 0 || name.size() - dot > longestExtension) {
        dot = name.size();
    }
    const std::string_view extension = name.substr(dot);
    const std::string infix = number ? '.' + std::to_string(*number) : std::string();
    const std::size_t kept = infix.size() + extension.size();
    if (kept >= room) {
        return std::string(cutName(name.substr(0, dot), room > infix.size() ? room - infix.size() : 1)) + infix;
    }
    return std::string(cutName(name.substr(0, dot), room - kept)).append(infix).append(extension);
}

std::string plainName(std::string_view name) {
    std::string plain(name);
    std::replace_if(
        plain.begin(), plain.end(), [](char byte) { return !isPlain(byte); }, '_');
    return plain;
}

std::string percentEncoded(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        if (isPlain(byte) || byte == '/') {
            text += byte;
        } else {
            const auto value = static_cast<unsigned char>(byte);
            text += '%';
            text += digits[value / 16U];
            text += digits[value % 16U];
        }
    }
    return text;
}

std::string trashInfoText(std::string_view path, std::time_t moment) {
    std::tm local{};
    localtime_r(&moment, &local);
    std::array<char, 32> date{};
    const std::size_t length = std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &local);
    return "[Trash Info]\nPath=" + percentEncoded(path) + "\nDeletionDate=" + std::string(date.data(), length) + "\n";
}
