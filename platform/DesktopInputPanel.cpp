#include "platform/DesktopInputPanel.h"

#include <QGuiApplication>
#include <QInputDevice>
#include <QInputMethod>

namespace quillary {

namespace {

// Qt 6.4 crashes when it asks a Wayland compositor that has no input device for a panel.
bool CanHavePanel() { return !QInputDevice::devices().isEmpty(); }

}  // namespace

void DesktopInputPanel::Show() {
    if (CanHavePanel()) QGuiApplication::inputMethod()->show();
}

void DesktopInputPanel::Hide() {
    if (CanHavePanel()) QGuiApplication::inputMethod()->hide();
}

}  // namespace quillary
