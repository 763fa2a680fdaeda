// What sorting, filtering and finding cost in a full-sized table that is open, beside sqlite3's own time for the same
// rows, and how the time grows with the number of records.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>

#include "benchmarks/Figures.h"
#include "benchmarks/GeneratedTable.h"
#include "benchmarks/Scratch.h"
#include "db/FieldValue.h"
#include "platform/posix/LargePages.h"
#include "platform/posix/PosixFileAccess.h"
#include "query/Filter.h"
#include "query/Find.h"
#include "query/Sort.h"

namespace quillary {

namespace {

constexpr std::size_t kFewRecords = 8000;
constexpr double kGrowthAim = 1.3;  // times what n log n, or n, lets one expect
constexpr double kFilterAim = 0.5;  // times sqlite3's where
constexpr double kFindAim = 1;      // times grep

// The table as sqlite3 keeps it, with the types that its columns have.
class SqliteTable {
  public:
    explicit SqliteTable(const Path& folder) : m_folder(folder) {
        std::ofstream csv(folder / "table.csv", std::ios::binary);
        csv << GeneratedCsv();
        csv.close();
        Require(static_cast<bool>(csv), "cannot write the table as CSV");
        (void)Run(
            "'create table t(Item text, Number integer, Price real, Insured text, Bought text, Delivered text, "
            "Room text, \"Dealer phone\" text, \"Dealer e-mail\" text, Notes text)' "
            "'.import --csv --skip 1 table.csv t'");
    }
    // Processor seconds of the statement alone, as sqlite3 tells them.
    double Seconds(const std::string& statement) const {
        const std::string told = Run("<<'END'\n.timer on\n" + statement + ";\nEND");
        double real = 0, user = 0, system = 0;
        const auto at = told.find("Run Time:");
        Require(at != told.npos &&
                    std::sscanf(told.c_str() + at, "Run Time: real %lf user %lf sys %lf", &real, &user, &system) == 3,
                "sqlite3 tells no time");
        return user + system;
    }

  private:
    [[nodiscard]] std::string Run(const std::string& arguments) const {
        const std::string command = "cd '" + m_folder.string() + "' && sqlite3 table.db " + arguments;
        FILE* pipe = popen(command.c_str(), "r");
        Require(pipe != nullptr, "cannot run sqlite3");
        std::string told;
        std::array<char, 4096> piece;
        for (std::size_t n = 0; (n = fread(piece.data(), 1, piece.size(), pipe)) > 0;) told.append(piece.data(), n);
        Require(pclose(pipe) == 0, "sqlite3 fails");
        return told;
    }

    Path m_folder;
};

// Processor seconds of grep over the table as CSV, the whole process.
double GrepSeconds(const Path& csv) {
    const pid_t child = fork();
    if (child == 0) {
        execlp("grep", "grep", "-i", "xylophone", csv.c_str(), nullptr);
        std::_Exit(2);
    }
    int status = 0;
    struct rusage used {};
    const bool ended = child > 0 && wait4(child, &status, 0, &used) == child && WIFEXITED(status);
    Require(ended && WEXITSTATUS(status) == 1, "grep does not miss the absent text");
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(used.ru_utime) + seconds(used.ru_stime);
}

// The first so many records of the table, open in memory.
class OpenTableOf {
  public:
    OpenTableOf(std::size_t records, const Path& folder) : m_files(folder), m_doc(m_files) {
        m_doc.NewDatabase("Household", GeneratedFields());
        std::string entries;
        Failure failure;
        for (std::size_t row = 0; row < records; ++row) {
            const auto texts = GeneratedTexts(row);
            entries.clear();
            for (std::size_t k = 0; k < texts.size(); ++k) AppendEntry(entries, static_cast<std::uint8_t>(k), texts[k]);
            Require(m_doc.AppendRecord(entries, failure), failure.text);
        }
        // One image, as after opening.
        Require(m_doc.SaveDatabaseAs(folder / (std::to_string(records) + ".pdb"), "Household", failure), failure.text);
    }

    double Sort() {
        m_doc.SetSort({{"Room", false}, {"Price", true}, {"Bought", false}});
        return Seconds([this] { benchmark::DoNotOptimize(SortedOrder(m_doc).front()); });
    }
    double Filter() {
        FilterSettings conditions;
        const std::string day = ConditionCount(DateToDay({2015, 1, 1}));
        conditions.conditions = {{false, "Item", 1, "lamp"}, {false, "Price", 3, "500"}, {false, "Bought", 2, day}};
        const auto before = m_doc.Snapshot();
        m_doc.SetFilter(conditions);
        const double seconds = Seconds([this] { ApplyFilter(m_doc); });
        m_kept = m_doc.Shown().size();
        m_doc.Restore(*before);
        return seconds;
    }
    // How many records passed.
    [[nodiscard]] std::size_t Kept() const { return m_kept; }
    double Find() {
        return Seconds([this] {
            Require(!RecordFinder(m_doc, kAbsentText, RecordFinder::kAllFields).FindFrom(0), "it is not absent");
        });
    }

  private:
    PosixFileAccess m_files;
    CQuillaryDoc m_doc;
    std::size_t m_kept = 0;
};

int Run(int argc, char** argv) {
    UseLargePages();
    const Path memoryBacked = "/dev/shm";
    const ScratchFolder folder(access(memoryBacked.c_str(), W_OK) == 0 ? memoryBacked
                                                                       : std::filesystem::temp_directory_path());
    const SqliteTable sqlite(folder.Name());
    OpenTableOf all(kGeneratedRecords, folder.Name());
    OpenTableOf few(kFewRecords, folder.Name());

    const double times = static_cast<double>(kGeneratedRecords) / kFewRecords;
    const double timesLog = times * std::log(static_cast<double>(kGeneratedRecords)) / std::log(double{kFewRecords});
    const std::vector<Figure> figures = {
        {"filter by three conditions", [&] { return all.Filter(); }, "sqlite3: where, a file, processor time",
         [&] {
             return sqlite.Seconds(
                 "select count(*) from t where Item like '%lamp%' and Price > 500 and (Bought = '' or Bought < "
                 "'2015-01-01')");
         },
         kFilterAim},
        {"find absent text in all fields", [&] { return all.Find(); }, "grep -i on the CSV, the process",
         [&] { return GrepSeconds(folder.Name() / "table.csv"); }, kFindAim},
        {"sort by three keys, grown", [&] { return all.Sort(); }, "8,000 records, times n log n",
         [&] { return few.Sort() * timesLog; }, kGrowthAim},
        {"filter, grown", [&] { return all.Filter(); }, "8,000 records, times n", [&] { return few.Filter() * times; },
         kGrowthAim},
        {"find absent text, grown", [&] { return all.Find(); }, "8,000 records, times n",
         [&] { return few.Find() * times; }, kGrowthAim},
    };
    if (!RunFigures(figures, {argv, argv + argc})) return 2;
    std::printf("%zu of %zu records pass the filter\n", all.Kept(), kGeneratedRecords);
    return 0;
}

}  // namespace

}  // namespace quillary

int main(int argc, char** argv) { return quillary::Run(argc, argv); }
