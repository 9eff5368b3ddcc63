#include "Foundation/Formatters.h"

namespace Formatters {

const ByteCountFormatter& bytes() {
    static const ByteCountFormatter formatter{QLocale()};
    return formatter;
}

QString size(std::int64_t count) {
    return bytes().string(count);
}

QString grouped(std::int64_t number) {
    return bytes().grouped(magnitude(number));
}

}  // namespace Formatters
