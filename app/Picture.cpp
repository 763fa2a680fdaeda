#include "app/Picture.h"

#include <QApplication>
#include <QPixmap>
#include <filesystem>
#include <iostream>
#include <system_error>

#include "app/QuillaryApp.h"
#include "db/Questions.h"
#include "platform/NativePath.h"

namespace quillary {

namespace {

class StandardErrorQuestions : public Questions {
  public:
    void Tell(const Failure& failure) override { std::cerr << "quillary: " << failure.WithReason() << '\n'; }
    bool AskDatabasePassword(const CQuillaryDoc&) override {
        std::cerr << "quillary: This database is locked; a picture shows no locked database.\n";
        return false;
    }
};

}  // namespace

int SavePicture(CQuillaryApp& app, const Path& database, const Path& picture) {
    std::error_code isNone;  // as when there is no picture yet
    if (std::filesystem::equivalent(database, picture, isNone)) {
        std::cerr << "quillary: The picture would overwrite the database.\n";
        return 1;
    }
    StandardErrorQuestions questions;
    app.ReadProfile();
    if (!app.OpenDocumentFile(database, OpenMode::Read, questions)) return 1;
    app.Frame().resize(1000, 640);
    app.Frame().show();
    QApplication::processEvents();
    if (app.Frame().grab().save(FromPath(picture), "PNG")) return 0;
    std::cerr << "quillary: The picture could not be written.\n";
    return 1;
}

}  // namespace quillary
