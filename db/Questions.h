// What an operation may ask or tell the user in its course: message boxes and dialogs in the window, standard error and
// options in qly.
#pragma once

#include "db/Messages.h"

namespace quillary {

class CQuillaryDoc;

class Questions {
  public:
    virtual ~Questions() = default;
    /// A plain message with an OK button.
    virtual void Tell(const Failure& failure) = 0;
    /// Asks until the password of `doc` is right (true) or the user gives up (false).
    [[nodiscard]] virtual bool AskDatabasePassword(const CQuillaryDoc& doc) = 0;
};

}  // namespace quillary
