#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "cli/Commands.h"
#include "cli/Progress.h"
#include "cli/Session.h"
#include "cli/Text.h"
#include "cli/ValueEntry.h"
#include "db/FieldValue.h"
#include "db/TextEntry.h"
#include "platform/posix/PosixClock.h"
#include "query/Filter.h"

namespace quillary {

namespace {

constexpr std::string_view kAllFields = "*";
constexpr std::size_t kWordsACondition = 3;  // FIELD OP VALUE

std::string OperatorList(std::span<const std::string_view> operators) {
    std::string list;
    for (std::size_t k = 0; k < operators.size(); ++k) {
        if (k > 0) list += k + 1 == operators.size() ? " and " : ", ";
        list += Quoted(operators[k]);
    }
    return list;
}

class FilterRun {
  public:
    FilterRun(Session& session, const Arguments& arguments)
        : m_session(session),
          m_arguments(arguments),
          m_words(arguments.Values("--where")),
          m_doc(session.Files(), session.Page()) {}

    ExitStatus Run() {
        const std::size_t count = m_words.size() / kWordsACondition;
        if (count > kMaxConditions) return m_session.WrongUsage("A filter has at most three conditions.");
        if (!m_session.Open(m_doc, m_arguments.words[0], OpenMode::EditExclusive)) return ExitStatus::Refused;
        // How conditions combine, and what they are applied to, is set together with them.
        FilterSettings settings{{}, m_doc.Filter().matchAny, m_doc.Filter().onlyShown};
        if (count > 0) {
            settings.matchAny = m_arguments.Has("--any");
            settings.onlyShown = m_arguments.Has("--narrow");
        }
        for (std::size_t k = 0; k < count; ++k) {
            FilterCondition condition;
            const std::string* words = &m_words[k * kWordsACondition];
            const ExitStatus read = ReadCondition(words[0], words[1], words[2], condition);
            if (read != ExitStatus::Done) return read;
            settings.conditions.push_back(std::move(condition));
        }
        {
            Progress progress("Filtering", m_doc.RecordCount(), m_session.ShowsProgress());
            SetAndApplyFilter(m_doc, std::move(settings), [&progress](std::size_t rows) { progress.Show(rows); });
        }
        m_session.Sort(m_doc);
        return m_session.Save(m_doc);
    }

  private:
    ExitStatus ReadCondition(const std::string& name, const std::string& operation, const std::string& given,
                             FilterCondition& condition) const {
        std::optional<std::size_t> field;
        condition.allFields = name == kAllFields;
        if (!condition.allFields) {
            field = m_session.FieldNamed(m_doc, name);
            if (!field) return ExitStatus::Refused;
            condition.field = m_doc.Fields()[*field].name;
        }
        const auto operators = FilterOperators(m_doc, field);
        const auto known = std::find(operators.begin(), operators.end(), operation);
        if (known == operators.end()) {
            return m_session.WrongUsage("There is no operator " + Quoted(operation) + " for " +
                                        (field ? "the field " + Quoted(name) : "all fields") + ". There are " +
                                        OperatorList(operators) + ".");
        }
        condition.operation = static_cast<std::uint8_t>(known - operators.begin());
        return ReadValue(field, given, condition.value);
    }

    ExitStatus ReadValue(std::optional<std::size_t> field, const std::string& given, std::string& value) const {
        const auto wide = m_session.Wide(given);
        if (!wide) return ExitStatus::Refused;
        Failure failure;
        const auto typed = ConditionText(*wide, m_doc.Page(), failure);
        if (!typed) return m_session.Refuse(failure);
        value = *typed;
        if (!field) return ExitStatus::Done;
        const Field& definition = m_doc.Fields()[*field];
        switch (definition.type) {
            case FieldType::Number:
            case FieldType::Sequence:
                if (value.empty() || IsNumber(value)) return ExitStatus::Done;
                return m_session.WrongUsage(RefusalText(Message::NotANumber, value, Rules()));
            case FieldType::Checkbox: {
                const bool isChecked = value == "true";
                if (!isChecked && value != "false") {
                    return m_session.Refuse(RefusalText(Message::NotACheckBox, value, Rules()));
                }
                value = ConditionCheck(isChecked);
                return ExitStatus::Done;
            }
            case FieldType::List: {
                // A list without items has only the empty text to compare with.
                const auto& items = definition.options.items;
                const bool isOffered =
                    items.empty() ? value.empty() : std::find(items.begin(), items.end(), value) != items.end();
                if (isOffered) return ExitStatus::Done;
                return m_session.Refuse(RefusalText(Message::NotAListItem, value, Rules()));
            }
            case FieldType::Date:
            case FieldType::Time: {
                std::string count;
                const Message refusal = AppendStoredValue(definition, value, Rules(), count);
                if (refusal != Message::None) return m_session.Refuse(RefusalText(refusal, value, Rules()));
                value = std::move(count);
                return ExitStatus::Done;
            }
            default:
                return ExitStatus::Done;
        }
    }

    [[nodiscard]] EntryRules Rules() const {
        return {m_doc.Page(), m_session.UserDateOrder(), CenturyOf(PosixClock())};
    }

    Session& m_session;
    const Arguments& m_arguments;
    const std::vector<std::string> m_words;
    CQuillaryDoc m_doc;
};

}  // namespace

ExitStatus RunFilter(Session& session, const Arguments& arguments) { return FilterRun(session, arguments).Run(); }

ExitStatus RunShowAll(Session& session, const Arguments& arguments) {
    CQuillaryDoc doc(session.Files(), session.Page());
    if (!session.Open(doc, arguments.words[0], OpenMode::EditExclusive)) return ExitStatus::Refused;
    if (doc.Filter().conditions.empty() && doc.Hidden().empty()) return ExitStatus::Done;
    RemoveFilter(doc);
    session.Sort(doc);
    return session.Save(doc);
}

}  // namespace quillary
