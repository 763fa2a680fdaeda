#include "admin/CreateDatabaseDlg.h"

#include <QLabel>
#include <QLineEdit>
#include <utility>

#include "ui/HelpTopics.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kName = 1010;
constexpr int kPath = 1011;
constexpr ControlInfo kControls[] = {
    {kName, ControlKind::TextEdit, u"New Database Name:"},
    {kPath, ControlKind::Text, u""},
};
constexpr DialogInfo kDialog{135, u"Create Database", kControls, kTopicCreateDatabase};

}  // namespace

CCreateDatabaseDlg::CCreateDatabaseDlg(NewDatabase& database, const QString& typed, Then then, FrameWindow& frame)
    : CQuillaryDialog(kDialog, frame), m_database(database), m_typed(typed), m_then(std::move(then)) {
    auto* name = Control<QLineEdit>(kName);
    name->setMaxLength(static_cast<int>(kMostNameCharacters));
    connect(name, &QLineEdit::textChanged, this, [this] { ShowPath(); });
}

QString CCreateDatabaseDlg::Typed() const { return Control<QLineEdit>(kName)->text(); }

void CCreateDatabaseDlg::Load() {
    auto* name = Control<QLineEdit>(kName);
    name->setText(m_typed);
    name->selectAll();
    ShowPath();
}

void CCreateDatabaseDlg::ShowPath() {
    Failure failure;
    const auto path = m_database.PathFor(ToWide(Typed()), failure);
    auto* label = Control<QLabel>(kPath);
    const QString file = OnOneLine(FromUtf8(path.value_or(std::string())));
    const QString lead = path ? QStringLiteral("The file will be: ") : FromUtf8(failure.text);
    label->setText(lead + file);
    label->setAccessibleName(lead + file);
    Control<QLineEdit>(kName)->setAccessibleDescription(lead + file);
}

bool CCreateDatabaseDlg::Commit() {
    Failure failure;
    const bool done = m_database.SetName(ToWide(Typed()), failure) && (!m_then || m_then(failure));
    return done || Refuse(kName, FromUtf8(failure.text));
}

}  // namespace quillary
