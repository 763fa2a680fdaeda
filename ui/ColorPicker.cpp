#include "ui/ColorPicker.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QRegularExpression>
#include <QRegularExpressionValidator>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <iterator>

#include "ui/RowColor.h"

namespace quillary {

namespace {

struct Hue {
    const char* name;
    int degrees;  // of the colour circle; -1 for grey
};
constexpr Hue kHues[] = {{"grey", -1},   {"red", 0},    {"orange", 30}, {"yellow", 52},
                         {"green", 120}, {"teal", 175}, {"blue", 215},  {"purple", 280}};
struct Shade {
    const char* name;
    int lightness;   // 0..255
    int saturation;  // 0..255
};
// Pale ones first: these are what stripes in a list are drawn with. The dark ones suit a dark window.
constexpr Shade kShades[] = {
    {"Pale", 240, 190}, {"Light", 222, 170}, {"Medium", 175, 140}, {"Strong", 120, 150}, {"Dark", 60, 110}};
constexpr int kColumns = std::size(kHues);
constexpr int kRows = std::size(kShades);

QColor ColorAt(int row, int column) {
    const Shade& shade = kShades[row];
    const Hue& hue = kHues[column];
    return hue.degrees < 0 ? QColor::fromHsl(0, 0, shade.lightness)
                           : QColor::fromHsl(hue.degrees, shade.saturation, shade.lightness);
}

class SwatchDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const QColor color = index.data(Qt::UserRole).value<QColor>();
        painter->save();
        painter->fillRect(option.rect.adjusted(2, 2, -2, -2), color);
        painter->setPen(Qt::gray);
        painter->drawRect(option.rect.adjusted(2, 2, -3, -3));
        if (option.state & (QStyle::State_Selected | QStyle::State_HasFocus)) {
            painter->setPen(QPen(option.palette.color(QPalette::Highlight), 2));
            painter->drawRect(option.rect.adjusted(1, 1, -1, -1));
            painter->setPen(QPen(TextColorOn(color), 1));
            painter->drawRect(option.rect.adjusted(3, 3, -4, -4));
        }
        painter->restore();
    }
};

}  // namespace

CColorPicker::CColorPicker(const QColor& color, QWidget& button, QWidget& page)
    : QFrame(&page), m_button(button), m_table(new QTableWidget(kRows, kColumns)), m_other(new QLineEdit) {
    setAttribute(Qt::WA_DeleteOnClose);
    setAutoFillBackground(true);
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setAccessibleName(QStringLiteral("Colors"));
    FillTable(color);
    connect(m_table, &QTableWidget::cellClicked, this, [this](int row, int column) { Pick(ColorAt(row, column)); });
    connect(m_table, &QTableWidget::cellActivated, this, [this](int row, int column) { Pick(ColorAt(row, column)); });

    auto* white = new QPushButton(ColorName(Qt::white));
    connect(white, &QPushButton::clicked, this, [this] { Pick(Qt::white); });
    auto* label = new QLabel(QStringLiteral("&Other:"));
    label->setBuddy(m_other);
    m_other->setAccessibleName(QStringLiteral("Other color, as #RRGGBB"));
    m_other->setText(color.name().toUpper());
    m_other->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("#?[0-9A-Fa-f]{6}")), m_other));
    connect(m_other, &QLineEdit::returnPressed, this, &CColorPicker::PickTyped);

    auto* other = new QHBoxLayout;
    other->addWidget(label);
    other->addWidget(m_other, 1);
    auto* column = new QVBoxLayout(this);
    const int gap = fontMetrics().height() / 4;
    column->setContentsMargins(gap, gap, gap, gap);
    column->setSpacing(gap);
    column->addWidget(white);
    column->addWidget(m_table);
    column->addLayout(other);
    Place();
    show();
    raise();
    color == QColor(Qt::white) ? white->setFocus() : m_table->setFocus();
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget*, const QWidget* now) {
        if (now && !isAncestorOf(now)) close();
    });
    qApp->installEventFilter(this);
}

QString CColorPicker::ColorName(const QColor& color) {
    if (color == QColor(Qt::white)) return QStringLiteral("White (none)");
    for (int row = 0; row < kRows; ++row) {
        for (int column = 0; column < kColumns; ++column) {
            if (ColorAt(row, column).rgb() != color.rgb()) continue;
            return QStringLiteral("%1 %2").arg(QLatin1String(kShades[row].name), QLatin1String(kHues[column].name));
        }
    }
    return {};
}

void CColorPicker::FillTable(const QColor& color) {
    const int side = fontMetrics().height() * 3 / 2;
    m_table->setAccessibleName(accessibleName());
    m_table->setItemDelegate(new SwatchDelegate(m_table));
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setTabKeyNavigation(false);
    m_table->setFrameShape(QFrame::NoFrame);
    m_table->setShowGrid(false);
    m_table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_table->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    for (QHeaderView* header : {m_table->horizontalHeader(), m_table->verticalHeader()}) {
        header->hide();
        header->setMinimumSectionSize(1);
        header->setDefaultSectionSize(side);
    }
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_table->setMinimumWidth(kColumns * side);
    m_table->setFixedHeight(kRows * side);
    for (int row = 0; row < kRows; ++row) {
        for (int column = 0; column < kColumns; ++column) {
            auto* item = new QTableWidgetItem;
            const QColor own = ColorAt(row, column);
            item->setData(Qt::UserRole, own);
            item->setData(Qt::AccessibleTextRole, ColorName(own));
            item->setToolTip(ColorName(own));
            m_table->setItem(row, column, item);
            if (own.rgb() == color.rgb()) m_table->setCurrentItem(item);
        }
    }
    if (!m_table->currentItem()) m_table->setCurrentCell(0, 0, QItemSelectionModel::NoUpdate);
}

void CColorPicker::Place() {
    const QWidget& page = *parentWidget();
    resize(sizeHint().boundedTo(page.size()));
    const auto within = [](int wanted, int size, int room) { return std::clamp(wanted, 0, std::max(0, room - size)); };
    QPoint place = m_button.mapTo(&page, QPoint(0, m_button.height()));
    if (place.y() + height() > page.height()) place.ry() -= m_button.height() + height();
    move(within(place.x(), width(), page.width()), within(place.y(), height(), page.height()));
}

// What nobody in here wants is not for the page: Return would be its OK.
void CColorPicker::keyPressEvent(QKeyEvent* event) {
    auto* button = qobject_cast<QPushButton*>(QApplication::focusWidget());
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape) Leave();
    if (isReturn && button && isAncestorOf(button)) button->click();
    event->accept();
}

// A click between its parts is none on the page.
void CColorPicker::mousePressEvent(QMouseEvent* event) { event->accept(); }

bool CColorPicker::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress) {
        const auto* clicked = qobject_cast<QWidget*>(watched);
        if (clicked && clicked != this && !isAncestorOf(clicked)) Leave();
    }
    return false;
}

void CColorPicker::Leave() {
    m_button.setFocus();
    close();
}

void CColorPicker::Pick(const QColor& color) {
    if (isHidden()) return;  // a click can be an activation too
    Leave();
    onPicked(color);
}

void CColorPicker::PickTyped() {
    QString typed = m_other->text();
    if (!typed.startsWith(u'#')) typed.prepend(u'#');
    Pick(QColor(typed));
}

}  // namespace quillary
