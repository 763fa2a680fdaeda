// The menu bars: which popups they have and which commands stand in them.
#pragma once

#include <span>
#include <string_view>

namespace quillary {

inline constexpr int kSeparator = 0;

struct MenuItem {
    int command = kSeparator;
    std::u16string_view text;
};

struct Popup {
    int caption;  // ui/Captions.h
    std::span<const MenuItem> items;
};

struct MenuBarInfo {
    int id;
    std::span<const Popup> popups;
};

inline constexpr int kMenuNoDatabase = 108;
inline constexpr int kMenuDatabase = 128;

[[nodiscard]] std::span<const MenuBarInfo> AllMenuBars();
[[nodiscard]] std::span<const Popup> PopupsOf(int menuBar);

}  // namespace quillary
