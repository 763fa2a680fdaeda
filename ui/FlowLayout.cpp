#include "ui/FlowLayout.h"

#include <algorithm>

namespace quillary {

QLayoutItem* CFlowLayout::itemAt(int index) const {
    return index >= 0 && index < count() ? m_items[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* CFlowLayout::takeAt(int index) {
    if (index < 0 || index >= count()) return nullptr;
    QLayoutItem* taken = m_items[static_cast<std::size_t>(index)].release();
    m_items.erase(m_items.begin() + index);
    return taken;
}

QSize CFlowLayout::sizeHint() const {
    QSize size;
    for (const auto& item : m_items) {
        const QSize hint = item->sizeHint();
        size = {size.width() + hint.width() + (size.isEmpty() ? 0 : spacing()), std::max(size.height(), hint.height())};
    }
    return size;
}

QSize CFlowLayout::minimumSize() const {
    QSize size;
    for (const auto& item : m_items) size = size.expandedTo(item->minimumSize());
    return size;
}

void CFlowLayout::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    Place(rect, Doing::Places);
}

int CFlowLayout::Place(const QRect& rect, Doing doing) const {
    QPoint at = rect.topLeft();
    int rowHeight = 0;
    for (const auto& item : m_items) {
        const QSize size = item->sizeHint();
        if (at.x() > rect.left() && at.x() + size.width() > rect.right() + 1) {
            at = {rect.left(), at.y() + rowHeight + spacing()};
            rowHeight = 0;
        }
        if (doing == Doing::Places) item->setGeometry({at, size});
        at.rx() += size.width() + spacing();
        rowHeight = std::max(rowHeight, size.height());
    }
    return at.y() + rowHeight - rect.top();
}

}  // namespace quillary
