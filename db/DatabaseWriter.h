// Builds the bytes of a whole database file in memory.
#pragma once

#include "db/DatabaseContent.h"
#include "db/Image.h"
#include "db/Messages.h"

namespace quillary {

/// Builds the image and moves the records of `content` onto it, category bytes included. False, with `content` as it
/// was, when there are too many records or the image would be larger than what is read.
[[nodiscard]] bool EncodeDatabase(DatabaseContent& content, Image& image, Failure& failure);

}  // namespace quillary
