// Writes the seed corpora with our own writer: make_seeds FOLDER makes FOLDER/reader and FOLDER/recovery.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "db/QuillaryDoc.h"
#include "tests/fakes/TestDatabase.h"

namespace quillary {
namespace {

constexpr const char* kPath = "/db.pdb";

// Keeps the recovery file of the last save.
class RecordingFiles : public MemoryFiles {
  public:
    std::string recovery;
    bool WriteRecovery(const Path& path, std::string_view head, std::string_view body, FileError& error) override {
        recovery = std::string(head).append(body);
        return MemoryFiles::WriteRecovery(path, head, body, error);
    }
};

void Write(const std::filesystem::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// The fuzzed pair: two bytes for the length of the database file, the file, the recovery file.
std::string Pair(const std::string& file, const std::string& recovery) {
    return std::string{static_cast<char>(file.size() >> 8), static_cast<char>(file.size())} + file + recovery;
}

bool Make(const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder / "reader");
    std::filesystem::create_directories(folder / "recovery");
    constexpr const char* kTypes[] = {"T", "F", "I7;3", "B!", "D!", "d!", "Lred;blue", "P", "M", "W"};
    constexpr const char* kTexts[] = {"Ann\r\n100% %d", "12.5", "7",       "yes", "36591",
                                      "43200",          "red",  "5551234", "a@b", "x"};
    RecordingFiles files;
    Failure failure;
    for (const std::size_t fieldCount : {1u, 10u, 20u}) {
        files.contents.erase(kPath);
        CQuillaryDoc doc(files);
        std::vector<Field> fields;
        for (std::size_t k = 0; k < fieldCount; ++k)
            fields.push_back(MakeField("Field " + std::to_string(k), kTypes[k % 10]));
        doc.NewDatabase("Seed", fields);
        for (std::size_t row = 0; row < 4; ++row) {
            std::string entries;
            for (std::size_t k = 0; k + row < fieldCount + 1 && k < fieldCount; ++k) {
                AppendEntry(entries, static_cast<std::uint8_t>(k), row == 2 ? "" : kTexts[k % 10]);
            }
            if (!doc.AppendRecord(entries, failure)) return false;
        }
        if (!doc.SaveDatabaseAs(kPath, "Seed", failure)) return false;
        const std::string plain = files.contents[kPath];
        const std::string stem = std::to_string(fieldCount) + "-fields";
        Write(folder / "reader" / (stem + ".pdb"), plain);

        doc.SetSort({{"Field 0", true}});
        doc.SetFilter({{{false, "Field 0", 1, "Ann"}, {true, "", 1, ""}}, true, false});
        doc.SetInfo("About", 99);
        if (fieldCount == 10) doc.SetDatabasePassword(u"secret");
        if (!doc.SaveDatabase(failure)) return false;
        const std::string changed = files.contents[kPath];
        Write(folder / "reader" / (stem + "-settings.pdb"), changed);
        Write(folder / "recovery" / (stem + "-old"), Pair(plain, files.recovery));
        Write(folder / "recovery" / (stem + "-new"), Pair(changed, files.recovery));
        std::string mixture = plain;
        const std::size_t written = std::min<std::size_t>(512, changed.size());
        mixture.replace(0, written, changed, 0, written);
        Write(folder / "recovery" / (stem + "-mixture"), Pair(mixture, files.recovery));
    }
    return true;
}

}  // namespace
}  // namespace quillary

int main(int argc, char** argv) {
    if (argc != 2 || !quillary::Make(argv[1])) {
        std::fprintf(stderr, "usage: make_seeds FOLDER\n");
        return 1;
    }
    return 0;
}
