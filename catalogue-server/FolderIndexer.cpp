#include "catalogue-server/FolderIndexer.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>
#include <vector>

#include "catalogue-server/Texts.h"
#include "platform/posix/PosixFileAccess.h"

namespace quillary {

namespace {

constexpr int kMostLevels = 8;  // the names in the folder itself are level 1

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

bool IsWorthTelling(const FileError& error) {
    return error.kind != FileError::Kind::NotAFile && error.kind != FileError::Kind::NotFound;
}

}  // namespace

// One look. What it finds takes the place of what the look before it found only when it has come to its end.
class FolderIndexer::Walk {
  public:
    Walk(FolderIndexer& indexer, const PublishedFolder& folder, const Entering& entering, const GoOn& goOn)
        : m_indexer(indexer), m_folder(folder), m_entering(entering), m_goOn(goOn) {}

    /// `path` ends in a separator unless it is empty. False when the look is to end.
    [[nodiscard]] bool LookInto(const std::string& path, int level);

    std::unordered_map<std::string, KnownFile> files;
    std::unordered_map<std::string, KnownTexts> texts;
    bool isUnsettled = false;
    bool hasNew = false;

  private:
    [[nodiscard]] std::shared_ptr<const FolderTexts> TextsOf(const std::string& path);
    void LookAt(const std::string& path, const FileStamp& stamp, const std::shared_ptr<const FolderTexts>& texts);
    void Publish(const std::string& path, KnownFile& file);
    void Tell(const std::string& path, const std::string& problem) const {
        m_indexer.m_report(OneLineOf(path) + ": " + problem);
    }
    // A name may hold what a terminal obeys.
    static std::string OneLineOf(const std::string& path) {
        std::string line = path;
        for (char& c : line) {
            if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = '?';
        }
        return line;
    }

