#include "admin/FieldDefinitionsDlg.h"

#include <QToolBar>
#include <utility>

#include "admin/FieldNames.h"
#include "admin/FieldTypeDlg.h"
#include "db/AnsiText.h"
#include "ui/CommandIds.h"
#include "ui/FrameWindow.h"
#include "ui/HelpTopics.h"
#include "ui/MessageBox.h"
#include "ui/RowListView.h"
#include "ui/ToolBars.h"
#include "ui/WaitCursor.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kFields = 1017;
constexpr DialogInfo kDialog{136, u"Field Definitions", {}, kTopicFieldDefinitions};

constexpr int kTypeColumn = 1;

QString TypeText(FieldType type) { return FromUtf8(InfoOf(type).name) + QStringLiteral("..."); }

CRowListView::Row RowOf(const FieldEdit& edit, std::size_t index, const AnsiText& page) {
    const Field& field = edit.definition.field;
    return {{FromWide(page.ToWide(field.name)), TypeText(field.type)}, QVariant::fromValue(index)};
}

QString Counted(std::size_t count, const QString& one, const QString& many) {
    return count == 1 ? one : many.arg(static_cast<qulonglong>(count));
}

bool MayLose(const PreparedSchema& prepared, QWidget* window) {
    QStringList losses;
    if (prepared.emptied > 0) {
        losses << Counted(prepared.emptied, QStringLiteral("1 value cannot be converted and will be left empty."),
                          QStringLiteral("%L1 values cannot be converted and will be left empty."));
    }
    if (prepared.unchecked > 0) {
        losses << Counted(prepared.unchecked, QStringLiteral("1 value is neither yes nor no and becomes a no."),
                          QStringLiteral("%L1 values are neither yes nor no and become a no."));
    }
    if (losses.isEmpty()) return true;
    losses << QStringLiteral("Change the fields all the same?");
    const QStringList answers = {QStringLiteral("Change"), QStringLiteral("Cancel")};
    return AskUser(window, losses.join(u' '), answers, 1) == 0;
}

}  // namespace

std::span<const CommandEntry<CFieldDefinitionsDlg>> CFieldDefinitionsDlg::Commands() {
    using Dlg = CFieldDefinitionsDlg;
    static constexpr CommandEntry<Dlg> kCommands[] = {
        {ID_FIELD_INSERT, &Dlg::OnInsert},
        {ID_FIELD_REMOVE, &Dlg::OnRemove, &Dlg::UpdateSelected},
        {ID_FIELD_UP, &Dlg::OnMoveUp, &Dlg::UpdateSelected},
        {ID_FIELD_DOWN, &Dlg::OnMoveDown, &Dlg::UpdateSelected},
    };
    return kCommands;
}

CFieldDefinitionsDlg::CFieldDefinitionsDlg(std::vector<FieldEdit> fields, bool hasRecords, const AnsiText& page,
                                           Take take, FrameWindow& frame)
    : CFieldDefinitionsDlg(std::move(fields), hasRecords, page, std::move(take), frame, new QToolBar,
                           new CRowListView({QStringLiteral("Name"), QStringLiteral("Type")},
                                            QStringLiteral("Name of the field"), CRowListView::Tap::EditsName)) {}

CFieldDefinitionsDlg::CFieldDefinitionsDlg(std::vector<FieldEdit> fields, bool hasRecords, const AnsiText& page,
                                           Take take, FrameWindow& frame, QToolBar* bar, CRowListView* list)
    : CQuillaryDialog(kDialog, bar, Centered(*list), frame),
      m_edits(std::move(fields)),
      m_hasRecords(hasRecords),
      m_page(page),
      m_take(std::move(take)),
      m_list(list),
      m_actions(
          *this, {}, [this](int command) { RunCommand(command); },
          [this](int command, CommandState& state) { UpdateCommand(command, state); }) {
    list->setObjectName(QString::number(kFields));
    list->setAccessibleName(QStringLiteral("Fields"));
    list->SetHint(QStringLiteral("No fields yet. Insert Field (Insert) adds one."));
    list->onSelection = [this] { m_actions.UpdateStates(); };
    list->onInsert = [this] { OnInsert(); };
    list->onOpen = [this](int row) { OpenType(row); };
    m_actions.FillDialogBar(*bar, kToolBarFieldDefinitions);
}

const FieldEdit& CFieldDefinitionsDlg::EditOf(int row) const {
    return m_edits[m_list->Value(row).value<std::size_t>()];
}

FieldEdit& CFieldDefinitionsDlg::EditOf(int row) { return m_edits[m_list->Value(row).value<std::size_t>()]; }

void CFieldDefinitionsDlg::Load() {
    if (m_edits.empty()) m_edits.emplace_back();
    for (std::size_t i = 0; i < m_edits.size(); ++i) m_list->Append(RowOf(m_edits[i], i, m_page));
    m_list->Select(0);
    m_loadedState = State();
}

