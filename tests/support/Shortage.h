#pragma once

/// While it lives, no thread can be started in this process.
class NoThreads {
public:
    NoThreads();
    ~NoThreads();
    NoThreads(const NoThreads&) = delete;
    NoThreads& operator=(const NoThreads&) = delete;
};

/// While it lives, this process gets no more than that much memory beyond what it has now.
class LittleMemory {
public:
    explicit LittleMemory(unsigned long bytes);
    ~LittleMemory();
    LittleMemory(const LittleMemory&) = delete;
    LittleMemory& operator=(const LittleMemory&) = delete;

private:
    unsigned long m_before = 0;
};

/// While it lives, this process can open no more than `count` descriptors beyond those that are open now.
class FewDescriptors {
public:
    explicit FewDescriptors(int count);
    ~FewDescriptors();
    FewDescriptors(const FewDescriptors&) = delete;
    FewDescriptors& operator=(const FewDescriptors&) = delete;

private:
    unsigned long m_before = 0;
};
