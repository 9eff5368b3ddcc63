#pragma once

#include <unistd.h>
#include <utility>

/// Whether an errno means that the process or the system has run out of descriptors or memory. Such an error says
/// nothing about the file that was to be opened.
[[nodiscard]] bool isShortage(int error);

/// Owns a file descriptor of the kernel; the destructor closes it.
class Descriptor {
public:
    Descriptor() = default;

    /// Takes ownership of `number`; a negative number, as failed calls return it, means none.
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

    /// Closes the owned descriptor and takes ownership of `number`. Keeps errno.
    void reset(int number = -1);

    /// Gives up ownership of the descriptor: the caller closes it.
    [[nodiscard]] int release() { return std::exchange(m_number, -1); }

private:
    int m_number = -1;
};