void CFieldDefinitionsDlg::FocusFirst() {
    m_list->setFocus();
    if (m_list->Text(0).isEmpty()) m_list->EditName(0);
}

QStringList CFieldDefinitionsDlg::State() const {
    QStringList state;
    for (int row = 0; row < m_list->RowCount(); ++row) {
        const FieldEdit& edit = EditOf(row);
        const Field& field = edit.definition.field;
        state << m_list->Value(row).toString() << m_list->Text(row)
              << QString::fromLatin1(QByteArray::fromStdString(EncodeFieldType(field.type, field.options)))
              << QString::number(static_cast<int>(edit.definition.convertFrom));
    }
    return state;
}

bool CFieldDefinitionsDlg::IsChanged() const { return State() != m_loadedState || m_list->IsEditingAnother(); }

// ---- Commands

void CFieldDefinitionsDlg::OnInsert() {
    if (m_list->RowCount() >= static_cast<int>(kMaxFields)) {
        ShowMessage(Frame().Window(), FromUtf8(MessageText(Message::TooManyFields)));
        return;
    }
    m_edits.emplace_back();
    m_list->Insert(RowOf(m_edits.back(), m_edits.size() - 1, m_page));
}

void CFieldDefinitionsDlg::OnRemove() { m_list->RemoveSelected(); }

void CFieldDefinitionsDlg::OnMoveUp() { m_list->MoveSelected(-1); }

void CFieldDefinitionsDlg::OnMoveDown() { m_list->MoveSelected(1); }

void CFieldDefinitionsDlg::UpdateSelected(CommandState& state) const { state.Enable(m_list->SelectedRow() >= 0); }

void CFieldDefinitionsDlg::OpenType(int row) {
    FieldEdit& edit = EditOf(row);
    const bool converts = m_hasRecords && edit.definition.from;
    if (RunFieldType(edit, converts, m_page, Frame())) {
        m_list->SetText(row, kTypeColumn, TypeText(edit.definition.field.type));
    }
    m_list->setFocus();
}

// ---- OK

std::optional<std::string> CFieldDefinitionsDlg::StoredName(int row, Failure& failure) const {
    const std::string& former = EditOf(row).definition.field.name;
    const QString name = m_list->Text(row);
    auto stored = StoredFieldName(ToWide(name), m_page, failure);
    const bool isFormer = !former.empty() && name == FromWide(m_page.ToWide(former));
    // What a file brought along stays, even where nobody could type it.
    return isFormer && failure.message != Message::BlankFieldName ? former : stored;
}

bool CFieldDefinitionsDlg::Commit() {
    m_list->FinishEditing();
    if (m_list->RowCount() == 0) {
        ShowMessage(Frame().Window(), FromUtf8(MessageText(Message::NoColumns)));
        m_list->setFocus();
        return false;
    }
    std::vector<FieldDefinition> definitions;
    for (int row = 0; row < m_list->RowCount(); ++row) {
        Failure failure;
        auto name = StoredName(row, failure);
        if (!name) {
            m_list->Select(row);
            ShowMessage(Frame().Window(), FromUtf8(failure.text));
            m_list->EditName(row);
            return false;
        }
        definitions.push_back(Settled(EditOf(row)));
        definitions.back().field.name = std::move(*name);
    }
    if (m_take(std::move(definitions))) return true;
    m_list->setFocus();
    return false;
}

void RunFieldDefinitions(const CQuillaryDoc& doc, int century, FrameWindow& frame,
                         const std::function<bool(PreparedSchema)>& store) {
    std::vector<FieldEdit> fields;
    for (FieldDefinition& definition : DefinitionsOf(doc)) {
        fields.push_back({definition, false, definition.field});
    }
    const auto take = [&](std::vector<FieldDefinition> definitions) {
        Failure failure;
        std::optional<PreparedSchema> schema;
        {
            const WaitCursor wait;
            schema = PrepareSchema(doc, std::move(definitions), century, failure);
        }
        if (!schema) ShowMessage(frame.Window(), FromUtf8(failure.text));
        return schema && MayLose(*schema, frame.Window()) && store(std::move(*schema));
    };
    CFieldDefinitionsDlg dialog(std::move(fields), doc.RecordCount() > 0, doc.Page(), take, frame);
    dialog.exec();
}

std::optional<std::vector<Field>> RunFieldDefinitions(std::vector<Field> fields, const AnsiText& page,
                                                      FrameWindow& frame) {
    std::vector<FieldEdit> edits;
    edits.reserve(fields.size());
    for (Field& field : fields) edits.push_back({{std::move(field), std::nullopt}});
    fields.clear();
    const auto take = [&](std::vector<FieldDefinition> definitions) {
        for (FieldDefinition& definition : definitions) fields.push_back(std::move(definition.field));
        return true;
    };
    CFieldDefinitionsDlg dialog(std::move(edits), false, page, take, frame);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return fields;
}

}  // namespace quillary
