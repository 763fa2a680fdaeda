// Any bytes as a CSV table: either it is refused with a message, or the database that it becomes is free of departures
// from the format and holds one record a row.
#include <string>

#include "cli/Check.h"
#include "cli/Import.h"
#include "fuzz/FuzzCheck.h"
#include "tests/fakes/MemoryFiles.h"

namespace quillary {
namespace {

constexpr const char* kPath = "/db.pdb";

struct NoQuestions : Questions {
    void Tell(const Failure&) override {}
    bool AskDatabasePassword(const CQuillaryDoc&) override { return false; }
};

// The first byte chooses the rules: bit 0 lenient, bit 1 fit, bits 2-3 the given date order.
void Run(std::string_view bytes) {
    if (bytes.empty()) return;
    const auto choice = static_cast<unsigned char>(bytes[0]);
    const std::string_view table = bytes.substr(1);
    ImportRules rules{AnsiText::Windows1252(), std::nullopt,     DateOrder::MonthDayYear, 2000,
                      (choice & 1) != 0,       (choice & 2) != 0};
    if (const unsigned order = choice >> 2 & 3; order < 3) rules.givenOrder = static_cast<DateOrder>(order);

    std::string error;
    Progress progress("Importing", table.size(), false);
    auto fields = FieldsForTable(table, {}, rules, progress, error);
    FUZZ_CHECK(fields.has_value() == error.empty());
    if (!fields) return;
    FUZZ_CHECK(!fields->empty() && fields->size() <= kMaxFields);

    MemoryFiles files;
    CQuillaryDoc doc(files);
    doc.NewDatabase("Fuzz", *fields);
    ImportResult result;
    if (!ImportTable(doc, table, rules, progress, result, error)) {
        FUZZ_CHECK(!error.empty());
        return;
    }
    // Every value of a guessed type reads as it.
    FUZZ_CHECK(result.emptied == 0 && result.records == doc.RecordCount());
    Failure failure;
    FUZZ_CHECK(doc.SaveDatabaseAs(kPath, "Fuzz", failure));
    CheckImage(files.contents[kPath], rules.page, progress, [](const Departure&) {
        FUZZ_CHECK(false);
        return false;
    });
    NoQuestions questions;
    CQuillaryDoc again(files);
    FUZZ_CHECK(again.OpenDatabase(kPath, OpenMode::Read, questions) && again.RecordCount() == result.records);
}

}  // namespace
}  // namespace quillary

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    quillary::Run({reinterpret_cast<const char*>(data), size});
    return 0;
}