    FolderIndexer& m_indexer;
    const PublishedFolder& m_folder;
    const Entering& m_entering;
    const GoOn& m_goOn;
};

bool FolderIndexer::Walk::LookInto(const std::string& path, int level) {
    m_entering(m_folder.Location() / path);
    FileError error;
    const PosixFile opened = m_folder.OpenFolder(path.empty() ? path : path.substr(0, path.size() - 1), error);
    // The stream closes what it reads from.
    const int own = opened ? openat(opened.Descriptor(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC) : -1;
    const std::unique_ptr<DIR, CloseFolder> folder(own < 0 ? nullptr : fdopendir(own));
    if (!folder) {
        if (own >= 0) close(own);
        if (level > 1) return true;  // gone, or not for this user
    }
    const std::shared_ptr<const FolderTexts> texts = TextsOf(path + kCatalogueJson);
    std::vector<std::string> below;
    while (const dirent* entry = folder ? readdir(folder.get()) : nullptr) {
        if (!m_goOn()) return false;
        const std::string name = entry->d_name;
        const bool mayBeFolder = (entry->d_type == DT_DIR || entry->d_type == DT_UNKNOWN) && level < kMostLevels;
        if (name.starts_with('.') || (!mayBeFolder && !IsPublishedName(name))) continue;
        struct stat status {};
        if (fstatat(opened.Descriptor(), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) continue;
        if (S_ISDIR(status.st_mode) && mayBeFolder) {
            below.push_back(path + name + "/");
        } else if (S_ISREG(status.st_mode) && IsPublishedName(name)) {
            LookAt(path + name, MakeStamp(status), texts);
        }
    }
    for (const std::string& next : below) {
        if (!LookInto(next, level + 1)) return false;
    }
    return true;
}

std::shared_ptr<const FolderTexts> FolderIndexer::Walk::TextsOf(const std::string& path) {
    FileError error;
    struct stat status {};
    const PosixFile file = m_folder.OpenFile(path, error);
    if (!file || fstat(file.Descriptor(), &status) != 0) return nullptr;
    KnownTexts now{MakeStamp(status), nullptr};
    const auto before = m_indexer.m_texts.find(path);
    if (before != m_indexer.m_texts.end()) {
        now.texts = before->second.texts;
        const FileStamp& stamp = before->second.stamp;
        if (stamp.SameState(now.stamp) && !stamp.mayHideAWrite) {
            texts.emplace(path, now);
            return now.texts;
        }
    }
    isUnsettled = isUnsettled || now.stamp.mayHideAWrite;
    Image bytes;
    std::vector<std::string> problems;
    if (!file.Read(kLargestCatalogueJson, bytes, error)) {
        problems.push_back(error.reason);
    } else if (auto parsed = ParseCatalogueJson(bytes.Bytes(), problems)) {
        now.texts = std::make_shared<const FolderTexts>(std::move(*parsed));
    } else if (now.stamp.mayHideAWrite) {
        problems.clear();  // an editor is half way through it
    }
    for (const std::string& problem : problems) Tell(path, problem);
    texts.emplace(path, now);
    return now.texts;
}

void FolderIndexer::Walk::LookAt(const std::string& path, const FileStamp& stamp,
                                 const std::shared_ptr<const FolderTexts>& texts) {
    const auto before = m_indexer.m_files.find(path);
    const bool isKnown = before != m_indexer.m_files.end();
    KnownFile now;
    if (isKnown) now = before->second;
    if (!isKnown || !now.stamp.SameState(stamp) || now.stamp.mayHideAWrite) {
        // What a program without locks is just copying here is not whole yet.
        if (!isKnown && stamp.mayHideAWrite) {
            isUnsettled = true;
            return;
        }
        FileError error;
        FileFacts facts;
        PosixFile file = m_folder.OpenFile(path, error);
        if (file && ReadFacts(std::move(file), m_folder.Location() / path, m_indexer.m_page, facts, now.stamp, error)) {
            now.facts = std::make_shared<const FileFacts>(std::move(facts));
            now.publication.reset();
            isUnsettled = isUnsettled || now.stamp.mayHideAWrite;
        } else if (error.kind == FileError::Kind::Busy) {
            isUnsettled = true;  // until then as it was
            if (!isKnown) return;
        } else {
            if (IsWorthTelling(error)) Tell(path, "not published: " + error.reason);
            now = {stamp, texts, nullptr, nullptr};
        }
    }
    if (now.facts && (!now.publication || now.texts != texts)) {
        now.texts = texts;
        Publish(path, now);
    }
    files.emplace(path, std::move(now));
}

void FolderIndexer::Walk::Publish(const std::string& path, KnownFile& file) {
    const PublishedTexts* texts = nullptr;
    if (file.texts) {
        const auto own = file.texts->find(path.substr(path.rfind('/') + 1));
        if (own != file.texts->end()) texts = &own->second;
    }
    file.publication = std::make_shared<const Publication>(MakePublication(path, *file.facts, file.stamp, texts));
    hasNew = true;
}

FolderIndexer::Look FolderIndexer::LookThrough(const Entering& entering, const GoOn& goOn) {
    FileError error;
    auto folder = std::make_shared<PublishedFolder>();
    if (!PublishedFolder::Open(m_location, *folder, error)) {
        if (m_wasThere) m_report("The folder cannot be read (" + error.reason + ").");
        m_wasThere = false;
        m_files.clear();
        m_texts.clear();
        if (m_catalogue->index.Size() > 0) m_catalogue = std::make_shared<const Catalogue>();
        return {m_catalogue, true};
    }
    m_wasThere = true;
    Walk walk(*this, *folder, entering, goOn);
    if (!walk.LookInto("", 1)) return {m_catalogue, false};
    m_files = std::move(walk.files);
    m_texts = std::move(walk.texts);
    CatalogueIndex::Publications publications;
    publications.reserve(m_files.size());
    for (const auto& [path, file] : m_files) {
        if (file.publication) publications.push_back(file.publication);
    }
    // Nothing new, and as many as before: the same ones.
    const bool isSame = !walk.hasNew && m_catalogue->folder && m_catalogue->index.Size() == publications.size() &&
                        m_catalogue->folder->Stamp().SameFile(folder->Stamp());
    if (!isSame) m_catalogue = std::make_shared<const Catalogue>(std::move(folder), std::move(publications));
    return {m_catalogue, walk.isUnsettled};
}

}  // namespace quillary
