// Any bytes as a schema for a database with a field of each type: it is refused with a message, or every record has the
// new layout, the file is free of departures from the format, and the schema that is printed changes nothing more.
#include <string>

#include "admin/ApplySchema.h"
#include "cli/Check.h"
#include "cli/Description.h"
#include "cli/Progress.h"
#include "cli/SchemaJson.h"
#include "fuzz/FuzzCheck.h"
#include "tests/fakes/MemoryFiles.h"
#include "tests/fakes/TestDatabase.h"

namespace quillary {
namespace {

constexpr const char* kPath = "/db.pdb";
constexpr const char* kTypes[] = {"T", "F", "I7;3", "B!", "D!", "d!", "Lred;blue", "P", "M", "W"};
constexpr const char* kTexts[] = {"Ann", "12.5", "7", "yes", "36591", "43200", "red", "5551234", "a@b", "x"};

void Run(std::string_view json) {
    MemoryFiles files;
    CQuillaryDoc doc(files);
    std::vector<Field> fields;
    for (const char* type : kTypes) fields.push_back(MakeField("Field " + std::to_string(fields.size()), type));
    doc.NewDatabase("Fuzz", fields);
    std::string entries;
    for (std::size_t k = 0; k < std::size(kTexts); ++k) AppendEntry(entries, static_cast<std::uint8_t>(k), kTexts[k]);
    Failure failure;
    FUZZ_CHECK(doc.AppendRecord(entries, failure));

    std::string error;
    auto definitions = ReadSchema(json, doc, error);
    FUZZ_CHECK(definitions.has_value() == error.empty());
    if (!definitions) return;
    auto prepared = PrepareSchema(doc, std::move(*definitions), 2000, failure);
    if (!prepared) {
        FUZZ_CHECK(!failure.text.empty());
        return;
    }
    (void)ApplySchema(doc, std::move(*prepared));
    FUZZ_CHECK(doc.RecordCount() == 1);
    FUZZ_CHECK(doc.SaveDatabaseAs(kPath, "Fuzz", failure));
    Progress progress("Checking", 0, false);
    CheckImage(files.contents[kPath], AnsiText::Windows1252(), progress, [](const Departure&) {
        FUZZ_CHECK(false);
        return false;
    });
    auto same = ReadSchema(FieldsAsJson(doc), doc, error);
    FUZZ_CHECK(same);
    auto nothing = PrepareSchema(doc, std::move(*same), 2000, failure);
    FUZZ_CHECK(nothing && !ApplySchema(doc, std::move(*nothing)));
}

}  // namespace
}  // namespace quillary

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    quillary::Run({reinterpret_cast<const char*>(data), size});
    return 0;
}
