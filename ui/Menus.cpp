#include "ui/Menus.h"

#include <algorithm>

#include "ui/Captions.h"
#include "ui/CommandIds.h"

namespace quillary {

namespace {

constexpr MenuItem kToolsWithoutDatabase[] = {
    {ID_APP_DOWNLOAD, u"Download Database ..."},
    {},
    {ID_APP_ABOUT, u"About Quillary..."},
    {ID_APP_PREFERENCES, u"Preferences..."},
};
constexpr Popup kPopupsWithoutDatabase[] = {
    {kCaptionTools, kToolsWithoutDatabase},
};

constexpr MenuItem kDatabase[] = {
    {ID_DATABASE_PREFERENCES, u"Preferences..."},
    {ID_DATABASE_INFO, u"Info..."},
    {ID_DATABASE_CHANGE_PASSWORD, u"Change Password..."},
    {},
    {ID_DATABASE_FIELDS, u"Field Definitions..."},
    {},
    {ID_EXPORT_CALENDAR, u"Export to Calendar..."},
    {ID_EXPORT_CONTACTS, u"Export to Contacts..."},
    {ID_DATABASE_DELETE, u"Delete..."},
};
constexpr MenuItem kRecord[] = {
    {ID_RECORD_BOTTOM, u"Bottom of Database"},
    {ID_RECORD_TOP, u"Top of Database"},
    {},
    {ID_RECORD_REPEAT_FIND, u"Repeat Find"},
    {ID_RECORD_FIND, u"Find..."},
    {},
    {ID_RECORD_SHOW_ALL, u"Show All"},
    {ID_RECORD_FILTER, u"Filter..."},
    {},
    {ID_RECORD_SORT, u"Sort..."},
};
constexpr MenuItem kTools[] = {
    {ID_APP_ABOUT, u"About Quillary..."},
    {ID_DATABASE_OPTIONS, u"Options..."},
    {},
    {ID_DATABASE_SEND_MAIL, u"Send via E-mail"},
    {ID_DATABASE_SEND_INFRARED, u"Send via Infrared"},
};
constexpr Popup kPopups[] = {
    {kCaptionDatabase, kDatabase},
    {kCaptionRecord, kRecord},
    {kCaptionTools, kTools},
};

constexpr MenuBarInfo kMenuBars[] = {
    {kMenuNoDatabase, kPopupsWithoutDatabase},
    {kMenuDatabase, kPopups},
};

}  // namespace

std::span<const MenuBarInfo> AllMenuBars() { return kMenuBars; }

std::span<const Popup> PopupsOf(int menuBar) {
    const auto found =
        std::find_if(std::begin(kMenuBars), std::end(kMenuBars), [menuBar](const auto& m) { return m.id == menuBar; });
    return found == std::end(kMenuBars) ? std::span<const Popup>() : found->popups;
}

}  // namespace quillary
