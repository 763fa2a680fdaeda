#include "ui/QuillaryDialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMetaProperty>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <utility>

#include "platform/InputPanel.h"
#include "ui/DialogControl.h"
#include "ui/FrameWindow.h"
#include "ui/MessageBox.h"
#include "ui/Mnemonics.h"
#include "ui/OpenDialog.h"
#include "ui/TitleHeader.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kColumnCharacters = 80;  // a wider text is tiring to read

void SetUpScrolling(QScrollArea& scroll, QWidget& content) {
    scroll.setFrameShape(QFrame::NoFrame);
    scroll.setFocusPolicy(Qt::NoFocus);
    scroll.setWidgetResizable(true);
    scroll.setWidget(&content);
}

/// As high as its content, where there is room for it.
class ShortScrollArea : public QScrollArea {
  public:
    ShortScrollArea() { setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum); }

    [[nodiscard]] QSize sizeHint() const override {
        QSize size = widget()->sizeHint();
        if (widget()->hasHeightForWidth()) size.setHeight(widget()->heightForWidth(viewport()->width()));
        return size;
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool handled = QScrollArea::eventFilter(watched, event);
        if (event->type() == QEvent::LayoutRequest) updateGeometry();
        return handled;
    }

  protected:
    void resizeEvent(QResizeEvent* event) override {
        QScrollArea::resizeEvent(event);
        if (event->size().width() != event->oldSize().width()) updateGeometry();
    }
};

}  // namespace

CQuillaryDialog::CQuillaryDialog(const DialogInfo& info, FrameWindow& frame)
    : QDialog(frame.Window()), m_frame(frame), m_topic(info.topic), m_controls(info.controls) {
    QVBoxLayout* column = BeginScrolledColumn(info);
    QStringList labels;
    for (const ControlInfo& control : info.controls) {
        labels << (control.kind == ControlKind::Text ? QString() : FromWide(control.label));
    }
    labels = WithMnemonics(labels);
    qsizetype next = 0;
    for (const ControlInfo& control : info.controls)
        AddControl(*column, control, labels[next++], [this] { ShowHelp(); });
    EndScrolledColumn(*column, info.buttons);
}

CQuillaryDialog::CQuillaryDialog(const DialogInfo& info, QWidget& content, FrameWindow& frame)
    : QDialog(frame.Window()), m_frame(frame), m_topic(info.topic), m_controls(info.controls) {
    QVBoxLayout* column = BeginScrolledColumn(info);
    column->addWidget(&content);
    EndScrolledColumn(*column, info.buttons);
}

CQuillaryDialog::CQuillaryDialog(const DialogInfo& info, QWidget* bar, QWidget& body, FrameWindow& frame)
    : QDialog(frame.Window()), m_frame(frame), m_topic(info.topic), m_controls(info.controls) {
    SetUp(info);
    auto* top = new QWidget(this);
    QVBoxLayout* above = MakeColumn(*top);
    above->setSpacing(fontMetrics().height() / 2);
    AddHeader(*above);
    above->addSpacing(fontMetrics().height() / 2);
    QMargins margins = above->contentsMargins();
    margins.setBottom(bar ? fontMetrics().height() / 4 : fontMetrics().height() / 2);
    if (bar) above->addWidget(bar);
    above->setContentsMargins(margins);
    auto* page = static_cast<QVBoxLayout*>(layout());
    page->addWidget(top);
    const bool isShort = body.sizePolicy().verticalPolicy() == QSizePolicy::Maximum;
    page->addWidget(&body, isShort ? 0 : 1);
    auto* bottom = new QWidget(this);  // now, for the Tab key to come to it last
    QVBoxLayout* below = MakeColumn(*bottom);
    if (isShort) {
        QMargins around = below->contentsMargins();
        around.setTop(fontMetrics().height());
        below->setContentsMargins(around);
    }
    below->addWidget(MakeButtons(info.buttons));
    page->addWidget(bottom);
    if (isShort) page->addStretch(1);
    const auto* scroll = qobject_cast<QScrollArea*>(&body);
    if (!scroll || !scroll->widgetResizable()) return;
    // What scrolls gets narrower, and the rest of the page with it, so that they stand in one line.
    QScrollBar* scrollBar = scroll->verticalScrollBar();
    connect(scrollBar, &QScrollBar::rangeChanged, this, [scrollBar, top, bottom](int least, int most) {
        const int width = most > least ? scrollBar->sizeHint().width() : 0;
        for (QWidget* part : {top, bottom}) part->layout()->setContentsMargins(0, 0, width, 0);
    });
}

