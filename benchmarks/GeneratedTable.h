// The table that the benchmarks measure: as many records as a database holds, ten fields of mixed types, texts as long
// as people write them; the same bytes at every run.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "db/FieldType.h"
#include "db/FileAccess.h"
#include "db/Layout.h"
#include "db/Messages.h"

namespace quillary {

inline constexpr std::size_t kGeneratedRecords = kMaxRecords;
inline constexpr std::size_t kGeneratedFields = 10;
/// No cell holds it, in either case.
inline constexpr char16_t kAbsentText[] = u"Xylophone";

[[nodiscard]] std::vector<Field> GeneratedFields();
/// The texts of record `row` as a database stores them.
[[nodiscard]] std::array<std::string, kGeneratedFields> GeneratedTexts(std::size_t row);

/// Makes a new database of the whole table, about 9.8 MB.
[[nodiscard]] bool WriteGeneratedDatabase(FileAccess& files, const Path& path, Failure& failure);

/// The whole table as CSV: a header row, UTF-8, CR LF; dates and times as YYYY-MM-DD and HH:MM.
[[nodiscard]] std::string GeneratedCsv();

/// `field` as the commands that make a database take it, for example "Room:list:Attic;Cellar".
[[nodiscard]] std::string DefinitionText(const Field& field);

}  // namespace quillary
