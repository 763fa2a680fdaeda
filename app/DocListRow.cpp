#include "app/DocListRow.h"

#include <algorithm>
#include <utility>

#include "platform/NativePath.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

/// Letters of both cases together, and numbers by their value: "List 9" before "List 10".
QCollator NaturalOrder() {
    QLocale locale;
    // The C locale compares code by code, whatever else it is told.
    if (locale.language() == QLocale::C) locale = QLocale(QLocale::English);
    QCollator collator(locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

/// Without the separator at its end, which path arithmetic takes for an empty name.
Path WithoutSeparator(const Path& folder) { return folder.has_filename() ? folder : folder.parent_path(); }

}  // namespace

DocListRowMaker::DocListRowMaker(const Path& mainFolder)
    : m_mainFolder(WithoutSeparator(mainFolder)), m_collator(NaturalOrder()) {}

DocListRow DocListRowMaker::Make(const FoundDatabase& found) {
    const Path path = found.path.parent_path();
    if (!m_folder || m_folder->path != path) {
        const QString name = FolderName(path);
        m_folder = std::make_shared<DocListFolder>(DocListFolder{path, name, m_collator.sortKey(name)});
    }
    const QString name = OnOneLine(FromPath(found.path.stem()));
    return {found.path, m_folder, name, m_collator.sortKey(name), found.size, found.modified};
}

QString DocListRowMaker::FolderName(const Path& folder) const {
    // What lies in the main folder is called after it; whoever looks for a card knows its whole path.
    const auto [here, below] = std::mismatch(m_mainFolder.begin(), m_mainFolder.end(), folder.begin(), folder.end());
    if (here != m_mainFolder.end()) return OnOneLine(FromPath(folder));
    Path name = m_mainFolder.filename();
    for (auto part = below; part != folder.end(); ++part) name /= *part;
    return OnOneLine(FromPath(name));
}

}  // namespace quillary
