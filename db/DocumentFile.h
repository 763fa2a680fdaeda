// The file of the open document: its bytes as last read or written, its lock, and the flush of a save that may still
// run.
#pragma once

#include <cstdint>
#include <memory>

#include "db/FileAccess.h"
#include "db/Messages.h"
#include "db/Saving.h"

namespace quillary {

enum class OpenMode : std::uint8_t {
    Read,           // for commands that change nothing: the disk is not written, whatever it holds
    Edit,           // for the window: the file is free for others between saves
    EditExclusive,  // for commands that change the file: locked from reading to closing, so no other change is lost
};

class CDocumentFile {
  public:
    explicit CDocumentFile(FileAccess& files);
    /// Waits for the last save's flush.
    ~CDocumentFile();
    CDocumentFile(const CDocumentFile&) = delete;
    CDocumentFile& operator=(const CDocumentFile&) = delete;

    /// Reads the file at `path`. After a failure it is to be cleared.
    [[nodiscard]] bool Load(const Path& path, OpenMode mode, Failure& failure);
    /// Writes `image` over the file; over what another program has written meanwhile only when `overwriteChanges` says
    /// so. On failure the file is as it was, unless the message says otherwise.
    [[nodiscard]] bool Rewrite(std::shared_ptr<const Image> image, bool overwriteChanges, Failure& failure);
    /// Writes `image` to a new file at `path` and goes on with that one.
    [[nodiscard]] bool Create(const Path& path, std::shared_ptr<const Image> image, Failure& failure);
    /// Waits for the last save's flush. When that has failed, the file holds the bytes before it again.
    [[nodiscard]] bool FinishSave(Failure& failure);
    /// Whether a flush runs on a thread of its own or before Rewrite returns.
    void FlushInBackground(bool on) { m_flushInBackground = on; }
    /// Lets the file go. `recovery` is what Recovery() then answers.
    void Clear(RecoveryState recovery = RecoveryState::None);

    [[nodiscard]] const Path& FilePath() const { return m_path; }
    [[nodiscard]] bool IsReadOnly() const { return m_readOnly; }
    [[nodiscard]] RecoveryState Recovery() const { return m_recovery; }
    /// The whole file as last read or written; null when there is none.
    [[nodiscard]] const std::shared_ptr<const Image>& Contents() const { return m_image; }
    /// Whether a failed save may have left the file with something else.
    [[nodiscard]] bool IsTorn() const { return m_tornImage != nullptr; }
    /// Whether another program has written the file since, by the file's state alone.
    [[nodiscard]] bool HasChanged() const;

  private:
    struct BackgroundFlush;

    void Hold(std::shared_ptr<const Image> image, const FileStamp& stamp);

    FileAccess& m_files;
    Path m_path;
    std::shared_ptr<LockedFile> m_held;  // EditExclusive: the lock from reading to closing
    std::shared_ptr<const Image> m_image;
    std::shared_ptr<const Image> m_tornImage;  // what a failed save may have left in the file
    FileStamp m_stamp;
    bool m_readOnly = false;
    bool m_flushInBackground = false;
    RecoveryState m_recovery = RecoveryState::None;
    std::unique_ptr<BackgroundFlush> m_flush;
};

}  // namespace quillary
