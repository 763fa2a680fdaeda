#include "views/ListFind.h"

#include <algorithm>

#include "db/QuillaryDoc.h"
#include "query/Find.h"
#include "query/FindRecordDlg.h"
#include "ui/FrameWindow.h"
#include "ui/LongWork.h"
#include "ui/MessageBox.h"

namespace quillary {

namespace {

constexpr std::size_t kRowsAStep = 1024;  // of a find that can be stopped

}  // namespace

void CListFind::TakeUp(const Sought& sought) {
    m_sought = sought;
    if (m_sought.column >= static_cast<int>(m_doc.FieldCount())) m_sought.column = kNoFindYet;
}

std::string CListFind::FieldName() const {
    return m_sought.column < 0 ? std::string() : m_doc.Fields()[static_cast<std::size_t>(m_sought.column)].name;
}

void CListFind::FollowField(const std::string& name) {
    if (m_sought.column < 0) return;
    const auto field = m_doc.FieldByName(name);
    m_sought.column = field ? static_cast<int>(*field) : kNoFindYet;
}

std::optional<std::size_t> CListFind::OnFind() {
    CFindRecordDlg dialog(m_doc, m_sought.text, m_sought.column, m_frame);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    m_sought = {dialog.Text(), dialog.Column()};
    return FindFrom(0);
}

std::optional<std::size_t> CListFind::FindFrom(std::size_t row) const {
    const QString question =
        QStringLiteral("The end of the database has been reached. Continue from the top of the database?");
    const QStringList answers = {QStringLiteral("Yes"), QStringLiteral("No")};
    const QString doing = QStringLiteral("Looking for \"%1\"...").arg(m_sought.text);
    const std::size_t rows = m_doc.Shown().size();
    std::optional<std::size_t> found;
    bool isThrough = true;
    do {
        RecordFinder finder(m_doc, m_sought.text.toStdU16String(), m_sought.column);
        isThrough = RunLongWork(m_frame.Window(), doing, [&] {
            const std::size_t end = std::min(row + kRowsAStep, rows);
            found = finder.FindFrom(row, end);
            row = end;
            return found || row >= rows;
        });
        row = 0;
    } while (!found && isThrough && AskUser(m_frame.Window(), question, answers) == 0);
    return found;
}

}  // namespace quillary
