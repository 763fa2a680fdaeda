#include "cli/SchemaJson.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>

#include "admin/FieldNames.h"
#include "cli/Text.h"
#include "db/Utf.h"

namespace quillary {

namespace {

using Json = nlohmann::json;

constexpr std::string_view kDateOrders[] = {"M/D/Y", "D.M.Y", "Y-M-D"};  // in the order of DateOrder

class SchemaReader {
  public:
    SchemaReader(const CQuillaryDoc& doc, std::string& error) : m_doc(doc), m_error(error) {}

    std::optional<std::vector<FieldDefinition>> Read(std::string_view text) {
        std::vector<std::set<std::string>> keys;  // of the objects that are open
        std::string repeated;
        const auto noteKeys = [&](int /*depth*/, Json::parse_event_t event, Json& parsed) {
            if (event == Json::parse_event_t::object_start) keys.emplace_back();
            if (event == Json::parse_event_t::object_end) keys.pop_back();
            const bool isRepeated = event == Json::parse_event_t::key && !keys.back().insert(parsed).second;
            if (isRepeated) repeated = parsed;
            return true;
        };
        const Json schema = Json::parse(text, noteKeys, false);
        if (!repeated.empty()) {
            m_error = "The schema gives " + Quoted(repeated) + " twice for one field.";
            return std::nullopt;
        }
        if (schema.is_discarded() || !schema.is_array()) {
            m_error = "The schema is no JSON list of fields.";
            return std::nullopt;
        }
        std::vector<FieldDefinition> definitions;
        for (const Json& json : schema) {
            ++m_position;
            FieldDefinition definition;
            if (!ReadField(json, definition)) return std::nullopt;
            definitions.push_back(std::move(definition));
        }
        return definitions;
    }

  private:
    bool Fail(const std::string& why) {
        m_error = "Field " + std::to_string(m_position) + " of the schema: " + why;
        return false;
    }

    bool CheckKeys(const Json& object, std::initializer_list<std::string_view> known, std::string_view what) {
        if (!object.is_object()) return Fail(std::string(what) + " is no JSON object.");
        for (const auto& [key, value] : object.items()) {
            if (std::find(known.begin(), known.end(), key) != known.end()) continue;
            return Fail(std::string(what) + " has no " + Quoted(key) + "." + NearestNameHint(key, known));
        }
        return true;
    }

    bool ReadField(const Json& json, FieldDefinition& definition) {
        if (!CheckKeys(json, {"name", "type", "width", "from", "options"}, "it")) return false;
        if (json.contains("from") && !ReadFrom(json["from"], definition)) return false;
        Field& field = definition.field;
        if (definition.from) field = m_doc.Fields()[*definition.from];
        if (!json.contains("name") || !json["name"].is_string()) return Fail("it has no name.");
        if (!json.contains("type") || !json["type"].is_string()) return Fail("it has no type.");
        if (!ReadName(json["name"].get_ref<const std::string&>(), definition)) return false;

        const auto& typeName = json["type"].get_ref<const std::string&>();
        const auto type = FieldTypeFromCommandName(typeName);
        if (!type) return Fail("there is no field type " + Quoted(typeName) + ".");
        field.type = *type;
        if (json.contains("width") && !ReadInteger(json["width"], "its width", field.width)) return false;

        const std::vector<std::string> oldItems = std::move(field.options.items);
        field.options = {};
        return !json.contains("options") || ReadOptions(json["options"], oldItems, definition);
    }

    bool ReadFrom(const Json& json, FieldDefinition& definition) {
        if (!json.is_number_unsigned() || json.get<std::uint64_t>() >= m_doc.FieldCount()) {
            return Fail("\"from\" is a position from 0 to " + std::to_string(m_doc.FieldCount() - 1) + ".");
        }
        const auto from = json.get<std::size_t>();
        if (std::find(m_taken.begin(), m_taken.end(), from) != m_taken.end()) {
            return Fail("an earlier field comes from position " + std::to_string(from) + " already.");
        }
        m_taken.push_back(from);
        definition.from = from;
        return true;
    }

    bool ReadName(const std::string& name, FieldDefinition& definition) {
        if (definition.from && name == m_doc.Page().ToUtf8(definition.field.name)) return true;
        Failure failure;
        auto stored = StoredFieldName(Wide(name), m_doc.Page(), failure);
        if (!stored) return Fail(failure.text);
        definition.field.name = std::move(*stored);
        return true;
    }

