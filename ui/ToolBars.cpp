#include "ui/ToolBars.h"

#include "ui/CommandIds.h"

namespace quillary {

namespace {

constexpr ToolButton kDatabase[] = {
    {ID_RECORD_SHOW_ALL, u"Toggle Filter", "filter"},
    {ID_RECORD_REPEAT_FIND, u"Repeat Find", "find-next"},
};

}  // namespace

std::span<const ToolButton> ButtonsOf(int toolBar) {
    if (toolBar == kToolBarDatabase) return kDatabase;
    return {};
}

}  // namespace quillary
