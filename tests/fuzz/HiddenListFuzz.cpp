#include "Foundation/HiddenList.h"
#include "Input.h"

#include <fcntl.h>
#include <QtCore/QTemporaryDir>

void use(std::string_view text) {
    static const QTemporaryDir place;
    static const Descriptor folder(open(qPrintable(place.path()), O_PATH | O_DIRECTORY | O_CLOEXEC));
    {
        const Descriptor file(openat(folder.number(), ".hidden", O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, 0600));
        require(write(file.number(), text.data(), text.size()) == static_cast<ssize_t>(text.size()));
    }
    const NameSet names = hiddenNames(folder.number());
    const std::string_view first = text.substr(0, text.find('\n'));
    require(!names.contains("") && (first.empty() || names.contains(first)));
}