QVBoxLayout* CQuillaryDialog::BeginScrolledColumn(const DialogInfo& info) {
    SetUp(info);
    auto* content = new QWidget;
    QVBoxLayout* column = MakeColumn(*content);
    column->setSpacing(fontMetrics().height() / 2);
    AddHeader(*column);
    column->addSpacing(fontMetrics().height() / 2);

    // On a small screen the page scrolls; moving the focus brings its control into sight.
    auto* scroll = new QScrollArea(this);
    SetUpScrolling(*scroll, *content);
    layout()->addWidget(scroll);
    return column;
}

void CQuillaryDialog::EndScrolledColumn(QVBoxLayout& column, Buttons buttons) {
    column.addSpacing(fontMetrics().height() / 2);
    column.addWidget(MakeButtons(buttons));
    column.addStretch(1);
}

// The focus moves on while the widgets go, when this is no such dialog any more.
CQuillaryDialog::~CQuillaryDialog() { disconnect(qApp, nullptr, this, nullptr); }

void CQuillaryDialog::SetUp(const DialogInfo& info) {
    setWindowFlags(Qt::Widget);
    setObjectName(QString::number(info.id));
    setAccessibleName(FromWide(info.title));
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget*, const QWidget* now) {
        FollowFocus(now);
        if (now && isAncestorOf(now)) ScrollIntoSight(*now);
    });
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins({});
    page->setSpacing(0);
}

int CQuillaryDialog::ComfortableWidth(const QFontMetrics& metrics) {
    return kColumnCharacters * metrics.averageCharWidth();
}

QVBoxLayout* CQuillaryDialog::MakeColumn(QWidget& content) {
    auto* middle = new QHBoxLayout(&content);
    middle->setContentsMargins({});
    auto* column = new QWidget(&content);
    column->setMaximumWidth(ComfortableWidth(content.fontMetrics()));
    middle->addStretch(1);
    middle->addWidget(column, 1000);
    middle->addStretch(1);
    return new QVBoxLayout(column);
}

QWidget& CQuillaryDialog::Centered(QWidget& content) {
    auto* body = new QWidget;
    QVBoxLayout* column = MakeColumn(*body);
    column->setContentsMargins(column->contentsMargins().left(), 0, column->contentsMargins().right(), 0);
    column->addWidget(&content);
    return *body;
}

QWidget& CQuillaryDialog::Scrolled(QWidget& content) {
    auto* scroll = new QScrollArea;
    SetUpScrolling(*scroll, Centered(content));
    return *scroll;
}

QWidget& CQuillaryDialog::Short(QWidget& content) {
    auto* scroll = new ShortScrollArea;
    SetUpScrolling(*scroll, Centered(content));
    return *scroll;
}

void CQuillaryDialog::AddHeader(QVBoxLayout& column) {
    auto* header = new CTitleHeader(accessibleName());
    header->setObjectName(QString::number(kTitleHeader));
    column.addWidget(header);
}

QWidget* CQuillaryDialog::MakeButtons(Buttons buttons) {
    auto* box = new QDialogButtonBox;
    QPushButton* ok = box->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QString::number(kOkButton));
    ok->setDefault(true);
    if (buttons == Buttons::OkCancel) {
        QPushButton* cancel = box->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
        cancel->setObjectName(QString::number(kCancelButton));
    }
    if (!m_topic.empty()) {
        QPushButton* help = box->addButton(QStringLiteral("Help"), QDialogButtonBox::HelpRole);
        help->setObjectName(QString::number(kHelpButton));
        connect(box, &QDialogButtonBox::helpRequested, this, &CQuillaryDialog::ShowHelp);
    }
    // On a small screen they get as narrow as their texts.
    for (QAbstractButton* button : box->buttons()) {
        // A page is no window, in which the toolkit would give OK back what another button with the focus takes.
        static_cast<QPushButton*>(button)->setAutoDefault(false);
        button->setMinimumWidth(fontMetrics().horizontalAdvance(button->text()) + fontMetrics().height());
    }
    connect(box, &QDialogButtonBox::accepted, this, &CQuillaryDialog::accept);
    connect(box, &QDialogButtonBox::rejected, this, &CQuillaryDialog::reject);
    return box;
}

