#include "db/DocumentFile.h"

#include <thread>
#include <utility>

namespace quillary {

namespace {

Failure LoadFailure(const FileError& error) {
    Failure failure;
    switch (error.kind) {
        case FileError::Kind::TooLarge:
            failure.Set(Message::FileTooLarge);
            break;
        case FileError::Kind::Busy:
            failure.Set(Message::FileBusy);
            break;
        case FileError::Kind::Recovery:
            failure = {Message::RecoveryNotRead, error.reason};
            break;
        default:
            failure.Set(Message::ErrorOpeningFile);
            failure.reason = error.reason;
    }
    return failure;
}

}  // namespace

struct CDocumentFile::BackgroundFlush {
    std::unique_ptr<UnfinishedSave> save;
    std::shared_ptr<const Image> oldImage;  // what the file holds again when the flush fails
    FileStamp oldStamp;
    Failure failure;
    bool finished = false;
    std::thread thread;

    BackgroundFlush(std::unique_ptr<UnfinishedSave> unfinished, std::shared_ptr<const Image> image, FileStamp stamp)
        : save(std::move(unfinished)), oldImage(std::move(image)), oldStamp(stamp), thread([this] {
              finished = save->Finish(failure);
              save.reset();  // lets the file's lock go
          }) {}
};

CDocumentFile::CDocumentFile(FileAccess& files) : m_files(files) {}

CDocumentFile::~CDocumentFile() {
    if (m_flush) m_flush->thread.join();
}

void CDocumentFile::Clear(RecoveryState recovery) {
    m_path.clear();
    m_held.reset();
    m_image.reset();
    m_tornImage.reset();
    m_stamp = {};
    m_readOnly = false;
    m_recovery = recovery;
}

bool CDocumentFile::Load(const Path& path, OpenMode mode, Failure& failure) {
    if (path.empty()) {
        failure.Set(Message::NoFilename);
        return false;
    }
    FileError error;
    const auto refuse = [&] {
        failure = LoadFailure(error);
        if (error.kind == FileError::Kind::NotFound) m_recovery = RecoveryOfMissing(m_files, path);
        return false;
    };
    LoadedFile loaded;
    if (mode == OpenMode::EditExclusive) {
        m_held = m_files.Open(path, LockKind::Exclusive, error);
        if (!m_held) {
            (void)refuse();
            if (error.kind == FileError::Kind::Denied) failure.Set(Message::UnableToOpenForWriting);
            return false;
        }
        if (!m_files.CanWrite(path)) {
            failure.Set(Message::ReadOnly);
            return false;
        }
    }
    m_readOnly = mode == OpenMode::Edit && !m_files.CanWrite(path);
    const LoadMode loadMode = mode == OpenMode::Read || m_readOnly ? LoadMode::Read : LoadMode::Complete;
    if (!LoadDatabaseFile(m_files, path, loadMode, m_held.get(), loaded, error)) return refuse();
    m_recovery = loaded.recovery;
    m_path = path;
    Hold(std::move(loaded.image), loaded.stamp);
    return true;
}

void CDocumentFile::Hold(std::shared_ptr<const Image> image, const FileStamp& stamp) {
    m_image = std::move(image);
    m_tornImage.reset();
    m_stamp = stamp;
}

bool CDocumentFile::Rewrite(std::shared_ptr<const Image> image, bool overwriteChanges, Failure& failure) {
    RewriteRequest request;
    request.path = m_path;
    request.held = m_held;
    request.oldImage = m_image;
    request.oldStamp = m_stamp;
    request.tornImage = m_tornImage;
    request.newImage = image.get();
    request.overwriteChanges = overwriteChanges;
    FileStamp stamp = m_stamp;
    auto save = RewriteDatabaseFile(m_files, request, stamp, failure);
    if (save && m_flushInBackground) {
        m_flush = std::make_unique<BackgroundFlush>(std::move(save), m_image, m_stamp);
    } else if (!save || !save->Finish(failure)) {
        if (failure.message == Message::WriteFailedTorn) m_tornImage = std::move(image);
        return false;
    }
    Hold(std::move(image), stamp);
    return true;
}

bool CDocumentFile::Create(const Path& path, std::shared_ptr<const Image> image, Failure& failure) {
    std::shared_ptr<LockedFile> file;
    FileStamp stamp;
    if (!CreateDatabaseFile(m_files, path, *image, file, stamp, failure)) return false;
    if (m_held) m_held = std::move(file);
    m_path = path;
    m_readOnly = false;
    m_recovery = RecoveryState::None;
    Hold(std::move(image), stamp);
    return true;
}

bool CDocumentFile::FinishSave(Failure& failure) {
    if (!m_flush) return true;
    const auto flush = std::move(m_flush);
    flush->thread.join();
    if (flush->finished) return true;
    if (flush->failure.message == Message::WriteFailedTorn) m_tornImage = m_image;
    m_image = flush->oldImage;
    m_stamp = flush->oldStamp;
    failure = flush->failure;
    return false;
}

bool CDocumentFile::HasChanged() const {
    FileStamp now;
    return m_files.StampOf(m_path, now) && !now.SameState(m_stamp);
}

}  // namespace quillary
