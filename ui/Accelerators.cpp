#include "ui/Accelerators.h"

#include "ui/CommandIds.h"

namespace quillary {

namespace {

constexpr Accelerator kAccelerators[] = {
    {Qt::CTRL | Qt::Key_N, ID_FILE_NEW},       {Qt::CTRL | Qt::Key_O, ID_FILE_OPEN},
    {Qt::CTRL | Qt::Key_S, ID_FILE_SAVE},      {Qt::CTRL | Qt::Key_C, ID_EDIT_COPY},
    {Qt::CTRL | Qt::Key_F, ID_RECORD_FIND},    {Qt::Key_F1, ID_HELP},
    {Qt::Key_F3, ID_RECORD_REPEAT_FIND, true}, {Qt::CTRL | Qt::Key_Q, ID_APP_EXIT},
};
constexpr Accelerator kRecordForm[] = {
    {Qt::CTRL | Qt::Key_N, ID_FORM_NEW},
    {Qt::CTRL | Qt::Key_S, ID_FILE_SAVE},
    {Qt::CTRL | Qt::Key_PageUp, ID_FORM_PREVIOUS, true},
    {Qt::CTRL | Qt::Key_PageDown, ID_FORM_NEXT, true},
};

}  // namespace

std::span<const Accelerator> AllAccelerators() { return kAccelerators; }

std::span<const Accelerator> RecordFormAccelerators() { return kRecordForm; }

}  // namespace quillary
