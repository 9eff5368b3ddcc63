#include "Desktop/DesktopEntry.h"
#include "Input.h"
#include "JunkCleaner/InstalledAppTokens.h"

// The name is libFuzzer's.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = textOf(data, size);
    InstalledNames names;
    for (const QString& name :
         namesInDesktopEntry(QByteArray::fromRawData(text.data(), static_cast<qsizetype>(size)))) {
        require(name.size() <= static_cast<qsizetype>(size));
        names.programs.push_back(name);
    }
    // Whatever an entry says, it claims no folder that bears none of its names.
    require(InstalledAppTokens(names).isOrphaned(QStringLiteral("Ω7Ω7Ω7Ω7Ω7Ω7Ω7Ω7")) || size > 15);
    return 0;
}
