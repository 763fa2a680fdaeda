#include "platform/DesktopTrash.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include "platform/NativePath.h"

namespace quillary {

bool DesktopTrash::Put(const std::filesystem::path& file) {
    // Without this folder Qt 6.4 makes a trash below the working folder.
    if (!QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation))) return false;
    return QFile::moveToTrash(FromPath(file));
}

}  // namespace quillary
