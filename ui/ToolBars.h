// The toolbars: which commands have a button there.
#pragma once

#include <span>
#include <string_view>

namespace quillary {

struct ToolButton {
    int command;
    std::u16string_view toolTip;
    std::string_view icon;  // ui/icons
};

inline constexpr int kToolBarDatabase = 128;
inline constexpr int kToolBarFieldDefinitions = 136;
inline constexpr int kToolBarListItems = 156;
inline constexpr int kToolBarRecord = 174;

[[nodiscard]] std::span<const ToolButton> ButtonsOf(int toolBar);

}  // namespace quillary
