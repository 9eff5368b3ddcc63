#include "Desktop/DesktopEntry.h"
#include "Input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = textOf(data, size);
    for (const QString& name :
         namesInDesktopEntry(QByteArray::fromRawData(text.data(), static_cast<qsizetype>(size)))) {
        require(!name.isEmpty());
    }
    return 0;
}
