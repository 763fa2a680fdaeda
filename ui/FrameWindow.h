// The main window as views, dialogs and the open document know it.
#pragma once

class QWidget;

namespace quillary {

class CQuillaryDialog;

class FrameWindow {
  public:
    virtual ~FrameWindow() = default;

    /// The parent of message boxes.
    [[nodiscard]] virtual QWidget* Window() = 0;
    /// "%d of %d"; 0 of 0 for an empty list.
    virtual void ShowRecordCounter(int current, int total) = 0;
    /// Title and command states follow the document. Called after whatever changed outside a command.
    virtual void DocumentChanged() = 0;

    /// Makes `dialog` the page that shows and takes menus and accelerators away, until EndDialog. Dialogs nest.
    virtual void BeginDialog(CQuillaryDialog& dialog) = 0;
    virtual void EndDialog(CQuillaryDialog& dialog) = 0;
    /// Ends the open dialog, if there is one, with Cancel.
    virtual void CancelDialog() = 0;
};

}  // namespace quillary
