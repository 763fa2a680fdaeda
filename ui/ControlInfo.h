// What a dialog consists of, as a table: its controls in tab order.
#pragma once

#include <span>
#include <string_view>

namespace quillary {

inline constexpr int kOkButton = 1;
inline constexpr int kCancelButton = 2;
inline constexpr int kHelpButton = 9;
inline constexpr int kTitleHeader = 1000;

enum class ControlKind {
    Text,          // a paragraph
    CheckBox,      // QCheckBox
    ComboBox,      // QComboBox, its label above it
    TextEdit,      // QLineEdit, its label above it
    Hyperlink,     // CHyperlinkLabel, opens the dialog's help topic
    PasswordEdit,  // QLineEdit that hides what is typed, its label above it
    Number,        // QLineEdit with a CSpinEdit around it, its label above it
    Color,         // CColorButton, its label above it
};

struct ControlInfo {
    int id;  // the number by which Control<>() finds the widget; 0 for a text that never changes
    ControlKind kind;
    std::u16string_view label;  // what a person reads, and what a screen reader says
    int spinId = 0;             // the spin control's number, of a Number
};

enum class Buttons { OkCancel, Ok };

struct DialogInfo {
    int id;
    std::u16string_view title;  // in the title header
    std::span<const ControlInfo> controls;
    std::string_view topic;  // ui/HelpTopics.h
    Buttons buttons = Buttons::OkCancel;
};

}  // namespace quillary
