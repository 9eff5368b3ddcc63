#pragma once

#include "Foundation/Descriptor.h"

#include <sys/mman.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

/// What a fuzzer is given, as text.
inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};  // NOLINT(cppcoreguidelines-pro-type-reinterpret-cast)
}

/// Ends the fuzzer where a promise is broken, which it reports with the input that did it.
inline void require(bool isKept) {
    if (!isKept) {
        std::abort();
    }
}

/// A file in memory with this text, for what reads files. Its path is that of the descriptor.
inline Descriptor memoryFile(std::string_view text) {
    Descriptor file(memfd_create("input", MFD_CLOEXEC));
    require(file.isOpen() && write(file.number(), text.data(), text.size()) == static_cast<ssize_t>(text.size()));
    return file;
}
