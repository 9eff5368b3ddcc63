#pragma once

#include "Foundation/NameFolding.h"

/// What a search for one text is meant to find, one name after the other.
class NameMatcher {
public:
    NameMatcher(const NameFolding& folding, const QString& text) : m_folding(folding), m_text(folding.foldText(text)) {}

    /// Whether the name, given as bytes, contains the text. Every name contains the empty text.
    [[nodiscard]] bool matches(std::string_view name) {
        m_name.clear();
        m_folding.fold(name, m_name);
        return m_text && m_name.find(*m_text) != std::string::npos;
    }

private:
    NameFolding m_folding;
    std::optional<std::string> m_text;
    std::string m_name;
};
