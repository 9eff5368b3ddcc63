#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QString>

#include <functional>
#include <optional>
#include <string>

/// Finds rows of a list by the beginning of their name, as it is typed. After a pause of a second a new name begins;
/// the same letter again goes to the next name that begins with it.
class TypeAhead {
public:
    /// The name of a row: UTF-8, or the bytes of a file name.
    using NameAt = std::function<std::string(int row)>;

    /// The row of `count` that fits what was typed, from the row `current` on and round the end; -1 if none does.
    /// Nothing if `text`, which a key gave, is no beginning of a name. `current` is -1 without a current row.
    [[nodiscard]] std::optional<int> type(const QString& text, int current, int count, const NameAt& nameAt);

    /// Forgets what was typed.
    void reset() { m_typed.clear(); }

private:
    QString m_typed;
    QElapsedTimer m_since;
};
