#include "ui/Palette.h"

#include <QApplication>
#include <QPalette>
#include <cstdlib>

namespace quillary {

namespace {

QPalette DarkPalette() {
    const QColor window(0x2B, 0x2D, 0x30);
    const QColor base(0x1F, 0x20, 0x23);
    const QColor text(0xE6, 0xE6, 0xE6);
    const QColor faint(0x80, 0x82, 0x86);
    QPalette palette(text, QColor(0x3A, 0x3D, 0x41), QColor(0x5A, 0x5D, 0x62), QColor(0x17, 0x18, 0x1A),
                     QColor(0x45, 0x48, 0x4C), text, Qt::white, base, window);
    palette.setColor(QPalette::AlternateBase, QColor(0x27, 0x29, 0x2C));
    palette.setColor(QPalette::ToolTipBase, QColor(0x3A, 0x3D, 0x41));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, faint);
    palette.setColor(QPalette::Highlight, QColor(0x2F, 0x6F, 0xB0));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x7A, 0xB8, 0xF5));
    palette.setColor(QPalette::LinkVisited, QColor(0xB9, 0x9A, 0xE8));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText}) {
        palette.setColor(QPalette::Disabled, role, faint);
    }
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x4A, 0x4D, 0x52));
    return palette;
}

// Some desktops' dark colours leave out the one for hints, and the toolkit takes that from its light ones.
bool HidesHints(const QPalette& palette) {
    const int base = palette.color(QPalette::Base).lightness();
    const auto distance = [&](QPalette::ColorRole role) { return std::abs(palette.color(role).lightness() - base); };
    return 3 * distance(QPalette::PlaceholderText) < distance(QPalette::Text);
}

QPalette ReadableHints(const QPalette& of) {
    QColor faint = of.color(QPalette::Text);
    faint.setAlphaF(0.6F);
    QPalette palette;
    palette.setColor(QPalette::PlaceholderText, faint);
    return palette;
}

// The outline of an empty box or circle is made from the window's colour, darker, which on dark cannot be seen.
void UseForCheckable(QPalette palette, bool dark) {
    if (dark) palette.setColor(QPalette::Window, QColor(0xD8, 0xDA, 0xDE));
    for (const char* kind : {"QCheckBox", "QRadioButton"}) {
        if (QApplication::palette(kind) != palette) QApplication::setPalette(palette, kind);
    }
}

}  // namespace

void UseDarkPalette(bool dark) {
    QApplication::setPalette(QPalette());
    const bool isDark = QApplication::palette().color(QPalette::Window).lightness() < 128;
    const bool makesDark = dark && !isDark;
    if (makesDark) {
        QApplication::setPalette(DarkPalette());
    } else if (HidesHints(QApplication::palette())) {
        QApplication::setPalette(ReadableHints(QApplication::palette()));
    }
    UseForCheckable(QApplication::palette(), isDark || makesDark);
}

}  // namespace quillary
