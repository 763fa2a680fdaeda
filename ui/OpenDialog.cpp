#include "ui/OpenDialog.h"

namespace quillary {

namespace {

std::vector<QDialog*>& Dialogs() {
    static std::vector<QDialog*> dialogs;
    return dialogs;
}

std::function<void()>& Ended() {
    static std::function<void()> ended;
    return ended;
}

}  // namespace

OpenDialog::OpenDialog(QDialog& dialog) { Dialogs().push_back(&dialog); }

OpenDialog::~OpenDialog() {
    Dialogs().pop_back();
    if (Ended()) Ended()();
}

const std::vector<QDialog*>& OpenDialog::All() { return Dialogs(); }

void OpenDialog::WhenOneEnds(std::function<void()> ended) { Ended() = std::move(ended); }

}  // namespace quillary
