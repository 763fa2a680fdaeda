// Databases for tests: images put together byte by byte, without the writer that is under test, and documents made from
// them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "db/QuillaryDoc.h"
#include "tests/fakes/MemoryFiles.h"

namespace quillary {

/// Bytes from hexadecimal digits; blanks and line ends are skipped.
[[nodiscard]] std::string FromHex(std::string_view hex);

/// A record's bytes behind its header and before its end mark.
[[nodiscard]] std::string Entries(const std::vector<std::string>& texts);

/// A file image as another program may have made it. Every member can be set to something odd.
struct ImageParts {
    struct Record {
        std::uint8_t attributes;
        std::string bytes;  // whole, header and end mark included
    };
    std::string name = "Test";
    std::uint16_t version = 0;
    bool hasAppInfo = true;
    std::uint16_t formatVersion = 3;
    std::uint32_t lockWord = 0;
    std::string tail;  // replaces the 138 bytes of conditions and the sort keys from offset 290 on, when not empty
    std::vector<Record> records;

    /// DataType, FieldLabels, FieldLengths and Preferences records.
    void AddSchema(const std::vector<std::string>& names, const std::vector<std::string>& types,
                   const std::vector<std::string>& widths = {}, std::string_view infoText = {},
                   std::string_view lock = "0");
    void Add(std::uint8_t attributes, const std::vector<std::string>& texts);
    [[nodiscard]] std::string Build() const;
};

/// Answers password questions from a list and keeps what was told.
class ScriptedQuestions : public Questions {
  public:
    std::vector<Message> told;
    std::u16string password;
    int asked = 0;

    void Tell(const Failure& failure) override { told.push_back(failure.message); }
    bool AskDatabasePassword(const CQuillaryDoc& doc) override {
        ++asked;
        return doc.CheckDatabasePassword(password);
    }
};

/// A field with a type text as it is stored.
[[nodiscard]] Field MakeField(std::string_view name, std::string_view storedType);

/// The display or stored texts of all shown records, "<none>" for a missing entry.
[[nodiscard]] std::vector<std::vector<std::string>> ShownTexts(const CQuillaryDoc& doc, bool formatted = false);

}  // namespace quillary
