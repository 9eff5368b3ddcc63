#pragma once

#include "Foundation/Descriptor.h"

#include <sys/mman.h>
#include <QtCore/QByteArray>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

/// What each fuzzer does with the bytes that it is given.
void use(std::string_view text);

// The name is libFuzzer's.
// NOLINTNEXTLINE(readability-identifier-naming,misc-definitions-in-headers): each fuzzer has one source
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    use({reinterpret_cast<const char*>(data), size});  // NOLINT(cppcoreguidelines-pro-type-reinterpret-cast)
    return 0;
}

inline QByteArray bytesOf(std::string_view text) {
    return QByteArray::fromRawData(text.data(), static_cast<qsizetype>(text.size()));
}

/// Ends the fuzzer where a promise is broken, which it reports with the input that did it.
inline void require(bool isKept) {
    if (!isKept) {
        std::abort();
    }
}

/// A file in memory with this text, for what reads files, and its path.
struct MemoryFile {
    explicit MemoryFile(std::string_view text) : file(memfd_create("input", MFD_CLOEXEC)) {
        require(write(file.number(), text.data(), text.size()) == static_cast<ssize_t>(text.size()));
    }

    Descriptor file;
    std::string path = "/proc/self/fd/" + std::to_string(file.number());
};
