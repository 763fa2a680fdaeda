#include "catalogue-server/Answers.h"

#include <algorithm>

#include "catalogue-server/Texts.h"
#include "db/Utf.h"

namespace quillary {

namespace {

constexpr std::string_view kFieldEnd = "^!";
constexpr const char* kNoResults = "0:-1:0:";

enum class Lines { Blank, Kept };

// Control characters become blanks; kept line ends become CR LF.
std::u16string WithoutControls(std::u16string_view text, Lines lines) {
    std::u16string clean;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        const bool endsLine = c == u'\n' || c == u'\r';
        if (lines == Lines::Kept && endsLine) {
            if (c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') ++i;
            clean += u"\r\n";
        } else {
            clean += c < 0x20 || (c >= 0x7F && c <= 0x9F) ? u' ' : c;
        }
    }
    return clean;
}

// A character that the code page lacks becomes "?".
std::string InPage(std::u16string_view text, const AnsiText& page) {
    if (auto bytes = page.FromWide(text)) return *bytes;
    std::string bytes;
    while (!text.empty()) {
        const bool isPair = text.size() > 1 && (text[0] & 0xFC00) == 0xD800 && (text[1] & 0xFC00) == 0xDC00;
        const std::size_t length = isPair ? 2 : 1;
        bytes += page.FromWide(text.substr(0, length)).value_or("?");
        text.remove_prefix(length);
    }
    return bytes;
}

class Answer {
  public:
    explicit Answer(const AnsiText& page) : m_page(page) {}

    void Add(std::string_view utf8, Lines lines = Lines::Blank) {
        std::string bytes = InPage(WithoutControls(Utf8ToWide(utf8).value_or(u"?"), lines), m_page);
        // What would end the field is drawn apart.
        for (std::size_t at = bytes.find(kFieldEnd); at != bytes.npos; at = bytes.find(kFieldEnd, at)) {
            bytes.insert(at + 1, 1, ' ');
        }
        m_text.append(bytes).append(kFieldEnd);
    }
    void AddPage(std::size_t first, std::size_t count, std::size_t total) {
        // The last index of no results lies before the first.
        m_text += std::to_string(first) + ":" + (first + count == 0 ? "-1" : std::to_string(first + count - 1)) + ":" +
                  std::to_string(total) + ":";
    }
    [[nodiscard]] std::string Take() { return std::move(m_text); }

  private:
    const AnsiText& m_page;
    std::string m_text;
};

}  // namespace

std::string SearchAnswer(const SearchPage& page, const AnsiText& codePage) {
    if (page.total == 0) return kNoResults;
    Answer answer(codePage);
    answer.AddPage(page.rows.empty() ? page.total : page.first, page.rows.size(), page.total);
    for (const Publication* row : page.rows) {
        answer.Add(row->title);
        answer.Add(row->docId);
        answer.Add(row->fileId);
        answer.Add(row->kind == PublicationKind::Package ? kPackageKind : kDatabaseKind);
        answer.Add(KilobytesText(row->size));
    }
    return answer.Take();
}

std::string DetailsAnswer(const Publication& publication, const AnsiText& codePage) {
    Answer answer(codePage);
    answer.Add(publication.author);
    answer.Add(publication.category);
    answer.Add(publication.description, Lines::Kept);
    answer.Add(publication.language);
    answer.Add(publication.updated);
    answer.Add(publication.notes, Lines::Kept);
    answer.Add(publication.rating);
    answer.Add(publication.downloads);
    return answer.Take();
}

std::string PackageAnswer(const Publication& publication, const AnsiText& codePage) {
    if (publication.files.empty()) return kNoResults;
    Answer answer(codePage);
    answer.AddPage(0, publication.files.size(), publication.files.size());
    for (const PackageFile& file : publication.files) {
        answer.Add(file.name);
        answer.Add(PackageFilePath(publication, file));
        answer.Add(file.id);
        answer.Add(kPackageFileKind);
        answer.Add(KilobytesText(file.size));
    }
    return answer.Take();
}

std::string PackageFilePath(const Publication& publication, const PackageFile& file) {
    return kPackagePath + publication.fileId + "/" + file.id;
}

}  // namespace quillary
