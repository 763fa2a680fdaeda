// Makes the widget of a row of a dialog's table of controls.
#pragma once

#include <QString>
#include <functional>

#include "ui/ControlInfo.h"

class QVBoxLayout;

namespace quillary {

/// Adds the control to the column, below its label where its kind has one above. `markedLabel` is the label with its
/// mnemonic; `openHelp` is what a Hyperlink does.
void AddControl(QVBoxLayout& column, const ControlInfo& control, const QString& markedLabel,
                std::function<void()> openHelp);

}  // namespace quillary
