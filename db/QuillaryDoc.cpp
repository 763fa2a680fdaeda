#include "db/QuillaryDoc.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

#include "db/DatabaseReader.h"
#include "db/FieldValue.h"
#include "db/Password.h"

namespace quillary {

namespace {

constexpr std::size_t kMaxNameBytes = kNameSize - 1;

std::int32_t AddSaturated(std::int32_t a, std::int32_t b) {
    const std::int64_t sum = std::int64_t{a} + b;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(sum, std::numeric_limits<std::int32_t>::min(),
                                                              std::numeric_limits<std::int32_t>::max()));
}

// The reader's own reasons are all told as an invalid file; these are no fault of the file.
bool IsToldAsItIs(Message message) {
    switch (message) {
        case Message::FileTooLarge:
        case Message::RecoveryNotRead:
        case Message::OutOfMemory:
        case Message::FileBusy:
        case Message::ReadOnly:
        case Message::UnableToOpenForWriting:
            return true;
        default:
            return false;
    }
}

// A table may be larger than the memory there is; the step then has no effect but the message.
template <class Step>
bool WithinMemory(Failure& failure, Step step) {
    try {
        return step();
    } catch (const std::bad_alloc&) {
        failure.Set(Message::OutOfMemory);
        return false;
    }
}

}  // namespace

// What keeps the records alive: the image that most of them lie in, and the arena of the new and changed ones.
struct CQuillaryDoc::Storage {
    std::shared_ptr<const Image> image;
    RecordArena arena;
};

class CQuillaryDoc::State {
  public:
    DatabaseContent content;
    std::shared_ptr<Storage> storage;
    std::shared_ptr<const Image> fileImage;  // what the file held then
    std::size_t current = 0;
    bool modified = false;
};

CQuillaryDoc::CQuillaryDoc(FileAccess& files, const AnsiText& page) : m_page(page), m_file(files) { Clear(); }

CQuillaryDoc::~CQuillaryDoc() = default;

void CQuillaryDoc::Clear() {
    m_file.Clear();
    m_content = {};
    m_storage = std::make_shared<Storage>();
    m_current = 0;
    m_formatVersion = kFormatVersion;
    m_lossBySaving.clear();
    m_modified = false;
    m_readerError = {};
}

void CQuillaryDoc::Close() {
    Failure ignored;  // who wants to know calls FinishSave first
    (void)FinishSave(ignored);
    Clear();
}

void CQuillaryDoc::Changed() {
    m_modified = true;
    ++m_changeNumber;
}

bool CQuillaryDoc::Load(const Path& path, OpenMode mode) {
    if (!m_file.Load(path, mode, m_readerError)) return false;
    if (!IsDatabaseImage(FileImage())) return false;

    CDatabaseReader reader;
    reader.ReadHeader(FileImage());
    if (!reader.ReadSchema()) {
        m_readerError.Set(reader.LastError());
        return false;
    }
    if (reader.ColumnCount() == 0) {
        m_readerError.Set(Message::NoFieldNames);
        return false;
    }
    m_content = ContentOf(reader);
    m_formatVersion = m_content.appInfo.FormatVersion();
    for (const auto& [message, count] :
         {std::pair(Message::ForeignRecords, reader.ForeignRecordCount()), {Message::Damaged, reader.DamagedCount()}}) {
        if (count == 0) continue;
        if (!m_lossBySaving.empty()) m_lossBySaving += ' ';
        m_lossBySaving += FormatMessage(message, {std::to_string(count)});
    }
    m_storage->image = m_file.Contents();
    return true;
}

bool CQuillaryDoc::OpenDatabase(const Path& path, OpenMode mode, Questions& questions) {
    Close();
    ++m_changeNumber;
    const auto giveUp = [this] {
        Failure reason = std::move(m_readerError);
        Clear();
        m_readerError = std::move(reason);
        return false;
    };
    if (!WithinMemory(m_readerError, [&] { return Load(path, mode); })) {
        Failure told = m_readerError;
        if (!IsToldAsItIs(told.message)) told.Set(Message::InvalidDatabaseFile);
        const RecoveryState recovery = Recovery();
        (void)giveUp();
        m_file.Clear(recovery);
        questions.Tell(told);
        return false;
    }
    if (DatabasePasswordHash() != 0 && !questions.AskDatabasePassword(*this)) return giveUp();
    return true;
}

void CQuillaryDoc::NewDatabase(std::string_view name, std::vector<Field> fields) {
    Close();
    m_content.header = DatabaseHeader(m_page.Cut(name, kMaxNameBytes));
    m_content.fields = std::move(fields);
    Changed();
}

bool CQuillaryDoc::SaveDatabase(Failure& failure) {
    return WithinMemory(failure, [&] { return Save(false, failure); });
}

bool CQuillaryDoc::OverwriteDatabase(Failure& failure) {
    return WithinMemory(failure, [&] { return Save(true, failure); });
}

bool CQuillaryDoc::SaveDatabaseAs(const Path& path, std::string_view name, Failure& failure) {
    return WithinMemory(failure, [&] { return SaveAs(path, name, failure); });
}

