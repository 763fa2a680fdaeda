#include "cli/FieldDefinition.h"

#include <charconv>

#include "admin/FieldNames.h"
#include "cli/Text.h"
#include "db/Layout.h"
#include "db/Messages.h"
#include "db/TextEntry.h"
#include "db/Utf.h"

namespace quillary {

namespace {

std::vector<std::string_view> SplitOptions(std::string_view text) {
    std::vector<std::string_view> parts;
    for (auto end = text.find(';'); end != text.npos; end = text.find(';')) {
        parts.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    parts.push_back(text);
    return parts;
}

class Parser {
  public:
    Parser(std::string_view definition, const AnsiText& page, DefinitionError& error)
        : m_definition(definition), m_page(page), m_error(error) {}

    std::optional<Field> Parse() {
        const auto nameEnd = m_definition.find(':');
        if (nameEnd == m_definition.npos) return Misused("it has no type");
        const std::string_view name = m_definition.substr(0, nameEnd);
        const std::string_view rest = m_definition.substr(nameEnd + 1);
        const auto typeEnd = rest.find(':');
        const auto type = FieldTypeFromCommandName(rest.substr(0, typeEnd));
        if (!type) return UnknownType(rest.substr(0, typeEnd));

        m_field.type = *type;
        if (typeEnd != rest.npos && typeEnd + 1 < rest.size() && !ReadOptions(rest.substr(typeEnd + 1))) {
            return std::nullopt;
        }
        auto stored = Stored(name, StoredFieldName);
        if (!stored) return std::nullopt;
        m_field.name = std::move(*stored);
        return m_field;
    }

  private:
    std::nullopt_t Misused(const std::string& why) {
        m_error = {ExitStatus::WrongUsage, Quoted(m_definition) + " is no definition of a field: " + why +
                                               ". It is NAME:TYPE or NAME:TYPE:OPTIONS."};
        return std::nullopt;
    }
    std::nullopt_t Refused(std::string text) {
        m_error = {ExitStatus::Refused, std::move(text)};
        return std::nullopt;
    }
    std::nullopt_t UnknownType(std::string_view type) {
        std::vector<std::string_view> names;
        for (const FieldTypeInfo& info : AllFieldTypes()) names.push_back(info.commandName);
        const std::string hint = NearestNameHint(type, names);
        m_error = {ExitStatus::WrongUsage, "There is no field type " + Quoted(type) + "." +
                                               (hint.empty() ? " \"qly help new\" lists them." : hint)};
        return std::nullopt;
    }

    std::optional<std::string> Stored(std::string_view text, decltype(StoredFieldName) store) {
        const auto wide = Utf8ToWide(text);
        if (!wide) return Refused(Quoted(text) + " is no UTF-8 text.");
        Failure failure;
        auto stored = store(*wide, m_page, failure);
        if (!stored) return Refused(failure.text);
        return stored;
    }

    // The only option of a type that has one at most.
    bool ReadFlag(std::string_view text, std::string_view name, bool& flag) {
        flag = text == name;
        if (!flag) Misused("its type has no option " + Quoted(text));
        return flag;
    }
    bool ReadInteger(std::string_view text, std::int32_t& value) {
        const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
        if (IsPlainInteger(text) && result.ec == std::errc() && result.ptr == text.data() + text.size()) return true;
        Misused(Quoted(text) + " is no whole number of 32 bits");
        return false;
    }
    bool ReadItems(std::string_view text) {
        for (const std::string_view item : SplitOptions(text)) {
            auto stored = Stored(item, StoredListItem);
            if (!stored) return false;
            m_field.options.items.push_back(std::move(*stored));
        }
        return true;
    }
    bool ReadOptions(std::string_view text) {
        FieldOptions& options = m_field.options;
        switch (m_field.type) {
            case FieldType::Text:
                return ReadFlag(text, "capitalize", options.capitalize);
            case FieldType::Checkbox:
                return ReadFlag(text, "checked", options.checked);
            case FieldType::Date:
                return ReadFlag(text, "today", options.today);
            case FieldType::Time:
                return ReadFlag(text, "now", options.now);
            case FieldType::List:
                return ReadItems(text);
            case FieldType::Sequence: {
                const auto numbers = SplitOptions(text);
                if (numbers.size() > 2) {
                    Misused("a sequence has a next value and an increment");
                    return false;
                }
                return ReadInteger(numbers[0], options.first) &&
                       (numbers.size() < 2 || ReadInteger(numbers[1], options.increment));
            }
            default:
                Misused("its type has no options");
                return false;
        }
    }

    std::string_view m_definition;
    const AnsiText& m_page;
    DefinitionError& m_error;
    Field m_field;
};

}  // namespace

std::optional<Field> ParseFieldDefinition(std::string_view definition, const AnsiText& page, DefinitionError& error) {
    return Parser(definition, page, error).Parse();
}

std::optional<std::vector<Field>> ParseFieldDefinitions(const std::vector<std::string>& definitions,
                                                        const AnsiText& page, DefinitionError& error) {
    std::vector<Field> fields;
    for (const std::string& definition : definitions) {
        auto field = ParseFieldDefinition(definition, page, error);
        if (!field) return std::nullopt;
        fields.push_back(std::move(*field));
    }
    if (fields.size() > kMaxFields) {
        error = {ExitStatus::Refused, "A database has at most " + std::to_string(kMaxFields) + " fields."};
        return std::nullopt;
    }
    return fields;
}

}  // namespace quillary
