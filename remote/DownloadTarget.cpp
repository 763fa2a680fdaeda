#include "remote/DownloadTarget.h"

#include <algorithm>
#include <utility>

#include "db/Utf.h"

namespace quillary {

namespace {

constexpr std::string_view kEnding = ".pdb";
// As file systems have it, less what a number, an ending and the beginning of a hidden name take.
constexpr std::size_t kMostNameBytes = 255 - 32;
constexpr int kMostNames = 10000;

// A control character, or one that turns the direction of writing, with which a name could show another ending.
bool IsUnseen(char16_t c) {
    return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x200E || c == 0x200F || (c >= 0x2028 && c <= 0x202E) ||
           (c >= 0x2066 && c <= 0x2069);
}

// A name of these alone would be an empty line in every list.
bool IsBlank(char16_t c) { return c == u' ' || c == 0xA0 || (c >= 0x2000 && c <= 0x200B) || c == 0x3000; }

// Cut in front of its ending, never inside a character.
std::string Shortened(const std::string& name, std::size_t most) {
    if (name.size() <= most) return name;
    const auto dot = name.rfind('.');
    const std::string ending = dot != std::string::npos && name.size() - dot <= 16 ? name.substr(dot) : std::string();
    std::size_t end = most - ending.size();
    while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80) --end;
    return name.substr(0, end) + ending;
}

Path Numbered(const Path& path, int number) {
    if (number == 1) return path;
    Path numbered = path;
    numbered.replace_filename(path.stem().native() + " (" + std::to_string(number) + ")" + path.extension().native());
    return numbered;
}

}  // namespace

std::string SafeFileName(std::string_view name, bool isInPackage) {
    std::u16string kept;
    for (const char16_t c : Utf8ToWide(name).value_or(std::u16string())) {
        if (!IsUnseen(c)) kept += c == u'\\' || c == u'/' ? u'-' : c == u':' ? u'_' : c;
    }
    if (std::all_of(kept.begin(), kept.end(), IsBlank)) kept = u"_";
    std::string safe = WideToUtf8(kept);
    for (std::size_t i = 0; i < safe.size() && safe[i] == '.'; ++i) safe[i] = '_';
    if (!isInPackage) safe += kEnding;
    return Shortened(safe, kMostNameBytes);
}

DownloadTarget::DownloadTarget(FileAccess& files, Path path) : m_files(files), m_path(std::move(path)) {}

DownloadTarget::~DownloadTarget() {
    FileError ignored;
    if (m_file) (void)m_files.Remove(m_temporary, ignored);
}

bool DownloadTarget::Make(FileError& error) {
    for (int number = 1; number <= kMostNames; ++number) {
        m_temporary = Numbered(m_path, number);
        m_temporary.replace_filename("." + m_temporary.filename().native() + ".part");
        m_file = m_files.Create(m_temporary, error);
        FileError untold;
        // What a download that was killed has left behind holds no lock.
        if (!m_file && error.kind == FileError::Kind::Exists && m_files.RemoveUnlocked(m_temporary, untold)) {
            m_file = m_files.Create(m_temporary, error);
        }
        if (m_file || error.kind != FileError::Kind::Exists) break;
    }
    return m_file != nullptr;
}

bool DownloadTarget::Append(std::string_view bytes, std::string& reason) {
    FileError error;
    if ((!m_file && !Make(error)) || !m_file->WriteAt(m_size, bytes, error)) {
        reason = error.reason;
        return false;
    }
    m_size += bytes.size();
    return true;
}

bool DownloadTarget::Keep(std::string& reason) {
    FileError error;
    if (!m_file || !m_file->Flush(error)) {
        reason = error.reason;
        return false;
    }
    for (int number = 1; number <= kMostNames; ++number) {
        const Path name = Numbered(m_path, number);
        if (m_files.Rename(m_temporary, name, error)) {
            m_path = name;
            m_file.reset();
            return true;
        }
        if (error.kind != FileError::Kind::Exists) break;
    }
    reason = error.reason;
    return false;
}

}  // namespace quillary
