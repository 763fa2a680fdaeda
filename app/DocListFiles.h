// What a person does with a database in the document list besides opening it. Asks where that is due, and tells what
// failed.
#pragma once

#include <QString>
#include <optional>

#include "db/FileAccess.h"

class QWidget;

namespace quillary {

class Launcher;
class Trash;

class CDocListFiles {
  public:
    /// `window` is the parent of the questions.
    CDocListFiles(FileAccess& files, Trash& trash, Launcher& launcher, QWidget& window)
        : m_files(files), m_trash(trash), m_launcher(launcher), m_window(window) {}

    void ShowInFolder(const Path& path);
    /// The new path, or nullopt when the file keeps its name.
    [[nodiscard]] std::optional<Path> Rename(const Path& path, const QString& name);
    /// The copy's path.
    [[nodiscard]] std::optional<Path> Copy(const Path& path);
    /// `name` is what the list shows; the question has the database's own, too. True when the file is gone.
    [[nodiscard]] bool Delete(const Path& path, const QString& name);

  private:
    FileAccess& m_files;
    Trash& m_trash;
    Launcher& m_launcher;
    QWidget& m_window;
};

}  // namespace quillary
