#include "cli/Commands.h"
#include "cli/Description.h"
#include "cli/Session.h"
#include "cli/Text.h"
#include "db/FieldValue.h"
#include "db/Utf.h"

namespace quillary {

namespace {

// The texts of a file may hold what a terminal would obey.
void AppendLine(std::string_view text, std::string& out) { out.append(OneLine(text)).append("\n"); }

void AppendValue(std::string_view label, std::string_view value, std::string& out) {
    constexpr std::size_t kLabelWidth = 18;
    std::string left = std::string(label) + ":";
    left.resize(kLabelWidth, ' ');
    AppendLine(left.append(value), out);
}

void AppendLines(std::string_view text, std::string& out) {
    for (auto end = text.find('\n'); end != text.npos; end = text.find('\n')) {
        const bool hasReturn = end > 0 && text[end - 1] == '\r';
        out.append(ShowControls(text.substr(0, end - (hasReturn ? 1 : 0)), "\t")).append("\n");
        text.remove_prefix(end + 1);
    }
    out.append(ShowControls(text, "\t")).append("\n");
}

std::string FieldLine(const CQuillaryDoc& doc, std::size_t k) {
    const Field& field = doc.Fields()[k];
    return "  " + WideToUtf8(doc.FieldName(k)) + ", " + std::string(InfoOf(field.type).name) + ", " +
           std::to_string(field.width) + (field.width == 1 ? " pixel" : " pixels");
}

// The value as the filter dialog shows it.
std::string ShownValue(const CQuillaryDoc& doc, const FilterCondition& condition) {
    const auto field = condition.allFields ? std::nullopt : doc.FieldByName(condition.field);
    if (!field) return doc.Page().ToUtf8(condition.value);
    switch (doc.TypeOf(*field)) {
        case FieldType::Checkbox:
            return condition.value.starts_with("F") ? "false" : "true";
        case FieldType::Date:
        case FieldType::Time:
            return doc.Page().ToUtf8(DisplayText(doc.TypeOf(*field), condition.value, doc.Style(), doc.Page()));
        default:
            return doc.Page().ToUtf8(condition.value);
    }
}

std::string ConditionLine(const CQuillaryDoc& doc, const FilterCondition& condition) {
    const std::string_view operation = OperatorText(doc, condition);
    return "  " + (condition.allFields ? "All Fields" : doc.Page().ToUtf8(condition.field)) + " " +
           std::string(operation.empty() ? "(unknown operator)" : operation) + " \"" + ShownValue(doc, condition) +
           "\"";
}

std::string InfoAsText(const CQuillaryDoc& doc) {
    std::string out;
    const auto onOff = [](bool on) { return on ? "on" : "off"; };
    AppendValue("Name", WideToUtf8(doc.Name()), out);
    AppendValue("Format version", std::to_string(doc.FormatVersion()), out);
    AppendValue("Password", doc.DatabasePasswordHash() != 0 ? "yes" : "no", out);
    AppendValue("Records",
                std::to_string(doc.Shown().size()) + " shown, " + std::to_string(doc.Hidden().size()) + " hidden", out);
    AppendValue("Long dates", onOff(doc.Style() == DateStyle::Long), out);
    AppendValue("Edit on select", onOff(doc.EditOnSelect()), out);
    out += "Fields:\n";
    for (std::size_t k = 0; k < doc.FieldCount(); ++k) AppendLine(FieldLine(doc, k), out);
    if (!doc.Sort().empty()) out += "Sorted by:\n";
    for (const SortKey& key : doc.Sort()) {
        AppendLine("  " + doc.Page().ToUtf8(key.field) + (key.descending ? ", descending" : ", ascending"), out);
    }
    const FilterSettings& filter = doc.Filter();
    if (!filter.conditions.empty()) out += filter.matchAny ? "Filter, any of:\n" : "Filter, all of:\n";
    for (const FilterCondition& condition : filter.conditions) AppendLine(ConditionLine(doc, condition), out);
    if (!doc.InfoTextBytes().empty()) {
        out += doc.InfoLockHash() != 0 ? "Info text, locked:\n" : "Info text:\n";
        AppendLines(WideToUtf8(doc.InfoText()), out);
    }
    return out;
}

}  // namespace

ExitStatus RunInfo(Session& session, const Arguments& arguments) {
    CQuillaryDoc doc(session.Files(), session.Page());
    if (!session.Open(doc, arguments.words[0], OpenMode::Read)) return ExitStatus::Refused;
    if (arguments.Has("--json")) session.Out().HoldsJson();
    session.Out().Append(arguments.Has("--json") ? InfoAsJson(doc) + "\n" : InfoAsText(doc));
    return ExitStatus::Done;
}

}  // namespace quillary