    bool ReadInteger(const Json& json, const std::string& what, std::int32_t& value) {
        using Limits = std::numeric_limits<std::int32_t>;
        const bool fits = json.is_number_unsigned()
                              ? json.get<std::uint64_t>() <= std::uint64_t{Limits::max()}
                              : json.is_number_integer() && json.get<std::int64_t>() >= Limits::min();
        if (!fits) return Fail(what + " is no whole number of 32 bits.");
        value = json.get<std::int32_t>();
        return true;
    }

    bool ReadFlag(const Json& options, std::string_view name, bool& flag) {
        const auto found = options.find(name);
        if (found == options.end()) return true;
        if (!found->is_boolean()) return Fail("its " + Quoted(name) + " is neither true nor false.");
        flag = found->get<bool>();
        return true;
    }

    bool ReadOptions(const Json& json, const std::vector<std::string>& oldItems, FieldDefinition& definition) {
        FieldOptions& options = definition.field.options;
        constexpr std::string_view kWhat = "\"options\" of this type";
        switch (definition.field.type) {
            case FieldType::Text:
                return CheckKeys(json, {"capitalize"}, kWhat) && ReadFlag(json, "capitalize", options.capitalize);
            case FieldType::Checkbox:
                return CheckKeys(json, {"checked"}, kWhat) && ReadFlag(json, "checked", options.checked);
            case FieldType::Time:
                return CheckKeys(json, {"now"}, kWhat) && ReadFlag(json, "now", options.now);
            case FieldType::Date:
                return CheckKeys(json, {"today", "convertFrom"}, kWhat) && ReadFlag(json, "today", options.today) &&
                       ReadDateOrder(json, definition.convertFrom);
            case FieldType::Sequence:
                return CheckKeys(json, {"first", "increment"}, kWhat) &&
                       (!json.contains("first") || ReadInteger(json["first"], "its first value", options.first)) &&
                       (!json.contains("increment") ||
                        ReadInteger(json["increment"], "its increment", options.increment));
            case FieldType::List:
                return CheckKeys(json, {"items"}, kWhat) && ReadItems(json, oldItems, options.items);
            default:
                return CheckKeys(json, {}, kWhat);
        }
    }

    bool ReadDateOrder(const Json& options, DateOrder& order) {
        const auto found = options.find("convertFrom");
        if (found == options.end()) return true;
        const auto* name = found->get_ptr<const std::string*>();
        const auto* known = name ? std::find(std::begin(kDateOrders), std::end(kDateOrders), *name) : nullptr;
        if (!known || known == std::end(kDateOrders)) return Fail("\"convertFrom\" is M/D/Y, D.M.Y or Y-M-D.");
        order = static_cast<DateOrder>(known - std::begin(kDateOrders));
        return true;
    }

    bool ReadItems(const Json& options, const std::vector<std::string>& oldItems, std::vector<std::string>& items) {
        const auto found = options.find("items");
        if (found == options.end()) return true;
        if (!found->is_array()) return Fail("\"items\" is no list of texts.");
        for (const Json& json : *found) {
            const auto* item = json.get_ptr<const std::string*>();
            if (!item) return Fail("\"items\" is no list of texts.");
            const auto old = std::find_if(oldItems.begin(), oldItems.end(), [&](const std::string& bytes) {
                return m_doc.Page().ToUtf8(bytes) == *item;
            });
            if (old != oldItems.end()) {
                items.push_back(*old);
                continue;
            }
            Failure failure;
            auto stored = StoredListItem(Wide(*item), m_doc.Page(), failure);
            if (!stored) return Fail(failure.text);
            items.push_back(std::move(*stored));
        }
        return true;
    }

    // The JSON reader has refused what is no UTF-8.
    static std::u16string Wide(const std::string& text) { return Utf8ToWide(text).value_or(std::u16string()); }

    const CQuillaryDoc& m_doc;
    std::string& m_error;
    std::size_t m_position = 0;  // of the field at hand, from 1
    std::vector<std::size_t> m_taken;
};

}  // namespace

std::optional<std::vector<FieldDefinition>> ReadSchema(std::string_view json, const CQuillaryDoc& doc,
                                                       std::string& error) {
    return SchemaReader(doc, error).Read(json);
}

}  // namespace quillary
