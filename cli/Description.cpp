#include "cli/Description.h"

#include <nlohmann/json.hpp>

#include "db/Utf.h"

namespace quillary {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kIndent = 2;

Json OptionsOf(const CQuillaryDoc& doc, const Field& field) {
    const FieldOptions& options = field.options;
    switch (field.type) {
        case FieldType::Text:
            return {{"capitalize", options.capitalize}};
        case FieldType::Sequence:
            return {{"first", options.first}, {"increment", options.increment}};
        case FieldType::Checkbox:
            return {{"checked", options.checked}};
        case FieldType::Date:
            return {{"today", options.today}};
        case FieldType::Time:
            return {{"now", options.now}};
        case FieldType::List: {
            Json items = Json::array();
            for (const std::string& item : options.items) items.push_back(doc.Page().ToUtf8(item));
            return {{"items", items}};
        }
        default:
            return Json::object();
    }
}

Json FieldOf(const CQuillaryDoc& doc, std::size_t k) {
    const Field& field = doc.Fields()[k];
    return {{"name", doc.Page().ToUtf8(field.name)},
            {"type", std::string(InfoOf(field.type).commandName)},
            {"width", field.width}};
}

Json FilterOf(const CQuillaryDoc& doc) {
    const FilterSettings& filter = doc.Filter();
    Json conditions = Json::array();
    for (const FilterCondition& condition : filter.conditions) {
        const std::string_view operation = OperatorText(doc, condition);
        conditions.push_back({{"field", condition.allFields ? Json() : Json(doc.Page().ToUtf8(condition.field))},
                              {"operator", operation.empty() ? Json() : Json(std::string(operation))},
                              {"value", doc.Page().ToUtf8(condition.value)}});
    }
    const bool any = filter.matchAny && filter.conditions.size() > 1;
    return {{"combine", any ? "or" : "and"}, {"conditions", conditions}};
}

}  // namespace

std::string_view OperatorText(const CQuillaryDoc& doc, const FilterCondition& condition) {
    auto operators = AllFieldsOperators();
    if (!condition.allFields) {
        const auto field = doc.FieldByName(condition.field);
        if (!field) return {};
        operators = InfoOf(doc.TypeOf(*field)).operators;
    }
    return condition.operation < operators.size() ? operators[condition.operation] : std::string_view{};
}

std::string InfoAsJson(const CQuillaryDoc& doc) {
    Json fields = Json::array();
    for (std::size_t k = 0; k < doc.FieldCount(); ++k) {
        Json field = FieldOf(doc, k);
        field["options"] = OptionsOf(doc, doc.Fields()[k]);
        fields.push_back(std::move(field));
    }
    Json sort = Json::array();
    for (const SortKey& key : doc.Sort()) {
        sort.push_back({{"field", doc.Page().ToUtf8(key.field)}, {"descending", key.descending}});
    }
    const Json info = {{"name", WideToUtf8(doc.Name())},
                       {"formatVersion", doc.FormatVersion()},
                       {"locked", doc.DatabasePasswordHash() != 0},
                       {"longDates", doc.Style() == DateStyle::Long},
                       {"editOnSelect", doc.EditOnSelect()},
                       {"shown", doc.Shown().size()},
                       {"hidden", doc.Hidden().size()},
                       {"infoText", WideToUtf8(doc.InfoText())},
                       {"infoLocked", doc.InfoLockHash() != 0},
                       {"fields", std::move(fields)},
                       {"sort", std::move(sort)},
                       {"filter", FilterOf(doc)}};
    return info.dump(kIndent);
}

std::string FieldsAsJson(const CQuillaryDoc& doc) {
    Json fields = Json::array();
    for (std::size_t k = 0; k < doc.FieldCount(); ++k) {
        Json field = FieldOf(doc, k);
        field["from"] = k;
        field["options"] = OptionsOf(doc, doc.Fields()[k]);
        fields.push_back(std::move(field));
    }
    // A field a line, to be edited by hand.
    std::string text = "[";
    for (const Json& field : fields) text += (text.size() > 1 ? ",\n  " : "\n  ") + field.dump();
    return text + "\n]";
}

}  // namespace quillary
