// What a database file and the recovery file beside it hold between them, and the end of a rewrite that was stopped.
#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "db/FileAccess.h"
#include "db/Image.h"
#include "db/Messages.h"
#include "db/RecoveryFile.h"

namespace quillary {

/// A locked file, what is in it, and what its recovery file says about that.
struct Situation {
    std::shared_ptr<const Image> image;
    FileStamp stamp;
    std::optional<RecoveryFile> recovery;
    RecoveryFile::Match match = RecoveryFile::Match::Neither;
    bool isTorn = false;            // a recovery file that never became whole; its database was not touched
    bool isOfOtherVersion = false;  // a recovery file that only another version of the program can read
};

/// Reads the recovery file of the database at `path`, when there is one that is whole and its own. False when there is
/// one that cannot be read: a torn database must not pass for a whole one.
[[nodiscard]] bool FindRecovery(FileAccess& files, const Path& path, Situation& found, FileError& error);
/// Reads the file and its recovery file. The image of a mixture is the one that was being written.
[[nodiscard]] bool ExamineFile(FileAccess& files, const Path& path, LockedFile& file, Situation& found,
                               FileError& error);
/// Ends a rewrite that was stopped, the file being one of its two images or a mixture. Writes even bytes that read back
/// as they should: a flush that failed may have left them off the disk.
[[nodiscard]] bool FinishRewrite(FileAccess& files, const Path& path, LockedFile& file, Situation& found,
                                 FileError& error);
/// For a recovery file that is about to be replaced: a rewrite that still needs it is ended first. False when nobody
/// has decided about its copy, which is left alone.
[[nodiscard]] bool EndStoppedRewrite(FileAccess& files, const Path& path, LockedFile& file, Failure& failure);

/// Puts `bytes` in the file's place, down to the disk.
[[nodiscard]] bool OverwriteFile(LockedFile& file, std::string_view bytes, FileError& error);

/// Why a file cannot be locked or looked at.
void SetLookFailure(const FileError& error, Failure& failure);
/// Says that the recovery file is another version's. Returns false.
[[nodiscard]] bool RefuseOtherVersion(FileAccess& files, const Path& path, Failure& failure);

}  // namespace quillary
