// The program's window over a disk in memory.
#pragma once

#include <gtest/gtest.h>

#include <QString>
#include <QStringList>
#include <string>
#include <string_view>

#include "app/QuillaryApp.h"
#include "tests/fakes/MemoryFiles.h"
#include "tests/fakes/TestDatabase.h"
#include "tests/ui/User.h"

namespace quillary {

/// Lets a test take away the disk.
class WindowFiles : public MemoryFiles {
  public:
    bool writable = true;
    bool full = false;          // recovery copies cannot be written, so no save begins
    bool keepRecovery = false;  // as a save that stopped before it removed its copy

    bool CanWrite(const Path& path) override { return writable && MemoryFiles::CanWrite(path); }
    bool Remove(const Path& path, FileError& error) override {
        return keepRecovery || MemoryFiles::Remove(path, error);
    }
    bool WriteRecovery(const Path& recoveryPath, std::string_view head, std::string_view body,
                       FileError& error) override;
};

class TestLocations : public StorageLocations {
  public:
    std::string mainFolder = "/nowhere/";

    std::string MainFolder() const override { return mainFolder; }
    std::vector<std::string> CardFolders() const override { return {}; }
};

class WindowTest : public ::testing::Test {
  protected:
    WindowTest();

    /// Puts a file onto the disk and opens it as a start with its path would.
    CQuillaryDoc* Open(const std::string& image, const Path& path = "/people.pdb");
    /// Clicks through the menus.
    void ChooseMenu(const QString& popup, const QString& item);
    /// What the window shows.
    [[nodiscard]] QString Title() { return app.Frame().windowTitle(); }
    [[nodiscard]] QString Counter();
    [[nodiscard]] QString Cell(int row, int column);
    [[nodiscard]] CQuillaryView* View();
    /// The file's documents, after the window has closed it.
    [[nodiscard]] std::string CloseAndReadFile(const Path& path = "/people.pdb");

    WindowFiles files;
    TestLocations locations;
    CQuillaryApp app{files, locations};
    User user;
};

/// Three records of a Text, a Number, a Date and a Checkbox.
[[nodiscard]] ImageParts PeopleParts();

}  // namespace quillary
