#include "Foundation/PageBlock.h"

#include <sys/mman.h>

#include <new>

PageBlock::PageBlock(std::size_t size) : m_size(size) {
    void* const pages = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) {
        throw std::bad_alloc();
    }
    m_data = static_cast<char*>(pages);
}

PageBlock::~PageBlock() {
    if (m_data != nullptr) {
        munmap(m_data, m_size);
    }
}
