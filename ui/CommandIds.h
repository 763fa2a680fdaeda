// The numbers of the commands. Menus, accelerators and message maps name them; they never change.
#pragma once

namespace quillary {

// The view's
inline constexpr int ID_DATABASE_OPTIONS = 32772;  // "Options..."
inline constexpr int ID_DATABASE_PREFERENCES = 32777;
inline constexpr int ID_DATABASE_INFO = 32778;
inline constexpr int ID_DATABASE_CHANGE_PASSWORD = 32779;
inline constexpr int ID_DATABASE_FIELDS = 32780;  // "Field Definitions..."
inline constexpr int ID_RECORD_BOTTOM = 32784;
inline constexpr int ID_RECORD_TOP = 32785;
inline constexpr int ID_RECORD_REPEAT_FIND = 32786;
inline constexpr int ID_RECORD_FIND = 32787;
inline constexpr int ID_RECORD_SHOW_ALL = 32788;
inline constexpr int ID_RECORD_FILTER = 32789;
inline constexpr int ID_RECORD_SORT = 32790;
inline constexpr int ID_DATABASE_SEND_MAIL = 32792;
inline constexpr int ID_DATABASE_SEND_INFRARED = 32793;
inline constexpr int ID_DATABASE_DELETE = 32829;
inline constexpr int ID_EXPORT_CALENDAR = 32830;
inline constexpr int ID_EXPORT_CONTACTS = 32832;

// The record form's
inline constexpr int ID_FORM_DELETE = 32815;
inline constexpr int ID_FORM_PREVIOUS = 32816;
inline constexpr int ID_FORM_NEXT = 32817;
inline constexpr int ID_FORM_NEW = 32825;
inline constexpr int ID_FORM_DUPLICATE = 32826;
inline constexpr int ID_FORM_DIAL = 32845;
inline constexpr int ID_FORM_EXPORT_CALENDAR = 32831;

// The database info dialog's
inline constexpr int ID_INFO_UNLOCK = 1052;
inline constexpr int ID_INFO_LOCK = 32797;

// The field definitions editor's
inline constexpr int ID_FIELD_INSERT = 32794;
inline constexpr int ID_FIELD_REMOVE = 32795;
inline constexpr int ID_FIELD_UP = 32808;
inline constexpr int ID_FIELD_DOWN = 32809;

// Those of the editor of a list's items
inline constexpr int ID_ITEM_ADD = 32804;
inline constexpr int ID_ITEM_DELETE = 32805;
inline constexpr int ID_ITEM_UP = 32806;
inline constexpr int ID_ITEM_DOWN = 32810;
inline constexpr int ID_ITEM_RENAME = 32814;

// Those of the dialog with a catalogue's results
inline constexpr int ID_RESULTS_NEXT = 32839;         // "Get Next Results"
inline constexpr int ID_RESULTS_INFORMATION = 32841;  // "Information"
inline constexpr int ID_RESULTS_NEW_SEARCH = 32844;   // "New Search"

// The application's
inline constexpr int ID_APP_PREFERENCES = ID_DATABASE_OPTIONS;  // while no database is open
inline constexpr int ID_APP_DOWNLOAD = 32835;                   // "Download Database ..."

// The framework's
inline constexpr int ID_FILE_NEW = 57600;
inline constexpr int ID_FILE_OPEN = 57601;
inline constexpr int ID_FILE_SAVE = 57603;
inline constexpr int ID_EDIT_COPY = 57634;
inline constexpr int ID_APP_ABOUT = 57664;
inline constexpr int ID_HELP = 57670;
inline constexpr int ID_APP_EXIT = 57665;

}  // namespace quillary