bool CQuillaryDoc::Save(bool overwriteChanges, Failure& failure) {
    (void)FinishSave(failure);  // after a failed flush the document counts as modified, and this save tries again
    failure = {};
    if (!m_modified && !overwriteChanges) return true;
    if (IsReadOnly()) {
        failure.Set(Message::ReadOnly);
        return false;
    }
    DatabaseContent next = m_content;
    auto image = std::make_shared<Image>();
    if (!EncodeDatabase(next, *image, failure)) return false;
    if (!m_file.Rewrite(std::move(image), overwriteChanges, failure)) return false;
    Adopt(std::move(next));
    return true;
}

bool CQuillaryDoc::SaveAs(const Path& path, std::string_view name, Failure& failure) {
    (void)FinishSave(failure);  // saving elsewhere is the way out when the file's own disk refuses
    failure = {};
    DatabaseContent next = m_content;
    next.header.SetName(m_page.Cut(name, kMaxNameBytes));
    auto image = std::make_shared<Image>();
    if (!EncodeDatabase(next, *image, failure)) return false;
    if (!m_file.Create(path, std::move(image), failure)) return false;
    Adopt(std::move(next));
    return true;
}

void CQuillaryDoc::Adopt(DatabaseContent written) {
    m_storage = std::make_shared<Storage>(Storage{m_file.Contents(), {}});
    m_content = std::move(written);
    m_formatVersion = kFormatVersion;
    m_lossBySaving.clear();
    m_modified = false;
}

bool CQuillaryDoc::FinishSave(Failure& failure) {
    if (m_file.FinishSave(failure)) return true;
    m_modified = true;  // what was written is not on the disk: the next save writes again
    return false;
}

bool CQuillaryDoc::DatabaseExists(FileAccess& files, const Path& path, Failure& failure) {
    if (!files.CanRead(path)) return false;
    failure.Set(Message::NameExists);
    return true;
}

std::string_view CQuillaryDoc::FileImage() const {
    return m_file.Contents() ? m_file.Contents()->Bytes() : std::string_view{};
}

std::u16string CQuillaryDoc::Name() const { return m_page.ToWide(m_content.header.Name()); }

std::u16string CQuillaryDoc::FieldName(std::size_t k) const { return m_page.ToWide(m_content.fields[k].name); }

std::int32_t CQuillaryDoc::FieldWidth(std::size_t k) const {
    return k < FieldCount() ? m_content.fields[k].width : kDefaultWidth;
}

void CQuillaryDoc::SetFieldWidth(std::size_t k, std::int32_t pixels) {
    if (k >= FieldCount() || m_content.fields[k].width == pixels) return;
    m_content.fields[k].width = pixels;
    m_content.fields[k].storedWidth.reset();
    Changed();
}

std::optional<std::size_t> CQuillaryDoc::FieldByName(std::string_view name) const {
    const auto found =
        std::find_if(Fields().begin(), Fields().end(), [name](const Field& f) { return f.name == name; });
    if (found == Fields().end()) return std::nullopt;
    return static_cast<std::size_t>(found - Fields().begin());
}

std::size_t CQuillaryDoc::GetFieldTypeByName(std::string_view name) const {
    const auto field = FieldByName(name);
    return field ? static_cast<std::size_t>(TypeOf(*field)) : kNoFieldType;
}

void CQuillaryDoc::AdvanceSequences() {
    for (std::size_t k = 0; k < FieldCount(); ++k) {
        const FieldOptions& options = Fields()[k].options;
        if (TypeOf(k) == FieldType::Sequence) SetSequenceNext(k, AddSaturated(options.first, options.increment));
    }
}

void CQuillaryDoc::SetSequenceNext(std::size_t k, std::int32_t next) {
    if (m_content.fields[k].options.first == next) return;
    m_content.fields[k].options.first = next;
    Changed();
}

void CQuillaryDoc::SetFields(std::vector<Field> fields) {
    if (fields == m_content.fields) return;
    m_content.fields = std::move(fields);
    Changed();
}

bool CQuillaryDoc::NextRecord() {
    if (m_current + 1 >= Shown().size()) return false;
    ++m_current;
    return true;
}

bool CQuillaryDoc::PreviousRecord() {
    if (m_current == 0) return false;
    --m_current;
    return true;
}

std::optional<std::u16string> CQuillaryDoc::FieldText(std::size_t k, bool formatted) const {
    if (m_current >= Shown().size() || k >= FieldCount()) return std::nullopt;
    const auto stored = FindEntry(Shown()[m_current].Entries(), static_cast<std::uint8_t>(k));
    if (!stored) return std::nullopt;
    return m_page.ToWide(formatted ? DisplayText(TypeOf(k), *stored, Style(), m_page) : std::string(*stored));
}

void CQuillaryDoc::AppendDisplay(std::string_view stored, std::size_t field, std::string& out) const {
    AppendDisplayText(TypeOf(field), stored, Style(), m_page, out);
}

