#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>

/// Lets a set of strings be searched with a string view.
struct StringHash {
    using is_transparent = void;
    size_t operator()(std::string_view name) const noexcept { return std::hash<std::string_view>{}(name); }
};

/// A set of names of entries of one folder.
class NameSet {
public:
    void insert(std::string_view name) { m_names.emplace(name); }
    [[nodiscard]] bool contains(std::string_view name) const { return m_names.contains(name); }

    /// Adds the names of `other`.
    const NameSet& merge(const NameSet& other) {
        m_names.insert(other.m_names.begin(), other.m_names.end());
        return *this;
    }

private:
    std::unordered_set<std::string, StringHash, std::equal_to<>> m_names;
};
