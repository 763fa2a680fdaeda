// The dialogs, message boxes and file choosers that wait for an answer, so that closing the program or opening another
// file can end them first.
#pragma once

#include <functional>
#include <vector>

class QDialog;

namespace quillary {

/// Stands around a dialog's exec: while one is there, a command handler has not returned.
class OpenDialog {
  public:
    explicit OpenDialog(QDialog& dialog);
    ~OpenDialog();
    OpenDialog(const OpenDialog&) = delete;
    OpenDialog& operator=(const OpenDialog&) = delete;

    /// The innermost last.
    [[nodiscard]] static const std::vector<QDialog*>& All();
    /// `ended` is called each time one has ended, before its handler goes on. An empty function calls nobody.
    static void WhenOneEnds(std::function<void()> ended);
};

}  // namespace quillary
