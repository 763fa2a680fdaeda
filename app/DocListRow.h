// A database as the document list shows it: an immutable value that the scan makes on its own thread.
#pragma once

#include <QCollator>
#include <QString>
#include <memory>

#include "db/FileAccess.h"
#include "platform/posix/FolderScan.h"

namespace quillary {

struct DocListFolder {
    Path path;
    QString name;  // as people call it
    QCollatorSortKey order;
};

struct DocListRow {
    Path path;
    std::shared_ptr<const DocListFolder> folder;  // shared by its databases
    QString name;                                 // the file's, without its ending
    QCollatorSortKey order;
    std::uint64_t size;
    std::int64_t modified;  // seconds since the epoch
};

/// Makes rows. Each thread needs one of its own.
class DocListRowMaker {
  public:
    explicit DocListRowMaker(const Path& mainFolder);
    [[nodiscard]] DocListRow Make(const FoundDatabase& found);

  private:
    [[nodiscard]] QString FolderName(const Path& folder) const;

    Path m_mainFolder;
    QCollator m_collator;
    std::shared_ptr<const DocListFolder> m_folder;  // the last one: databases of a folder come one after the other
};

}  // namespace quillary
