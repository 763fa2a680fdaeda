// What opening, saving, showing, sorting and finding cost on a full-sized table, each figure beside what the machine
// itself needs for the same bytes. Files are memory-backed but where a figure says otherwise.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <malloc.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <numeric>

#include "admin/ApplySchema.h"
#include "benchmarks/Figures.h"
#include "benchmarks/GeneratedTable.h"
#include "benchmarks/Scratch.h"
#include "benchmarks/TimedFiles.h"
#include "db/Bytes.h"
#include "db/QuillaryDoc.h"
#include "platform/posix/LargePages.h"
#include "platform/posix/PosixFileAccess.h"
#include "query/Find.h"

namespace quillary {

namespace {

constexpr double kOpenAim = 1.2;
constexpr double kSaveAim = 1.5;
constexpr double kSchemaAim = 3;  // times an opening and a save of the same file
constexpr int kCentury = 2000;
constexpr double kMemoryAim = 1.3;         // times the file,
constexpr double kMemoryAllowance = 20e6;  // and this many bytes more for the program itself

// A table of its own that is changed and saved again and again.
class SavedTable {
  public:
    SavedTable(const Path& table, const ScratchFolder& folder, TimeSource clock)
        : m_path(folder.Name() / "saved.pdb"), m_disk(folder.Name()), m_files(m_disk, clock), m_doc(m_files) {
        std::filesystem::copy_file(table, m_path);
        OpenTable(m_doc, m_path, OpenMode::Edit);
    }

    void ChangeOneRecord() {
        const std::size_t row = m_turn++ % m_doc.Shown().size();
        m_doc.ReplaceRecord(row, std::string(m_doc.Shown()[row].Entries()));
    }
    void Shuffle() {
        std::vector<std::uint32_t> order(m_doc.Shown().size());
        std::iota(order.begin(), order.end(), 0u);
        for (std::size_t i = order.size(); i > 1; --i) {
            m_turn = m_turn * 6364136223846793005u + 1442695040888963407u;
            std::swap(order[i - 1], order[(m_turn >> 33) % i]);
        }
        m_doc.ReorderRecords(order);
    }

    // Seconds of a save without the recovery copy and the flush, which Times tells.
    double Save() {
        m_files.Reset();
        Failure failure;
        const double all = Seconds([&] { Require(m_doc.SaveDatabase(failure), failure.text); }, m_files.clock);
        return all - m_files.recoveryCopy - m_files.flush;
    }
    [[nodiscard]] const TimedFiles& Times() const { return m_files; }

  private:
    Path m_path;
    PosixFileAccess m_disk;
    TimedFiles m_files;
    CQuillaryDoc m_doc;
    std::uint64_t m_turn = 0;
};

// The generated table twice side by side: as many fields as there can be, of which five get another type.
class RetypedTable {
  public:
    explicit RetypedTable(const ScratchFolder& folder) : m_path(folder.Name() / "twenty.pdb"), m_files(folder.Name()) {
        std::vector<Field> fields = GeneratedFields();
        for (const Field& field : GeneratedFields()) fields.push_back(field);
        CQuillaryDoc doc(m_files);
        doc.NewDatabase("Twenty", fields);
        Failure failure;
        std::string record;
        for (std::size_t row = 0; row < kGeneratedRecords; ++row) {
            const auto texts = GeneratedTexts(row);
            record.clear();
            for (std::size_t k = 0; k < fields.size(); ++k) {
                AppendEntry(record, static_cast<std::uint8_t>(k), texts[k % kGeneratedFields]);
            }
            Require(doc.AppendRecord(record, failure), failure.text);
        }
        Require(doc.SaveDatabaseAs(m_path, "Twenty", failure), failure.text);
    }

    // Seconds of opening and saving; with `retypes`, also of giving every record its new layout.
    double OpenAndSave(bool retypes) {
        const Path copy = m_path.string() + "-copy";
        std::filesystem::copy_file(m_path, copy, std::filesystem::copy_options::overwrite_existing);
        return Seconds([&] {
            CQuillaryDoc doc(m_files);
            OpenTable(doc, copy, OpenMode::Edit);
            if (retypes) {
                Retype(doc);
            } else {
                doc.ReplaceRecord(0, std::string(doc.Shown()[0].Entries()));
            }
            Failure failure;
            Require(doc.SaveDatabase(failure), failure.text);
        });
    }

  private:
    static void Retype(CQuillaryDoc& doc) {
        auto definitions = DefinitionsOf(doc);
        std::size_t retyped = 0;
        for (FieldDefinition& definition : definitions) {
            FieldType& type = definition.field.type;
            if (type == FieldType::Text || retyped == kRetyped) continue;
            type = type == FieldType::Checkbox ? FieldType::Number : FieldType::Text;
            ++retyped;
        }
        Require(retyped == kRetyped, "too few fields can be retyped");
        Failure failure;
        auto prepared = PrepareSchema(doc, std::move(definitions), kCentury, failure);
        Require(prepared.has_value(), failure.text);
        Require(ApplySchema(doc, std::move(*prepared)), "the fields are what they were");
    }

