#include "platform/DesktopInputPanel.h"

#include <QGuiApplication>
#include <QInputMethod>

namespace quillary {

void DesktopInputPanel::Show() { QGuiApplication::inputMethod()->show(); }

void DesktopInputPanel::Hide() { QGuiApplication::inputMethod()->hide(); }

}  // namespace quillary
