#include "views/TypedSearch.h"

#include <QGuiApplication>
#include <QStyleHints>
#include <algorithm>

#include "query/FindBeginning.h"
#include "ui/WideText.h"

namespace quillary {

bool CTypedSearch::IsUnderWay() const {
    return m_sinceLast.isValid() && m_sinceLast.elapsed() < QGuiApplication::styleHints()->keyboardInputInterval();
}

std::optional<int> CTypedSearch::Type(const QString& letters, int currentRow) {
    if (!IsUnderWay()) m_typed.clear();
    m_sinceLast.start();
    const bool isFirst = m_typed.isEmpty();
    m_typed += letters;
    const auto find = [this](const QString& text, int row) {
        return FindBeginning(m_doc, ToWide(text), static_cast<std::size_t>(row));
    };
    // The row that the letters before have led to may go on with this one.
    auto found = find(m_typed, isFirst ? currentRow + 1 : std::max(currentRow, 0));
    const bool isOneLetter = m_typed.count(m_typed.front(), Qt::CaseInsensitive) == m_typed.size();
    // The same letter again and again goes through the rows that begin with it.
    if (!found && isOneLetter) found = find(m_typed.left(1), currentRow + 1);
    if (!found) return std::nullopt;
    return static_cast<int>(*found);
}

}  // namespace quillary
