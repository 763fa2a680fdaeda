#include <algorithm>
#include <optional>
#include <vector>

#include "cli/Commands.h"
#include "cli/Session.h"
#include "cli/Text.h"
#include "cli/ValueEntry.h"
#include "db/RecordCommit.h"
#include "db/Utf.h"
#include "platform/posix/PosixClock.h"

namespace quillary {

namespace {

constexpr std::string_view kVerbs[] = {"add", "set", "delete", "duplicate"};

class RecordRun {
  public:
    RecordRun(Session& session, const Arguments& arguments)
        : m_session(session), m_words(arguments.words), m_doc(session.Files(), session.Page()) {}

    ExitStatus Run() {
        if (const auto refused = CheckWords()) return *refused;
        if (!m_session.Open(m_doc, m_words[0], OpenMode::EditExclusive)) return ExitStatus::Refused;
        const std::string& verb = m_words[1];
        if (verb == "add") return Add();
        if (!FindRow()) return ExitStatus::Refused;
        if (verb == "set") return Set();
        return verb == "delete" ? Delete() : Duplicate();
    }

  private:
    std::optional<ExitStatus> CheckWords() {
        const std::string& verb = m_words[1];
        if (std::find(std::begin(kVerbs), std::end(kVerbs), verb) == std::end(kVerbs)) {
            const std::string hint = NearestNameHint(verb, {std::begin(kVerbs), std::end(kVerbs)});
            return m_session.WrongUsage("Records have no command " + Quoted(verb) + "." +
                                        (hint.empty() ? " They have add, set, delete and duplicate." : hint));
        }
        m_firstValue = verb == "add" ? 2 : 3;
        if (verb != "add") {
            if (m_words.size() < 3) return m_session.WrongUsage("Too few words: " + verb + " needs a ROW.");
            const auto row = ReadWholeNumber(m_words[2]);
            if (!row) return m_session.WrongUsage(Quoted(m_words[2]) + " is no number of a row.");
            m_row = *row;
        }
        const bool takesValues = verb == "add" || verb == "set";
        if (verb == "set" && m_words.size() == m_firstValue) {
            return m_session.WrongUsage("Too few words: set needs at least one FIELD=VALUE.");
        }
        if (!takesValues && m_words.size() > m_firstValue) {
            return m_session.WrongUsage("Too many words: " + verb + " takes a ROW alone.");
        }
        for (std::size_t i = m_firstValue; i < m_words.size(); ++i) {
            if (m_words[i].find('=') == std::string::npos) {
                return m_session.WrongUsage(Quoted(m_words[i]) + " is no FIELD=VALUE.");
            }
        }
        return std::nullopt;
    }

    bool FindRow() {
        if (m_row >= 1 && static_cast<std::uint64_t>(m_row) <= m_doc.Shown().size()) return true;
        (void)m_session.Refuse("There is no row " + m_words[2] + " among the " +
                               Counted(m_doc.Shown().size(), "shown record") + ".");
        return false;
    }
    [[nodiscard]] std::size_t Index() const { return static_cast<std::size_t>(m_row) - 1; }

    // Where the name of the field ends in FIELD=VALUE: at the first "=", unless a longer name holds one itself.
    [[nodiscard]] std::size_t NameLength(std::string_view word) const {
        std::size_t length = word.find('=');
        for (std::size_t k = 0; k < m_doc.FieldCount(); ++k) {
            const std::string name = WideToUtf8(m_doc.FieldName(k));
            if (name.size() > length && word.starts_with(name + "=")) length = name.size();
        }
        return length;
    }

    // What the words say, in the stored form; nullopt with m_refusal. `present` is the record that they change, nullptr
    // for a new one.
    std::optional<std::vector<EnteredValue>> ReadValues(const RecordRef* present) {
        std::vector<EnteredValue> values;
        for (std::size_t i = m_firstValue; i < m_words.size(); ++i) {
            const std::string_view word = m_words[i];
            const std::size_t nameLength = NameLength(word);
            const auto field = m_session.FieldNamed(m_doc, word.substr(0, nameLength));
            if (!field) return std::nullopt;
            auto value = ReadValue(*field, word.substr(nameLength + 1), present);
            if (!value) return std::nullopt;
            const auto same = [&field](const EnteredValue& other) { return other.field == *field; };
            if (std::any_of(values.begin(), values.end(), same)) {
                (void)m_session.Refuse("The field " + Quoted(WideToUtf8(m_doc.FieldName(*field))) + " is given twice.");
                return std::nullopt;
            }
            values.push_back({*field, std::move(*value)});
        }
        return values;
    }

    std::optional<std::string> ReadValue(std::size_t field, std::string_view given, const RecordRef* present) {
        const std::string name = Quoted(ForMessage(m_doc.Fields()[field].name, m_doc.Page()));
        const auto typed = m_session.Stored(given, name);
        if (!typed) return std::nullopt;
        const EntryRules rules{m_doc.Page(), m_session.UserDateOrder(), CenturyOf(m_clock)};
        std::string stored;
        const Message refusal = AppendStoredValue(m_doc.Fields()[field], *typed, rules, stored);
        if (refusal == Message::None) return stored;
        // What a value already reads as stays, even where it could not be entered anew.
        const auto old = present ? FindEntry(present->Entries(), static_cast<std::uint8_t>(field)) : std::nullopt;
        if (old) {
            std::string shown;
            m_doc.AppendDisplay(*old, field, shown);
            if (*typed == shown) return std::string(*old);
        }
        const std::string text = "Field " + name + ": " + RefusalText(refusal, *typed, rules);
        const bool isNumberDue = refusal == Message::NotANumber || refusal == Message::NotAWholeNumber;
        m_refusal = isNumberDue ? m_session.WrongUsage(text) : m_session.Refuse(text);
        return std::nullopt;
    }

    ExitStatus SortAndSave() {
        m_session.Sort(m_doc);
        return m_session.Save(m_doc);
    }

    ExitStatus Add() {
        const auto values = ReadValues(nullptr);
        if (!values) return m_refusal;
        std::vector<std::string> record = NewRecordValues(m_doc, m_clock);
        for (const EnteredValue& value : *values) record[value.field] = value.stored;
        Failure failure;
        if (!CommitNewRecord(m_doc, record, failure)) return m_session.Refuse(failure.text);
        return SortAndSave();
    }

    ExitStatus Set() {
        const auto values = ReadValues(&m_doc.Shown()[Index()]);
        if (!values) return m_refusal;
        bool changed = false;
        Failure failure;
        if (!CommitRecord(m_doc, Index(), *values, changed, failure)) return m_session.Refuse(failure.text);
        return changed ? SortAndSave() : ExitStatus::Done;
    }

    ExitStatus Delete() {
        m_doc.RemoveRecord(Index());
        return SortAndSave();
    }

    ExitStatus Duplicate() {
        Failure failure;
        if (!m_doc.AppendRecord(m_doc.Shown()[Index()].Entries(), failure)) return m_session.Refuse(failure.text);
        return SortAndSave();
    }

    Session& m_session;
    const std::vector<std::string>& m_words;
    PosixClock m_clock;
    CQuillaryDoc m_doc;
    std::int64_t m_row = 0;
    std::size_t m_firstValue = 2;
    ExitStatus m_refusal = ExitStatus::Refused;
};

}  // namespace

ExitStatus RunRecord(Session& session, const Arguments& arguments) { return RecordRun(session, arguments).Run(); }

}  // namespace quillary
