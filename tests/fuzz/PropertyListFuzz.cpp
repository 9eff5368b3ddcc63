#include "Desktop/PropertyList.h"
#include "Input.h"

void use(std::string_view text) {
    static_cast<void>(bundleIdentifier(bytesOf(text)));
}
