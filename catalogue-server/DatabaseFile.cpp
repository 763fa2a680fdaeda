#include "catalogue-server/DatabaseFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "catalogue-server/Texts.h"
#include "db/DatabaseContent.h"
#include "db/DatabaseReader.h"
#include "db/ListedDatabase.h"
#include "db/Saving.h"
#include "platform/posix/PosixFileAccess.h"

namespace quillary {

namespace {

// A file that was opened elsewhere, for reading alone.
class ReadOnlyFile : public LockedFile {
  public:
    explicit ReadOnlyFile(PosixFile file) : m_file(std::move(file)) {}

    bool Stamp(FileStamp& stamp, FileError& error) override {
        struct stat status {};
        if (fstat(m_file.Descriptor(), &status) != 0) return Fail(error);
        stamp = MakeStamp(status);
        return true;
    }
    bool Read(Image& image, FileError& error) override { return m_file.Read(kLargestPublished, image, error); }
    bool Holds(std::string_view bytes, bool& holds, FileError& error) override {
        return m_file.Holds(bytes, holds, error);
    }
    bool Reserve(std::uint64_t /*size*/, FileError& error) override { return Refuse(error); }
    bool WriteAt(std::uint64_t /*offset*/, std::string_view /*bytes*/, FileError& error) override {
        return Refuse(error);
    }
    bool Truncate(std::uint64_t /*size*/, FileError& error) override { return Refuse(error); }
    bool Flush(FileError& error) override { return Refuse(error); }

  private:
    static bool Refuse(FileError& error) {
        error = SystemError(EROFS);
        return false;
    }

    PosixFile m_file;
};

bool IsListed(std::string_view image) {
    const ReadPart read = [image](std::uint64_t offset, char* to, std::size_t size) {
        return offset < image.size() ? image.copy(to, size, static_cast<std::size_t>(offset)) : 0;
    };
    return IsListedDatabase(read, image.size());
}

}  // namespace

bool ReadWholeDatabase(PosixFile file, const Path& path, WholeDatabase& database, FileError& error) {
    if (!LockOpenFile(file, LockKind::Shared, std::chrono::milliseconds::zero(), error)) return false;
    ReadOnlyFile held(std::move(file));
    PosixFileAccess files;
    LoadedFile loaded;
    FileStamp after;
    if (!LoadDatabaseFile(files, path, LoadMode::Read, &held, loaded, error) || !held.Stamp(after, error)) return false;
    if (!after.SameState(loaded.stamp)) {
        error = {FileError::Kind::Busy, "A program that knows of no locks is writing it"};
        return false;
    }
    if (!IsListed(loaded.image->Bytes())) {
        error = {FileError::Kind::NotAFile, "Not a database"};
        return false;
    }
    database.image = std::move(loaded.image);
    database.stamp = loaded.stamp;
    return true;
}

DatabaseTexts TextsOf(std::string_view image, const AnsiText& page) {
    CDatabaseReader reader;
    reader.ReadHeader(image);
    DatabaseTexts texts;
    texts.name = page.ToUtf8(reader.Header().Name());
    if (reader.AppInfo().LockWord() == 0 && reader.ReadSchema()) {
        texts.infoText = page.ToUtf8(ContentOf(reader).infoText);
    }
    return texts;
}

}  // namespace quillary
