#include "Foundation/Descriptor.h"

#include <cerrno>

bool isShortage(int error) {
    return error == EMFILE || error == ENFILE || error == ENOMEM;
}

void Descriptor::reset(int number) {
    const int old = std::exchange(m_number, number);
    if (old >= 0) {
        const int error = errno;
        close(old);
        errno = error;
    }
}
