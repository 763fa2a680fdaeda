#include "admin/ListItemsEditor.h"

#include <QMenu>
#include <QShortcut>
#include <QToolBar>
#include <QVBoxLayout>

#include "admin/FieldNames.h"
#include "db/AnsiText.h"
#include "ui/CommandIds.h"
#include "ui/Mnemonics.h"
#include "ui/RowListView.h"
#include "ui/ToolBars.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kItems = 1004;

}  // namespace

std::span<const CommandEntry<CListItemsEditor>> CListItemsEditor::Commands() {
    using Editor = CListItemsEditor;
    static constexpr CommandEntry<Editor> kCommands[] = {
        {ID_ITEM_ADD, &Editor::OnAdd},
        {ID_ITEM_DELETE, &Editor::OnDelete, &Editor::UpdateSelected},
        {ID_ITEM_UP, &Editor::OnMoveUp, &Editor::UpdateSelected},
        {ID_ITEM_DOWN, &Editor::OnMoveDown, &Editor::UpdateSelected},
        {ID_ITEM_RENAME, &Editor::OnRename, &Editor::UpdateSelected},
    };
    return kCommands;
}

CListItemsEditor::CListItemsEditor(const AnsiText& page)
    : m_page(page),
      m_list(new CRowListView({}, QStringLiteral("Item"), CRowListView::Tap::Selects)),
      m_actions(
          *this, {}, [this](int command) { RunCommand(command); },
          [this](int command, CommandState& state) { UpdateCommand(command, state); }),
      m_menu(new QMenu(this)) {
    auto* bar = new QToolBar;
    m_actions.FillDialogBar(*bar, kToolBarListItems);
    m_list->setObjectName(QString::number(kItems));
    m_list->setAccessibleName(QStringLiteral("Items"));
    m_list->SetHint(QStringLiteral("No items yet. Add (Insert) adds one."));
    m_list->setMinimumHeight(5 * fontMetrics().height());
    m_list->onSelection = [this] { m_actions.UpdateStates(); };
    m_list->onInsert = [this] { OnAdd(); };
    // From the choice of the type, too, where one is when the list is still empty.
    auto* insert = new QShortcut(Qt::Key_Insert, this);
    insert->setAutoRepeat(false);
    connect(insert, &QShortcut::activated, this, [this] {
        m_list->FinishEditing();
        OnAdd();
    });
    m_list->onMenu = [this](const QPoint& global) { m_menu->popup(global); };
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(fontMetrics().height() / 4);
    column->addWidget(bar);
    column->addWidget(m_list);
    BuildMenu();
    m_actions.UpdateStates();
}

void CListItemsEditor::BuildMenu() {
    const struct {
        QString text;
        QKeySequence key;
        int command;
    } kItems[] = {
        {QStringLiteral("Rename"), Qt::Key_F2, ID_ITEM_RENAME},
        {QStringLiteral("Delete"), QKeySequence::Delete, ID_ITEM_DELETE},
        {QStringLiteral("Move Up"), Qt::ALT | Qt::Key_Up, ID_ITEM_UP},
        {QStringLiteral("Move Down"), Qt::ALT | Qt::Key_Down, ID_ITEM_DOWN},
    };
    QStringList texts;
    for (const auto& item : kItems) texts << item.text;
    texts = WithMnemonics(texts);
    for (const auto& item : kItems) {
        QAction* action =
            m_menu->addAction(texts.takeFirst(), this, [this, command = item.command] { RunCommand(command); });
        // Shown; the list itself takes the keys.
        action->setShortcut(item.key);
        action->setShortcutContext(Qt::WidgetShortcut);
    }
}

void CListItemsEditor::SetItems(const std::vector<std::string>& items) {
    for (const std::string& item : items) {
        const QString text = FromWide(m_page.ToWide(item));
        m_list->Append({{text}, QByteArray::fromStdString(item)});
        m_given << text;
    }
    if (!items.empty()) m_list->Select(0);
}

bool CListItemsEditor::IsChanged() const {
    QStringList shown;
    for (int row = 0; row < m_list->RowCount(); ++row) shown << m_list->Text(row);
    return shown != m_given || m_list->IsEditingAnother();
}

std::optional<std::vector<std::string>> CListItemsEditor::Items(Failure& failure, int& row) {
    m_list->FinishEditing();
    std::vector<std::string> items;
    for (row = 0; row < m_list->RowCount(); ++row) {
        const QString text = m_list->Text(row);
        const QVariant given = m_list->Value(row);
        auto stored = std::optional(given.toByteArray().toStdString());
        const bool isAsGiven = given.isValid() && text == FromWide(m_page.ToWide(*stored));
        if (!isAsGiven) stored = StoredListItem(ToWide(text), m_page, failure);
        if (!stored) return std::nullopt;
        items.push_back(std::move(*stored));
    }
    return items;
}

void CListItemsEditor::EditItem(int row) { m_list->EditName(row); }

void CListItemsEditor::OnAdd() { m_list->Insert({{QStringLiteral("Item")}, {}}); }

void CListItemsEditor::OnDelete() { m_list->RemoveSelected(); }

void CListItemsEditor::OnMoveUp() { m_list->MoveSelected(-1); }

void CListItemsEditor::OnMoveDown() { m_list->MoveSelected(1); }

void CListItemsEditor::OnRename() {
    if (m_list->SelectedRow() >= 0) m_list->EditName(m_list->SelectedRow());
}

void CListItemsEditor::UpdateSelected(CommandState& state) const { state.Enable(m_list->SelectedRow() >= 0); }

}  // namespace quillary