RecordRef CQuillaryDoc::NewRecord(std::string_view entries) {
    return {m_storage->arena.Store(entries), static_cast<std::uint32_t>(entries.size()), kCategoryShown};
}

bool CQuillaryDoc::AppendRecord(std::string_view entries, Failure& failure) {
    if (!HasRoomFor(1)) {
        failure.Set(Message::TooManyRecords, {"The record was not added."});
        return false;
    }
    m_content.shown.push_back(NewRecord(entries));
    m_current = Shown().size() - 1;
    Changed();
    return true;
}

void CQuillaryDoc::ReplaceRecord(std::size_t row, std::string_view entries) {
    m_content.shown[row] = NewRecord(entries);
    Changed();
}

void CQuillaryDoc::RemoveRecord(std::size_t row) {
    m_content.shown.erase(m_content.shown.begin() + static_cast<std::ptrdiff_t>(row));
    if (m_current >= Shown().size()) m_current = Shown().empty() ? 0 : Shown().size() - 1;
    Changed();
}

void CQuillaryDoc::ReplaceAllRecords(std::vector<RecordRef> shown, std::vector<RecordRef> hidden, RecordArena arena) {
    m_content.shown = std::move(shown);
    m_content.hidden = std::move(hidden);
    // The old records stay alive in the storage that a snapshot shares.
    m_storage = std::make_shared<Storage>(Storage{nullptr, std::move(arena)});
    Changed();
}

void CQuillaryDoc::ShowAllRecords() {
    m_content.filter.onlyShown = false;
    std::vector<RecordRef> shown = m_content.shown;
    shown.insert(shown.end(), m_content.hidden.begin(), m_content.hidden.end());
    DivideRecords(std::move(shown), {});
}

void CQuillaryDoc::DivideRecords(std::vector<RecordRef> shown, std::vector<RecordRef> hidden) {
    const auto isSame = [](const RecordRef& a, const RecordRef& b) { return a.data == b.data && a.size == b.size; };
    if (std::equal(shown.begin(), shown.end(), Shown().begin(), Shown().end(), isSame) &&
        std::equal(hidden.begin(), hidden.end(), Hidden().begin(), Hidden().end(), isSame)) {
        return;
    }
    for (RecordRef& record : shown) record.category = kCategoryShown;
    for (RecordRef& record : hidden) record.category = kCategoryHidden;
    m_content.shown = std::move(shown);
    m_content.hidden = std::move(hidden);
    if (m_current >= Shown().size()) m_current = Shown().empty() ? 0 : Shown().size() - 1;
    Changed();
}

void CQuillaryDoc::ReorderRecords(std::span<const std::uint32_t> order) {
    std::vector<RecordRef> reordered(order.size());
    bool moved = false;
    for (std::size_t k = 0; k < order.size(); ++k) {
        reordered[k] = m_content.shown[order[k]];
        moved = moved || order[k] != k;
    }
    if (!moved) return;
    m_content.shown = std::move(reordered);
    Changed();
}

void CQuillaryDoc::SetFilter(FilterSettings filter) {
    const bool stored = filter.conditions != Filter().conditions || filter.matchAny != Filter().matchAny;
    m_content.filter = std::move(filter);
    if (stored) Changed();
}

void CQuillaryDoc::SetSort(SortSettings sort) {
    if (sort == Sort()) return;
    m_content.sort = std::move(sort);
    Changed();
}

void CQuillaryDoc::SetStyle(DateStyle style) {
    if (style == Style()) return;
    m_content.appInfo.SetStyle(style);
    Changed();
}

void CQuillaryDoc::SetEditOnSelect(bool on) {
    if (on == EditOnSelect()) return;
    m_content.appInfo.SetEditOnSelect(on);
    Changed();
}

void CQuillaryDoc::SetInfo(std::string text, std::int32_t lockHash) {
    if (text == m_content.infoText && lockHash == m_content.infoLockHash) return;
    m_content.infoText = std::move(text);
    m_content.infoLockHash = lockHash;
    Changed();
}

bool CQuillaryDoc::CheckDatabasePassword(std::u16string_view typed) const {
    return HashPassword(kDatabasePassword, typed, m_page) == DatabasePasswordHash();
}

void CQuillaryDoc::SetDatabasePassword(std::u16string_view typed) {
    const std::uint32_t hash = HashPassword(kDatabasePassword, typed, m_page);
    if (hash == DatabasePasswordHash()) return;
    m_content.appInfo.SetLockWord(hash);
    Changed();
}

std::shared_ptr<const CQuillaryDoc::State> CQuillaryDoc::Snapshot() const {
    auto state = std::make_shared<State>();
    state->content = m_content;
    state->storage = m_storage;
    state->fileImage = m_file.Contents();
    state->current = m_current;
    state->modified = m_modified;
    return state;
}

void CQuillaryDoc::Restore(const State& state) {
    m_content = state.content;
    m_storage = state.storage;
    m_current = state.current;
    // A save in between, or one that failed half-way, left the file with something else.
    m_modified = state.modified || state.fileImage != m_file.Contents() || m_file.IsTorn();
    ++m_changeNumber;
}

}  // namespace quillary
