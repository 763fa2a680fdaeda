#include "query/SortKeysPage.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

#include "query/FieldChoice.h"
#include "ui/Mnemonics.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kPage = 180;
constexpr int kNone = 0;  // the first entry of each list

struct RowInfo {
    int label;  // 0: has no number
    int field;
    int ascending;
    int descending;
    std::u16string_view text;
};
constexpr RowInfo kRows[] = {
    {0, 1002, 1007, 1008, u"Primary:"},
    {1050, 1003, 1009, 1010, u"Secondary:"},
    {1051, 1004, 1011, 1012, u"Tertiary:"},
};

QRadioButton* AddDirection(QBoxLayout& pair, int id, const QString& text, const QString& row) {
    auto* button = new QRadioButton(text);
    button->setObjectName(QString::number(id));
    button->setAccessibleName(row + u' ' + text);  // there is one in each row
    pair.addWidget(button);
    return button;
}

void KeepPlaceWhenHidden(QWidget& widget, bool keeps) {
    QSizePolicy policy = widget.sizePolicy();
    policy.setRetainSizeWhenHidden(keeps);
    widget.setSizePolicy(policy);
}

}  // namespace

CSortKeysPage::CSortKeysPage(const CQuillaryDoc& doc) : m_doc(doc), m_rows() {
    static_assert(std::size(kRows) == std::tuple_size_v<decltype(m_rows)>);
    setObjectName(QString::number(kPage));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(fontMetrics().height() * 3 / 4);
    QStringList labels;
    for (const RowInfo& info : kRows) labels << FromWide(info.text);
    labels = WithMnemonics(labels);
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        m_rows[i] = AddRow(i, labels[static_cast<qsizetype>(i)]);
        column->addWidget(m_rows[i].box);
        // More keys than fields make no sense.
        m_rows[i].box->setVisible(i < std::max<std::size_t>(doc.FieldCount(), 1));
    }
}

CSortKeysPage::Row CSortKeysPage::AddRow(std::size_t number, const QString& label) {
    const RowInfo& info = kRows[number];
    const QString name = FromWide(info.text);
    Row row{new QWidget(this),
            new QBoxLayout(QBoxLayout::LeftToRight),
            new QComboBox,
            new QWidget,
            nullptr,
            nullptr,
            nullptr};
    auto* column = new QVBoxLayout(row.box);
    column->setContentsMargins({});
    column->setSpacing(fontMetrics().height() / 4);
    auto* text = new QLabel(label);
    if (info.label != 0) text->setObjectName(QString::number(info.label));
    text->setBuddy(row.field);
    column->addWidget(text);

    row.field->setObjectName(QString::number(info.field));
    row.field->setAccessibleName(name);
    row.field->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    row.field->addItem(QStringLiteral("(None)"));
    for (std::size_t k = 0; k < m_doc.FieldCount(); ++k) {
        row.field->addItem(OnOneLine(FromWide(m_doc.FieldName(k))), static_cast<int>(k));
    }
    row.field->setMaxVisibleItems(row.field->count());
    row.line->setSpacing(fontMetrics().height() / 4);
    row.line->addWidget(row.field, 1);
    row.line->addWidget(row.direction);
    column->addLayout(row.line);

    row.pair = new QBoxLayout(QBoxLayout::LeftToRight, row.direction);
    row.pair->setContentsMargins({});
    row.pair->setSpacing(0);  // each has some room behind its text
    row.ascending = AddDirection(*row.pair, info.ascending, QStringLiteral("Ascending"), name);
    row.descending = AddDirection(*row.pair, info.descending, QStringLiteral("Descending"), name);
    row.pair->addStretch(1);
    row.ascending->setChecked(true);
    ShowDirection(row);
    connect(row.field, &QComboBox::currentIndexChanged, this, [row] { ShowDirection(row); });
    return row;
}

bool CSortKeysPage::HasField(const Row& row) { return row.field->currentIndex() > kNone; }

void CSortKeysPage::ShowDirection(const Row& row) { row.direction->setVisible(HasField(row)); }

QSize CSortKeysPage::minimumSizeHint() const {
    return {m_rows.front().descending->sizeHint().width(), QWidget::minimumSizeHint().height()};
}

void CSortKeysPage::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    for (const Row& row : m_rows) {
        const int besideEachOther = row.ascending->sizeHint().width() + row.descending->sizeHint().width();
        const bool isWide = width() >= 2 * besideEachOther;
        row.line->setDirection(isWide ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
        row.pair->setDirection(width() >= besideEachOther ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
        // Beside the list its place stays free, so that nothing jumps; below it the room is needed.
        KeepPlaceWhenHidden(*row.direction, isWide);
    }
}

void CSortKeysPage::Load(const SortSettings& keys) {
    for (std::size_t i = 0; i < std::min(keys.size(), m_rows.size()); ++i) {
        const auto field = ChosenField(m_doc, keys[i].field);
        m_rows[i].field->setCurrentIndex(field ? static_cast<int>(*field) + 1 : kNone);
        (keys[i].descending ? m_rows[i].descending : m_rows[i].ascending)->setChecked(true);
    }
}

SortSettings CSortKeysPage::Keys() const {
    SortSettings keys;
    for (const Row& row : m_rows) {
        if (!HasField(row)) continue;
        const auto field = static_cast<std::size_t>(row.field->currentData().toInt());
        keys.push_back({m_doc.Fields()[field].name, row.descending->isChecked()});
    }
    return keys;
}

void CSortKeysPage::FocusFirst() { m_rows.front().field->setFocus(); }

}  // namespace quillary
