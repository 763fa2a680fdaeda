// Gives each text of a group a letter of its own to press with Alt, so that tables need none and doubles cannot arise.
#pragma once

#include <QStringList>

namespace quillary {

/// The texts with "&" before their mnemonic, and every "&" of their own doubled: the first letter of a word that is
/// still free, else any letter that is, else none.
[[nodiscard]] QStringList WithMnemonics(const QStringList& texts);

}  // namespace quillary
