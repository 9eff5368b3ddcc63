#pragma once

/// While it lives, no thread can be started in this process.
class NoThreads {
public:
    NoThreads();
    ~NoThreads();
    NoThreads(const NoThreads&) = delete;
    NoThreads& operator=(const NoThreads&) = delete;
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
