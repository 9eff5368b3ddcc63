#include "Desktop/DesktopEntry.h"
#include "Input.h"
#include "JunkCleaner/InstalledAppTokens.h"

void use(std::string_view text) {
    InstalledNames names;
    for (const QString& name : namesInDesktopEntry(bytesOf(text))) {
        require(name.size() <= static_cast<qsizetype>(text.size()));
        names.programs.push_back(name);
    }
    // Whatever an entry says, it claims no folder that bears none of its names.
    require(InstalledAppTokens(names).isOrphaned(QStringLiteral("Ω7Ω7Ω7Ω7Ω7Ω7Ω7Ω7")) || text.size() > 15);
}
