#include "catalogue-server/FileFacts.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "admin/DatabasePath.h"
#include "catalogue-server/DatabaseFile.h"
#include "catalogue-server/Package.h"
#include "catalogue-server/Texts.h"
#include "db/Ascii.h"

namespace quillary {

namespace {

constexpr std::string_view kPackageEnding = ".zip";

bool IsPackageName(std::string_view name) {
    return name.size() > kPackageEnding.size() &&
           std::equal(kPackageEnding.begin(), kPackageEnding.end(), name.end() - kPackageEnding.size(),
                      [](char a, char b) { return a == AsciiLower(b); });
}

// YYYY-MM-DD
std::string DateText(std::int64_t secondsSinceEpoch) {
    using namespace std::chrono;
    const year_month_day date{floor<days>(sys_seconds{seconds{secondsSinceEpoch}})};
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    return text;
}

}  // namespace

bool IsPublishedName(std::string_view name) { return EndsInExtension(name) || IsPackageName(name); }

bool ReadFacts(PosixFile file, const Path& path, const AnsiText& page, FileFacts& facts, FileStamp& stamp,
               FileError& error) {
    if (IsPackageName(path.native())) {
        const auto package = Package::Open(std::move(file), error);
        if (!package) return false;
        facts.kind = PublicationKind::Package;
        facts.files = package->Files();
        for (const PackageFile& inside : facts.files) facts.size += inside.size;
        stamp = package->Stamp();
        return true;
    }
    WholeDatabase database;
    if (!ReadWholeDatabase(std::move(file), path, database, error)) return false;
    DatabaseTexts texts = TextsOf(database.image->Bytes(), page);
    facts.kind = PublicationKind::Database;
    facts.name = std::move(texts.name);
    facts.infoText = std::move(texts.infoText);
    facts.size = database.image->Size();
    stamp = database.stamp;
    return true;
}

Publication MakePublication(const std::string& path, const FileFacts& facts, const FileStamp& stamp,
                            const PublishedTexts* texts) {
    static const PublishedTexts kNone;
    if (!texts) texts = &kNone;
    Publication publication;
    publication.path = path;
    SetIds(publication);
    publication.kind = facts.kind;
    publication.title = std::string(TrimmedText(texts->title.value_or(facts.name)));
    if (publication.title.empty()) publication.title = ValidText(Path(path).stem().native());
    publication.title = std::string(BeginningOf(publication.title, kLongestName));
    publication.category = std::string(TrimmedText(texts->category.value_or("")));
    publication.author = texts->author.value_or("");
    publication.description = texts->description.value_or(facts.infoText);
    publication.language = texts->language.value_or("");
    publication.updated = texts->updated.value_or(DateText(stamp.modifiedNs / 1'000'000'000));
    publication.notes = texts->notes.value_or("");
    publication.rating = texts->rating.value_or("");
    publication.downloads = texts->downloads.value_or("");
    publication.size = facts.size;
    publication.files = facts.files;
    return publication;
}

}  // namespace quillary
