#pragma once

#include "Foundation/NameFolding.h"

/// Searches names for one text.
class NameMatcher {
public:
    NameMatcher(const NameFolding& folding, const QString& text) : m_folding(folding), m_text(folding.foldText(text)) {}

    /// Whether the name, given as bytes, contains the text. Every name contains the empty text.
    [[nodiscard]] bool matches(std::string_view name);

private:
    NameFolding m_folding;
    std::optional<std::string> m_text;
    std::string m_name;
};
