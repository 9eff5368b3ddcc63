#pragma once

#include "Foundation/FileURL.h"

#include <optional>
#include <string>

/// The location as a "file:" URI: each byte that is no plain letter, digit or mark is percent-encoded, whether or not
/// the path is UTF-8.
[[nodiscard]] std::string fileURI(const FileURL& url);

/// The location that a "file:" URI of this machine names, as exactly the bytes it encodes; nothing for other schemes,
/// for other machines and for what is no such URI.
[[nodiscard]] std::optional<FileURL> fileURLFromURI(const std::string& uri);