int CQuillaryDialog::exec() {
    Load();
    m_loaded = ControlValues();
    m_ends = false;
    m_frame.BeginDialog(*this);
    FocusFirst();
    const OpenDialog open(*this);
    const int result = QDialog::exec();
    FollowFocus(nullptr);
    m_frame.EndDialog(*this);
    return result;
}

// What a person sets in a control is its user property: the text, the date, whether it is checked.
QVariantList CQuillaryDialog::ControlValues() const {
    QVariantList values;
    for (const QWidget* widget : findChildren<QWidget*>()) {
        const QMetaProperty value = widget->metaObject()->userProperty();
        if (value.isValid() && widget->objectName().toInt() != 0) values << value.read(widget);
    }
    return values;
}

void CQuillaryDialog::ShowHelp() { m_frame.ShowHelp(Topic()); }

void CQuillaryDialog::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    auto* button = qobject_cast<QAbstractButton*>(focusWidget());
    const bool isPressedByReturn = qobject_cast<QPushButton*>(button) || qobject_cast<QToolButton*>(button);
    if (event->key() == Qt::Key_F1) {
        ShowHelp();
    } else if (isReturn && event->isAutoRepeat()) {
        return;  // the rest of one that was held down to come here
    } else if (isReturn && event->modifiers() & Qt::ControlModifier) {
        auto* ok = Control<QPushButton>(kOkButton);
        if (ok->isVisible()) ok->click();
    } else if (isReturn && isPressedByReturn && button->hasFocus()) {
        button->click();
    } else if (event->key() == Qt::Key_V && event->modifiers() == (Qt::ControlModifier | Qt::ShiftModifier)) {
        QKeyEvent paste(QEvent::KeyPress, Qt::Key_V, Qt::ControlModifier);
        if (QWidget* editor = focusWidget()) QCoreApplication::sendEvent(editor, &paste);
    } else {
        QDialog::keyPressEvent(event);
    }
}

// Whatever had the focus before, a bar too, the keys now belong to this page.
void CQuillaryDialog::FocusFirst() {
    QWidget* first = Control<QWidget>(kOkButton);
    for (const ControlInfo& control : m_controls) {
        auto* widget = control.id != 0 ? Control<QWidget>(control.id) : nullptr;
        if (!widget || control.kind == ControlKind::Hyperlink || widget->focusPolicy() == Qt::NoFocus) continue;
        first = widget;
        break;
    }
    first->setFocus();
}

void CQuillaryDialog::FollowFocus(const QWidget* now) {
    const bool isEditor = isVisible() && now && isAncestorOf(now) && now->testAttribute(Qt::WA_InputMethodEnabled);
    if (isEditor == m_panelShown) return;
    m_panelShown = isEditor;
    if (isEditor) {
        m_frame.Panel().Show();
    } else {
        m_frame.Panel().Hide();
    }
}

// The toolkit does so for the Tab key only, not for a label's letter.
void CQuillaryDialog::ScrollIntoSight(const QWidget& control) const {
    // Under a click it would go away before the button is let go.
    if (QGuiApplication::mouseButtons() != Qt::NoButton) return;
    for (QScrollArea* area : findChildren<QScrollArea*>()) {
        const int around = fontMetrics().height() * 3 / 2;  // its label
        if (!area->widget() || !area->widget()->isAncestorOf(&control)) continue;
        if (control.height() + 2 * around > area->viewport()->height()) continue;
        const QPoint middle = control.mapTo(area->widget(), control.rect().center());
        area->ensureVisible(middle.x(), middle.y(), control.width() / 2, control.height() / 2 + around);
    }
}

void CQuillaryDialog::RaisePanel() {
    m_panelShown = true;
    m_frame.Panel().Show();
}

void CQuillaryDialog::done(int result) {
    m_ends = true;
    QDialog::done(result);
}

// The toolkit ends the event loop of a dialog that is hidden.
void CQuillaryDialog::setVisible(bool visible) {
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): without the dialog's end
    visible || m_ends ? QDialog::setVisible(visible) : QWidget::setVisible(false);
}

void CQuillaryDialog::accept() {
    if (Commit() && (!m_store || m_store())) QDialog::accept();
}

bool CQuillaryDialog::Refuse(int control, const QString& why) {
    ShowMessage(m_frame.Window(), why);
    if (auto* edit = Control<QLineEdit>(control)) edit->selectAll();
    if (auto* widget = Control<QWidget>(control)) widget->setFocus();
    return false;
}

}  // namespace quillary
