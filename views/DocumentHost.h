// Who opens and closes the database that a view shows.
#pragma once

namespace quillary {

class DocumentHost {
  public:
    virtual ~DocumentHost() = default;

    /// The database is in another file now.
    virtual void DocumentMoved() = 0;

    // These act once the running command has returned: it works on what goes away.

    /// Reads the file again and shows it where the user was. What was not saved is given up, but only when the file can
    /// be read.
    virtual void ReopenDocument() = 0;
    /// ReopenDocument has been called and has not acted yet.
    [[nodiscard]] virtual bool IsReopening() const = 0;
    /// Closes the database without saving anything.
    virtual void DropDocument() = 0;
};

}  // namespace quillary
