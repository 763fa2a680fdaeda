#include <algorithm>
#include <optional>

#include "admin/DatabaseInfo.h"
#include "cli/Commands.h"
#include "cli/Input.h"
#include "cli/Session.h"
#include "db/Layout.h"
#include "db/Utf.h"

namespace quillary {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// What --set stores of a file.
std::string_view TextOf(std::string_view file) {
    if (file.starts_with(kByteOrderMark)) file.remove_prefix(kByteOrderMark.size());
    if (file.ends_with('\n')) file.remove_suffix(file.ends_with("\r\n") ? 2 : 1);
    return file;
}

class TextRun {
  public:
    TextRun(Session& session, const Arguments& arguments)
        : m_session(session),
          m_arguments(arguments),
          m_path(arguments.words[0]),
          m_source(arguments.Value("--set")),
          m_locks(arguments.Has("--lock")),
          m_unlocks(arguments.Has("--unlock")),
          m_doc(session.Files(), session.Page()) {}

    ExitStatus Run() {
        if (const char* wrong = WrongUsage()) return m_session.WrongUsage(wrong);
        if (!m_source && !m_locks && !m_unlocks) return Print();
        // All that is given is read before the file is held.
        if (!ReadLockPassword() || !ReadText()) return ExitStatus::Refused;
        if (!m_session.Open(m_doc, m_path, OpenMode::EditExclusive)) return ExitStatus::Refused;
        return Change();
    }

  private:
    [[nodiscard]] const char* WrongUsage() const {
        const auto file = m_arguments.Value("--lock-password-file");
        if (m_locks && m_unlocks) return "--lock and --unlock exclude each other.";
        if ((m_locks || m_unlocks) && !file) return "--lock and --unlock need --lock-password-file.";
        if (file && !m_locks && !m_unlocks) return "--lock-password-file goes with --lock or --unlock.";
        const std::optional<std::string> sources[] = {m_source, file, m_arguments.Value("--password-file")};
        if (std::count(std::begin(sources), std::end(sources), "-") > 1) {
            return "The text and the passwords cannot come from standard input together.";
        }
        return nullptr;
    }

    ExitStatus Print() {
        if (!m_session.Open(m_doc, m_path, OpenMode::Read)) return ExitStatus::Refused;
        m_session.Out().Append(WideToUtf8(m_doc.InfoText()) + "\n");
        return ExitStatus::Done;
    }

    bool ReadLockPassword() {
        if (!m_locks && !m_unlocks) return true;
        auto password = m_session.ReadSecret(*m_arguments.Value("--lock-password-file"));
        if (password) m_password = std::move(*password);
        return password.has_value();
    }

    // What is to be stored.
    bool ReadText() {
        if (!m_source) return true;
        InputBytes file;
        std::string reason;
        {
            Progress progress("Reading", 0, m_session.ShowsProgress());
            if (!file.Read(*m_source, kMaxReadSize, progress, reason)) {
                (void)m_session.Refuse("The text " + *m_source + " cannot be read (" + reason + ").");
                return false;
            }
        }
        const auto typed = Utf8ToWide(TextOf(file.Text()));
        if (!typed) {
            (void)m_session.Refuse("The text " + *m_source + " is no UTF-8.");
            return false;
        }
        Failure failure;
        m_text = StoredInfoText(*typed, m_session.Page(), failure);
        if (!m_text) (void)m_session.Refuse(failure.text);
        return m_text.has_value();
    }

    ExitStatus Change() {
        std::int32_t lock = m_doc.InfoLockHash();
        Failure failure;
        if (m_unlocks && lock != 0 && !UnlockInfo(lock, m_password, m_session.Page(), failure)) {
            return m_session.Refuse(failure.text);
        }
        if (lock != 0) {
            return m_session.Refuse(m_locks ? "The info text is locked already. Unlock it first."
                                            : "The info text is locked. --unlock with its password opens it.");
        }
        if (m_locks) lock = MakeInfoLock(m_password, m_session.Page());
        m_doc.SetInfo(m_text.value_or(m_doc.InfoTextBytes()), lock);
        return m_session.Save(m_doc);
    }

    Session& m_session;
    const Arguments& m_arguments;
    const std::string& m_path;
    const std::optional<std::string> m_source;  // of the new text
    const bool m_locks;
    const bool m_unlocks;
    CQuillaryDoc m_doc;
    std::u16string m_password;
    std::optional<std::string> m_text;  // the new one
};

}  // namespace

ExitStatus RunText(Session& session, const Arguments& arguments) { return TextRun(session, arguments).Run(); }

}  // namespace quillary
