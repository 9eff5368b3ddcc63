#include "FolderBrowser/TypedPath.h"

#include "Desktop/FileURI.h"

#include <string>
#include <string_view>
#include <vector>

namespace {

FileURL withoutDots(std::string_view path) {
    std::vector<std::string_view> pieces;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        const std::string_view piece = path.substr(0, end);
        if (piece == "..") {
            if (!pieces.empty()) {
                pieces.pop_back();
            }
        } else if (!piece.empty() && piece != ".") {
            pieces.push_back(piece);
        }
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    std::string clean;
    for (const std::string_view piece : pieces) {
        clean.append("/").append(piece);
    }
    return FileURL(clean.empty() ? "/" : clean);
}

}  // namespace

std::optional<FileURL> typedPath(const QString& text, const FileURL& home, const FileURL& shown) {
    // Text copied from a terminal often ends with a line break.
    const std::string typed = text.trimmed().toStdString();
    if (typed.empty() || typed.find('\0') != std::string::npos) {
        return std::nullopt;
    }
    if (typed.starts_with("file:")) {
        const std::optional<FileURL> url = fileURLFromURI(typed);
        return url ? std::optional(withoutDots(url->path())) : std::nullopt;
    }
    if (typed.front() == '/') {
        return withoutDots(typed);
    }
    if (typed == "~" || typed.starts_with("~/")) {
        return withoutDots(home.path() + '/' + typed.substr(1));
    }
    return withoutDots(shown.path() + '/' + typed);
}
