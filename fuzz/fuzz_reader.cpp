// Any bytes as a database file: opening, showing, sorting, filtering, finding, changing and saving never go out of
// bounds, and a file that was saved once comes back with the same records and the same bytes.
#include <string>

#include "db/QuillaryDoc.h"
#include "db/RecordCommit.h"
#include "fuzz/FuzzCheck.h"
#include "fuzz/ImageMutator.h"
#include "platform/posix/CodePages.h"
#include "query/Filter.h"
#include "query/Find.h"
#include "query/Sort.h"
#include "tests/fakes/MemoryFiles.h"

namespace quillary {
namespace {

constexpr const char* kPath = "/db.pdb";

struct OpenAll : Questions {
    void Tell(const Failure&) override {}
    bool AskDatabasePassword(const CQuillaryDoc&) override { return true; }
};

// Every text that a user could see, hidden records included.
std::string AllTexts(const CQuillaryDoc& doc) {
    std::string texts;
    EntryTable entries;
    const auto append = [&](const RecordRef& record) {
        entries.Fill(record.Entries(), doc.FieldCount());
        for (std::size_t k = 0; k < doc.FieldCount(); ++k) {
            if (entries.Has(k)) doc.AppendDisplay(entries.Text(k), k, texts);
            texts += '\0';
        }
    };
    for (const RecordRef& record : doc.Shown()) append(record);
    texts += "hidden";
    for (const RecordRef& record : doc.Hidden()) append(record);
    return texts;
}

// One image in eight is read in a page with characters of two bytes.
const AnsiText& PageFor(std::string_view bytes) {
    static const auto kTwoBytes = CodePageByName("cp932");
    FUZZ_CHECK(kTwoBytes && !kTwoBytes->IsSingleByte());
    return bytes.size() % 8 == 7 ? *kTwoBytes : AnsiText::Windows1252();
}

void Filter(CQuillaryDoc& doc) {
    const std::size_t count = doc.RecordCount();
    ApplyFilter(doc);
    FUZZ_CHECK(doc.RecordCount() == count);
    RecordFilter filter(doc);
    if (filter.IsEmpty()) return;
    for (const RecordRef& record : doc.Shown()) FUZZ_CHECK(filter.Passes(record.Entries()));
}

void Run(std::string_view bytes) {
    MemoryFiles files;
    OpenAll questions;
    files.contents[kPath] = bytes;
    const AnsiText& page = PageFor(bytes);
    CQuillaryDoc doc(files, page);
    if (!doc.OpenDatabase(kPath, OpenMode::Edit, questions)) return;
    (void)RecordFinder(doc, u"a%", RecordFinder::kAllFields).FindFrom(0);
    const std::string before = AllTexts(doc);

    Failure failure;
    doc.SetStyle(doc.Style() == DateStyle::Long ? DateStyle::Numeric : DateStyle::Long);
    FUZZ_CHECK(doc.SaveDatabase(failure));
    const std::string written = files.contents[kPath];

    CQuillaryDoc again(files, page);
    FUZZ_CHECK(again.OpenDatabase(kPath, OpenMode::Edit, questions));
    FUZZ_CHECK(again.RecordCount() == doc.RecordCount() && again.LossBySaving().empty());
    FUZZ_CHECK(AllTexts(again) == AllTexts(doc));
    again.SetStyle(again.Style() == DateStyle::Long ? DateStyle::Numeric : DateStyle::Long);
    FUZZ_CHECK(AllTexts(again) == before);
    doc.SetStyle(again.Style());
    const bool wideKeys = static_cast<std::int32_t>(doc.DatabasePasswordHash()) >= 3;
    FUZZ_CHECK(again.SaveDatabase(failure) && doc.OverwriteDatabase(failure));
    if (!wideKeys) {
        const std::string twice = files.contents[kPath];
        CQuillaryDoc third(files, page);
        FUZZ_CHECK(third.OpenDatabase(kPath, OpenMode::Edit, questions) && third.OverwriteDatabase(failure));
        FUZZ_CHECK(files.contents[kPath] == twice && twice.size() == written.size());
    }

    SortRecords(doc);
    Filter(doc);
    const auto snapshot = doc.Snapshot();
    if (!doc.Shown().empty()) {
        const std::size_t row = doc.Shown().size() / 2;
        bool changed = false;
        const std::size_t last = doc.FieldCount() - 1;
        const std::string kept(doc.Shown()[row].Entries());
        if (!CommitRecord(doc, row, std::vector<EnteredValue>{{last, "new"}}, changed, failure)) {
            // What stays in the record may be in the way of a new text.
            FUZZ_CHECK(failure.message == Message::HidesField || failure.message == Message::OutOfOrder ||
                       failure.message == Message::TextsOverlap);
            FUZZ_CHECK(doc.Shown()[row].Entries() == kept);
        }
        doc.RemoveRecord(0);
    }
    (void)doc.SaveDatabase(failure);
    doc.Restore(*snapshot);
    (void)AllTexts(doc);
}

}  // namespace
}  // namespace quillary

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    quillary::Run({reinterpret_cast<const char*>(data), size});
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
    return quillary::MutateImage(data, size, maxSize, seed);
}
