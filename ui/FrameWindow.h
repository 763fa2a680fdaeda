// The main window as views, dialogs and the open document know it.
#pragma once

#include <string_view>

class QWidget;

namespace quillary {

class CQuillaryDialog;
class InputPanel;

class FrameWindow {
  public:
    virtual ~FrameWindow() = default;

    /// The parent of message boxes.
    [[nodiscard]] virtual QWidget* Window() = 0;
    /// "%d of %d"; 0 of 0 for an empty list.
    virtual void ShowRecordCounter(int current, int total) = 0;
    /// Title and command states follow the document. Called after whatever changed outside a command.
    virtual void DocumentChanged() = 0;

    /// Opens the help book at a topic of ui/HelpTopics.h.
    virtual void ShowHelp(std::string_view topic) = 0;
    [[nodiscard]] virtual InputPanel& Panel() = 0;

    /// Runs a command once the present event has been dealt with.
    virtual void PostCommand(int command) = 0;

    /// Makes `dialog` the page that shows and takes menus and accelerators away, until EndDialog. Dialogs nest.
    virtual void BeginDialog(CQuillaryDialog& dialog) = 0;
    virtual void EndDialog(CQuillaryDialog& dialog) = 0;
    /// Ends the open dialog, if there is one, with Cancel.
    virtual void CancelDialog() = 0;
    /// The program ends what is open, to close or to open another file: such a Cancel is not the user's.
    [[nodiscard]] virtual bool IsEndingDialogs() const { return false; }
};

}  // namespace quillary