    static constexpr std::size_t kRetyped = 5;
    Path m_path;
    PosixFileAccess m_files;
};

struct Buffer {
    std::unique_ptr<char[]> bytes;
    std::size_t size = 0;
    [[nodiscard]] std::string_view View() const { return {bytes.get(), size}; }
};

Buffer ReadWhole(const Path& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status {};
    Require(file >= 0 && fstat(file, &status) == 0, "cannot open the table");
    Buffer whole;
    whole.size = static_cast<std::size_t>(status.st_size);
    whole.bytes = std::make_unique_for_overwrite<char[]>(whole.size);
    Require(read(file, whole.bytes.get(), whole.size) == static_cast<ssize_t>(whole.size), "cannot read the table");
    close(file);
    return whole;
}

// The place of the first 0xFF behind each record's header, summed up.
std::size_t ScanRecords(std::string_view image) {
    std::size_t sum = 0;
    const std::size_t count = LoadBig16(image.data() + kRecordCountAt);
    for (std::size_t i = 0; i < count; ++i) {
        const char* record = image.data() + LoadBig32(image.data() + kHeaderSize + i * kRecordEntrySize);
        const char* entries = record + kRecordHeader.size();
        const void* end = std::memchr(entries, 0xFF, static_cast<std::size_t>(image.data() + image.size() - entries));
        sum += static_cast<std::size_t>(static_cast<const char*>(end) - entries);
    }
    return sum;
}

double WriteNewFile(const Path& path, std::string_view bytes) {
    const double seconds = Seconds([&] {
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        Require(file >= 0 && write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()),
                "cannot write a new file");
        close(file);
    });
    unlink(path.c_str());
    return seconds;
}

std::size_t ShowEveryCell(const CQuillaryDoc& doc, std::string& out) {
    out.clear();
    EntryTable entries;
    for (const RecordRef& record : doc.Shown()) {
        entries.Fill(record.Entries(), doc.FieldCount());
        for (std::size_t k = 0; k < doc.FieldCount(); ++k) {
            if (entries.Has(k)) doc.AppendDisplay(entries.Text(k), k, out);
        }
    }
    return out.size();
}

std::vector<std::string_view> EveryCell(const CQuillaryDoc& doc) {
    std::vector<std::string_view> cells;
    EntryTable entries;
    for (const RecordRef& record : doc.Shown()) {
        entries.Fill(record.Entries(), doc.FieldCount());
        for (std::size_t k = 0; k < doc.FieldCount(); ++k) cells.push_back(entries.Text(k));
    }
    return cells;
}

// The answer of `work` in a process of its own, whose memory nothing else has used.
long InNewProcess(const std::function<long()>& work) {
    int ends[2];
    Require(pipe(ends) == 0, "cannot make a pipe");
    const pid_t child = fork();
    if (child == 0) {
        const long answer = work();
        const bool told = write(ends[1], &answer, sizeof answer) == sizeof answer;
        std::_Exit(told ? 0 : 1);
    }
    close(ends[1]);
    long answer = 0;
    Require(child > 0 && read(ends[0], &answer, sizeof answer) == sizeof answer, "a process of its own failed");
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return answer;
}

long ResidentBytes() {
    std::ifstream statm("/proc/self/statm");
    long allPages = 0, residentPages = 0;
    statm >> allPages >> residentPages;
    return residentPages * sysconf(_SC_PAGESIZE);
}

void PrintMemory(long held, double fileSize) {
    const auto megabytes = [](double bytes) {
        char text[32];
        std::snprintf(text, sizeof text, "%.1f MB", bytes / 1e6);
        return std::string(text);
    };
    PrintFigure({"memory held after open, the whole process", megabytes(static_cast<double>(held)), megabytes(fileSize),
                 "the file's size", static_cast<double>(held) / fileSize, "1.3 times + 20 MB",
                 static_cast<double>(held) <= kMemoryAim * fileSize + kMemoryAllowance});
}

std::vector<Figure> MakeFigures(const Path& table, const ScratchFolder& memory, SavedTable& saved, SavedTable& onDisk,
                                RetypedTable& retyped, CQuillaryDoc& doc) {
    const Measurement writeNewFile = [&, bytes = std::make_shared<Buffer>(ReadWhole(table))] {
        return WriteNewFile(memory.Name() / "new", bytes->View());
    };
    const std::string newFile = "write the same bytes to a new file";
    std::vector<Figure> figures;
    figures.push_back({"open",
                       [&] {
                           PosixFileAccess files(memory.Name());
                           auto opened = std::make_unique<CQuillaryDoc>(files);
                           return Seconds([&] { OpenTable(*opened, table, OpenMode::Read); });
                       },
                       "read the file, scan each record once for FF",
                       [&] {
                           Buffer whole;
                           return Seconds([&] {
                               whole = ReadWhole(table);
                               benchmark::DoNotOptimize(ScanRecords(whole.View()));
                           });
                       },
                       kOpenAim});
    figures.push_back({"save, one record changed",
                       [&] {
                           saved.ChangeOneRecord();
                           return saved.Save();
                       },
                       newFile, writeNewFile, kSaveAim});
    figures.push_back({"save, every record moved",
                       [&] {
                           saved.Shuffle();
                           return saved.Save();
                       },
                       newFile, writeNewFile, kSaveAim});
    const auto partOfSave = [](SavedTable& of, double TimedFiles::*seconds) {
        return [&of, seconds] {
            of.ChangeOneRecord();
            (void)of.Save();
            return of.Times().*seconds;
        };
    };
    figures.push_back({"  of it, the rewrite in place", partOfSave(saved, &TimedFiles::rewrite), {}, {}});
    figures.push_back(
        {"  besides, the recovery copy", partOfSave(saved, &TimedFiles::recoveryCopy), newFile, writeNewFile});
    figures.push_back({"  the recovery copy on disk", partOfSave(onDisk, &TimedFiles::recoveryCopy), {}, {}});
    figures.push_back({"  the flush on disk", partOfSave(onDisk, &TimedFiles::flush), {}, {}});
    auto out = std::make_shared<std::string>();
    figures.push_back({"display text of every cell",
                       [&doc, out] { return Seconds([&] { benchmark::DoNotOptimize(ShowEveryCell(doc, *out)); }); },
                       "copy every cell's bytes",
                       [out, cells = std::make_shared<std::vector<std::string_view>>(EveryCell(doc))] {
                           return Seconds([&] {
                               out->clear();
                               for (const std::string_view cell : *cells) out->append(cell);
                               benchmark::DoNotOptimize(out->size());
                           });
                       }});
    figures.push_back({"find an absent text in all fields",
                       [&doc] {
                           return Seconds([&] {
                               RecordFinder finder(doc, kAbsentText, RecordFinder::kAllFields);
                               Require(!finder.FindFrom(0), "a text was found that is not there");
                           });
                       },
                       "search the file's bytes, case kept",
                       [&doc] {
                           return Seconds([&] {
                               const std::string_view image = doc.FileImage();
                               constexpr std::string_view kText = "Xylophone";
                               benchmark::DoNotOptimize(
                                   memmem(image.data(), image.size(), kText.data(), kText.size()) != nullptr);
                           });
                       }});
    figures.push_back({"open, retype 5 of 20 fields, save", [&retyped] { return retyped.OpenAndSave(true); },
                       "open and save it", [&retyped] { return retyped.OpenAndSave(false); }, kSchemaAim});
    return figures;
}

int Run(int argc, char** argv) {
    UseLargePages();  // as the programs do
    // Large blocks are new memory at every turn, as in a program that has just started.
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
    const Path memoryBacked = "/dev/shm";
    const Path onDisk = std::filesystem::temp_directory_path();
    const ScratchFolder memory(access(memoryBacked.c_str(), W_OK) == 0 ? memoryBacked : onDisk);
    const ScratchFolder disk(onDisk);
    const Path table = memory.Name() / "table.pdb";
    InNewProcess([&] {
        PosixFileAccess files(memory.Name());
        Failure failure;
        if (!WriteGeneratedDatabase(files, table, failure)) GiveUp(failure.text);
        return 0L;
    });
    const long held = InNewProcess([&] {
        PosixFileAccess files(memory.Name());
        CQuillaryDoc doc(files);
        OpenTable(doc, table, OpenMode::Read);
        return ResidentBytes();
    });

    PosixFileAccess files(memory.Name());
    CQuillaryDoc doc(files);
    OpenTable(doc, table, OpenMode::Read);
    SavedTable savedInMemory(table, memory, ProcessorSeconds);
    SavedTable savedOnDisk(table, disk, WallSeconds);
    RetypedTable retyped(memory);
    const auto figures = MakeFigures(table, memory, savedInMemory, savedOnDisk, retyped, doc);
    std::printf("%zu records of %zu fields, %.1f MB; processor time, on disk wall time\n", doc.RecordCount(),
                doc.FieldCount(), static_cast<double>(doc.FileImage().size()) / 1e6);
    if (!RunFigures(figures, {argv, argv + argc})) return 2;
    PrintMemory(held, static_cast<double>(doc.FileImage().size()));
    return 0;
}

}  // namespace

}  // namespace quillary

int main(int argc, char** argv) { return quillary::Run(argc, argv); }
