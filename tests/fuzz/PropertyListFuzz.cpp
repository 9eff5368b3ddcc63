#include "Desktop/PropertyList.h"
#include "Input.h"

// The name is libFuzzer's.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = textOf(data, size);
    static_cast<void>(bundleIdentifier(QByteArray::fromRawData(text.data(), static_cast<qsizetype>(size))));
    return 0;
}
