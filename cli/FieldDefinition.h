// Reads the definition of a field as a command line gives it: NAME:TYPE or NAME:TYPE:OPTIONS.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/ExitStatus.h"
#include "db/AnsiText.h"
#include "db/FieldType.h"

namespace quillary {

struct DefinitionError {
    ExitStatus status = ExitStatus::Done;  // WrongUsage when it is no definition, Refused when no database can hold it
    std::string text;
};

[[nodiscard]] std::optional<Field> ParseFieldDefinition(std::string_view definition, const AnsiText& page,
                                                        DefinitionError& error);
[[nodiscard]] std::optional<std::vector<Field>> ParseFieldDefinitions(const std::vector<std::string>& definitions,
                                                                      const AnsiText& page, DefinitionError& error);

}  // namespace quillary
