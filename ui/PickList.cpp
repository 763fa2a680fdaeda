#include "ui/PickList.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollArea>
#include <QStyledItemDelegate>
#include <algorithm>

#include "ui/CheckImage.h"

namespace quillary {

namespace {

constexpr int kFewestRows = 4;  // that a small screen shows
constexpr int kUsualRows = 8;
constexpr int kGap = 4;  // pixels around the check box and the place
constexpr int kCheckWidth = kCheckImageSize + 2 * kGap;

class PickDelegate : public QStyledItemDelegate {
  public:
    explicit PickDelegate(CPickList& list) : QStyledItemDelegate(&list), m_list(list) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        QRect check = option.rect;
        check.setWidth(kCheckWidth);
        const QString place = Place(index.row());
        const int placeWidth = place.isEmpty() ? 0 : option.fontMetrics.horizontalAdvance(place) + 2 * kGap;
        QRect placeRect = option.rect;
        placeRect.setLeft(option.rect.right() - placeWidth + 1);
        QStyleOptionViewItem entry = option;
        entry.rect.adjust(kCheckWidth, 0, -placeWidth, 0);
        const bool isPicked = option.state.testFlag(QStyle::State_Selected);
        entry.state.setFlag(QStyle::State_Selected, false);  // the check box says so
        QStyledItemDelegate::paint(painter, entry, index);
        PaintCheckImage(*painter, CheckImageRect(check), isPicked, option.palette.color(QPalette::Text));
        painter->setPen(option.palette.color(QPalette::PlaceholderText));
        painter->drawText(placeRect, Qt::AlignCenter, place);
    }

    // High enough for a finger.
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, option.fontMetrics.height() / 2);
    }

  private:
    [[nodiscard]] QString Place(int row) const {
        const std::vector<int>& picked = m_list.Picked();
        const auto found = std::find(picked.begin(), picked.end(), row);
        if (picked.size() < 2 || found == picked.end()) return {};
        return QString::number(found - picked.begin() + 1);
    }

    CPickList& m_list;
};

}  // namespace

CPickList::CPickList(QWidget* parent) : QListWidget(parent) {
    setSelectionMode(MultiSelection);
    setItemDelegate(new PickDelegate(*this));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setTextElideMode(Qt::ElideRight);
    setUniformItemSizes(true);
}

QSize CPickList::HeightOf(int rows) const {
    const int row = count() > 0 ? sizeHintForRow(0) : fontMetrics().height();
    return {fontMetrics().averageCharWidth() * 12, rows * row + 2 * frameWidth()};
}

QSize CPickList::minimumSizeHint() const { return HeightOf(std::clamp(count(), 1, kFewestRows)); }

QSize CPickList::sizeHint() const { return HeightOf(std::max(count(), kUsualRows)); }

void CPickList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QListWidget::currentChanged(current, previous);
    if (!hasFocus()) return;
    for (QWidget* outer = parentWidget(); outer; outer = outer->parentWidget()) {
        auto* page = qobject_cast<QScrollArea*>(outer);
        if (!page) continue;
        const QRect row = visualRect(current);
        const QPoint middle = viewport()->mapTo(page->widget(), row.center());
        page->ensureVisible(middle.x(), middle.y(), 0, row.height());
    }
}

// The second of two quick clicks is a click too.
void CPickList::mouseDoubleClickEvent(QMouseEvent* event) {
    QMouseEvent press(QEvent::MouseButtonPress, event->position(), event->globalPosition(), event->button(),
                      event->buttons(), event->modifiers(), event->pointingDevice());
    mousePressEvent(&press);
}

QItemSelectionModel::SelectionFlags CPickList::selectionCommand(const QModelIndex& index, const QEvent* event) const {
    // To go to an entry, as by typing its first letter, is not to pick it.
    if (!event) return QItemSelectionModel::NoUpdate;
    if (event->type() == QEvent::MouseButtonPress &&
        static_cast<const QMouseEvent*>(event)->modifiers().testFlag(Qt::ShiftModifier)) {
        return QItemSelectionModel::SelectCurrent;
    }
    return QListWidget::selectionCommand(index, event);
}

void CPickList::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QListWidget::selectionChanged(selected, deselected);
    const auto isLetGo = [this](int row) { return !item(row) || !item(row)->isSelected(); };
    m_picked.erase(std::remove_if(m_picked.begin(), m_picked.end(), isLetGo), m_picked.end());
    for (int row = 0; row < count(); ++row) {
        if (!isLetGo(row) && std::find(m_picked.begin(), m_picked.end(), row) == m_picked.end()) {
            m_picked.push_back(row);
        }
    }
    viewport()->update();  // the places of the others
}

}  // namespace quillary
