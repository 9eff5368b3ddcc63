#include "Foundation/NameMatcher.h"

bool NameMatcher::matches(std::string_view name) {
    if (!m_text) {
        return false;
    }
    m_name.clear();
    m_folding.fold(name, m_name);
    return m_name.find(*m_text) != std::string::npos;
}
