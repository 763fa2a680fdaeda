#include "platform/posix/PreferencesFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <system_error>
#include <utility>
#include <vector>

#include "db/Utf.h"
#include "platform/posix/PosixFile.h"

namespace quillary {

namespace {

constexpr std::uint64_t kMaxFileSize = 1 << 20;
constexpr std::string_view kBlanks = " \t\r";

std::string_view Trimmed(std::string_view text) {
    const auto start = text.find_first_not_of(kBlanks);
    if (start == text.npos) return {};
    return text.substr(start, text.find_last_not_of(kBlanks) - start + 1);
}

bool IsHexDigit(char c) { return (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'f'); }

// Letters that stand for control characters behind a backslash.
constexpr std::string_view kEscapeLetters = "abfnrtv";
constexpr std::string_view kEscaped = "\a\b\f\n\r\t\v";

std::string Escaped(std::string_view text) {
    std::string out = "\"";
    if (text.starts_with('@')) out += '@';  // one alone would announce another type
    bool afterNumber = false;
    for (const char c : text) {
        const auto letter = kEscaped.find(c);
        if (letter != kEscaped.npos) {
            out.append(1, '\\').append(1, kEscapeLetters[letter]);
        } else if (c == '"' || c == '\\') {
            out.append(1, '\\').append(1, c);
        } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F || (afterNumber && IsHexDigit(c))) {
            constexpr char kDigits[] = "0123456789abcdef";
            out.append("\\x").append(1, kDigits[c >> 4]).append(1, kDigits[c & 15]);
            afterNumber = true;
            continue;
        } else {
            out += c;
        }
        afterNumber = false;
    }
    return out + '"';
}

// Takes a backslash's escape from the front of `text`.
void TakeEscape(std::string_view& text, std::string& out) {
    const char c = text.front();
    text.remove_prefix(1);
    const auto letter = kEscapeLetters.find(c);
    if (letter != kEscapeLetters.npos) {
        out += kEscaped[letter];
    } else if (c == 'x') {
        unsigned unit = 0;
        const auto end = std::from_chars(text.data(), text.data() + text.size(), unit, 16);
        AppendUtf8(static_cast<char16_t>(unit), out);
        text.remove_prefix(static_cast<std::size_t>(end.ptr - text.data()));
    } else {
        out += c;
    }
}

std::optional<std::string> Unescaped(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const char c = text.front();
        text.remove_prefix(1);
        if (c == '\\' && !text.empty()) {
            TakeEscape(text, out);
        } else if (c != '"') {
            out += c;
        }
    }
    if (!out.starts_with('@')) return out;
    if (!out.starts_with("@@")) return std::nullopt;
    return out.substr(1);
}

// nullopt when there is a file that cannot be read: nothing is written in its place.
std::optional<std::vector<std::string>> LinesOf(const Path& path, FileError& error) {
    const PosixFile file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    std::vector<std::string> lines;
    if (!file) {
        if (errno == ENOENT) return lines;
        Fail(error);
        return std::nullopt;
    }
    Image image;
    if (!file.Read(kMaxFileSize, image, error)) return std::nullopt;
    for (std::string_view rest = image.Bytes(); !rest.empty();) {
        const auto end = rest.find('\n');
        lines.emplace_back(rest.substr(0, end));
        rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
    }
    return lines;
}

struct Place {
    std::optional<std::size_t> entry;     // the line of the value
    std::optional<std::size_t> groupEnd;  // the line behind the group's last
};

// As in the toolkit, the last of several entries counts.
Place Find(const std::vector<std::string>& lines, std::string_view group, std::string_view name) {
    Place place;
    bool inGroup = false;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string_view line = Trimmed(lines[i]);
        if (line.starts_with('[')) inGroup = line == group;
        if (!inGroup || line.empty()) continue;
        place.groupEnd = i + 1;
        const auto equals = line.find('=');
        if (equals != line.npos && Trimmed(line.substr(0, equals)) == name) place.entry = i;
    }
    return place;
}

void SetLine(std::vector<std::string>& lines, std::string_view group, std::string_view name, std::string line) {
    const Place place = Find(lines, group, name);
    if (place.entry) {
        lines[*place.entry] = std::move(line);
    } else if (place.groupEnd) {
        lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(*place.groupEnd), std::move(line));
    } else {
        if (!lines.empty()) lines.emplace_back();
        lines.emplace_back(group);
        lines.push_back(std::move(line));
    }
}

}  // namespace

Path PreferencesFile::DefaultPath() {
    const Path folder = ConfigFolder();
    return folder.empty() ? folder : folder / "Telvane" / "Quillary.conf";
}

std::optional<std::string> PreferencesFile::Value(std::string_view name) const {
    FileError none;
    const auto lines = LinesOf(m_path, none).value_or(std::vector<std::string>());
    const Place place = Find(lines, m_group, name);
    if (!place.entry) return std::nullopt;
    const std::string_view line = lines[*place.entry];
    return Unescaped(Trimmed(line.substr(line.find('=') + 1)));
}

std::int32_t PreferencesFile::ReadInt(std::string_view name, std::int32_t fallback) const {
    const auto text = Value(name);
    std::int32_t value = 0;
    if (!text) return fallback;
    const char* const end = text->data() + text->size();
    const auto read = std::from_chars(text->data(), end, value);
    return read.ec == std::errc{} && read.ptr == end ? value : fallback;
}

std::string PreferencesFile::ReadText(std::string_view name, std::string_view fallback) const {
    return Value(name).value_or(std::string(fallback));
}

bool PreferencesFile::WriteInts(std::span<const Number> numbers, std::string& reason) {
    std::vector<Entry> entries;
    for (const Number& number : numbers) entries.push_back({number.name, std::to_string(number.value)});
    FileError error;
    const bool stored = Store(entries, error);
    reason = error.reason;
    return stored;
}

bool PreferencesFile::WriteText(std::string_view name, std::string_view value) {
    const Entry entry{name, Escaped(value)};
    FileError untold;
    return Store({&entry, 1}, untold);
}

bool PreferencesFile::Store(std::span<const Entry> entries, FileError& error) {
    if (m_path.empty()) {
        error = {FileError::Kind::NotFound, "You have no home folder"};
        return false;
    }
    // A link to a file kept elsewhere stays one.
    std::error_code failed;
    Path target = std::filesystem::weakly_canonical(m_path, failed);
    if (failed) target = m_path;
    if (!MakeFolders(target.parent_path(), kPrivateFolder, error)) return false;
    // From reading to replacing, so that two programs that set different values lose neither. The folder's lock, as the
    // file is another one afterwards.
    const PosixFile folder(open(target.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder && !LockOpenFile(folder, LockKind::Exclusive, kLockWait, error)) return false;
    auto lines = LinesOf(target, error);
    if (!lines) return false;
    for (const Entry& entry : entries) {
        SetLine(*lines, m_group, entry.name, std::string(entry.name) + '=' + entry.value);
    }
    std::string text;
    for (const std::string& each : *lines) text.append(each).append("\n");

    struct stat status {};
    const mode_t mode = stat(target.c_str(), &status) == 0 ? status.st_mode & 0777 : 0600;
    // The process's own name for the second file: where there are no locks, no half of another one is taken for ours.
    return ReplaceFile(target, ".new-" + std::to_string(getpid()), {text}, mode, error);
}

}  // namespace quillary
