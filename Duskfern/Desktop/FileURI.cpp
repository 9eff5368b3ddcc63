#include "Desktop/FileURI.h"

#include "Desktop/GioSupport.h"

std::string fileURI(const FileURL& url) {
    const GPtr<char> text(g_filename_to_uri(url.path().c_str(), nullptr, nullptr));
    return text ? text.get() : "";
}

std::optional<FileURL> fileURLFromURI(const std::string& uri) {
    GPtr<char> host;
    const GPtr<char> path(g_filename_from_uri(uri.c_str(), Out(host), nullptr));
    if (!path || path.get()[0] != '/') {
        return std::nullopt;
    }
    const bool isHere = !host || g_ascii_strcasecmp(host.get(), "localhost") == 0 ||
                        g_ascii_strcasecmp(host.get(), g_get_host_name()) == 0;
    return isHere ? std::optional(FileURL(path.get())) : std::nullopt;
}
