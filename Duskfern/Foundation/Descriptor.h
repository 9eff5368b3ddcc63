#pragma once

#include <unistd.h>
#include <utility>

/// Whether an errno says that the process or the system has run out of descriptors or memory, rather than anything
/// about what was to be opened.
[[nodiscard]] bool isShortage(int error);

/// Owns a file descriptor of the kernel and closes it at the end of its life.
class Descriptor {
public:
    Descriptor() = default;

    /// Takes over `number`; a negative one, as failed calls return it, stands for none.
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor() { reset(); }
    Descriptor(Descriptor&& other) noexcept : m_number(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        reset(other.release());
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] bool isOpen() const { return m_number >= 0; }

    /// The number for system calls; negative when nothing is open.
    [[nodiscard]] int number() const { return m_number; }

    /// Closes what is owned and takes over `number` instead. Keeps errno.
    void reset(int number = -1);

    /// Gives the number away: the caller closes it.
    [[nodiscard]] int release() { return std::exchange(m_number, -1); }

private:
    int m_number = -1;
};
