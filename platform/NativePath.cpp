#include "platform/NativePath.h"

#include <QFile>

namespace quillary {

std::filesystem::path ToPath(const QString& fileName) { return QFile::encodeName(fileName).toStdString(); }

QString FromPath(const std::filesystem::path& path) { return QFile::decodeName(path.c_str()); }

}  // namespace quillary
