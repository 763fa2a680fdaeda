#include "ui/ToolBars.h"

#include "ui/CommandIds.h"

namespace quillary {

namespace {

constexpr ToolButton kDatabase[] = {
    {ID_FILE_NEW, u"New", "new"},
    {ID_RECORD_SHOW_ALL, u"Toggle Filter", "filter"},
    {ID_RECORD_REPEAT_FIND, u"Repeat Find", "find-next"},
};
constexpr ToolButton kFieldDefinitions[] = {
    {ID_FIELD_INSERT, u"Insert Field", "add"},
    {ID_FIELD_REMOVE, u"Remove Field", "remove"},
    {ID_FIELD_UP, u"Move Up", "up"},
    {ID_FIELD_DOWN, u"Move Down", "down"},
};
constexpr ToolButton kListItems[] = {
    {ID_ITEM_ADD, u"Add", "add"},
    {ID_ITEM_DELETE, u"Delete", "remove"},
    {ID_ITEM_UP, u"Move Up", "up"},
    {ID_ITEM_DOWN, u"Move Down", "down"},
};
constexpr ToolButton kRecord[] = {
    {ID_FORM_NEW, u"New", "new"},          {ID_FORM_DUPLICATE, u"Duplicate", "duplicate"},
    {ID_FORM_DELETE, u"Delete", "delete"}, {ID_FORM_PREVIOUS, u"Previous", "previous"},
    {ID_FORM_NEXT, u"Next", "next"},       {ID_FORM_EXPORT_CALENDAR, u"Export to Calendar", "calendar"},
    {ID_FORM_DIAL, u"Dial", "phone"},
};

}  // namespace

std::span<const ToolButton> ButtonsOf(int toolBar) {
    switch (toolBar) {
        case kToolBarDatabase:
            return kDatabase;
        case kToolBarFieldDefinitions:
            return kFieldDefinitions;
        case kToolBarListItems:
            return kListItems;
        case kToolBarRecord:
            return kRecord;
        default:
            return {};
    }
}

}  // namespace quillary
