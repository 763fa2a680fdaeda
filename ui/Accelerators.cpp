#include "ui/Accelerators.h"

#include "ui/CommandIds.h"

namespace quillary {

namespace {

constexpr Accelerator kAccelerators[] = {
    {Qt::CTRL | Qt::Key_O, ID_FILE_OPEN},
    {Qt::CTRL | Qt::Key_S, ID_FILE_SAVE},
    {Qt::CTRL | Qt::Key_C, ID_EDIT_COPY},
    {Qt::CTRL | Qt::Key_F, ID_RECORD_FIND},
    {Qt::Key_F1, ID_HELP},
    {Qt::Key_F3, ID_RECORD_REPEAT_FIND},
    {Qt::CTRL | Qt::Key_Q, ID_APP_EXIT},
};

}  // namespace

std::span<const Accelerator> AllAccelerators() { return kAccelerators; }

}  // namespace quillary
