#pragma once

#include "Foundation/FileURL.h"

#include <optional>
#include <string>

/// The location as a "file:" URI. Bytes other than unreserved characters are percent-encoded, whether or not the path
/// is UTF-8.
[[nodiscard]] std::string fileURI(const FileURL& url);

/// The location in a "file:" URI of this machine, as exactly the bytes it encodes; nothing for other schemes or hosts,
/// or if the URI is malformed.
[[nodiscard]] std::optional<FileURL> fileURLFromURI(const std::string& uri);
