// Writes the table of the benchmarks into a folder for scripts: table.pdb, table.csv, and fields.txt with a field
// definition a line.
#include <cstdio>
#include <fstream>

#include "benchmarks/GeneratedTable.h"
#include "platform/posix/PosixFileAccess.h"

int main(int argc, char** argv) {
    using namespace quillary;
    if (argc != 2) {
        std::fputs("usage: generate_table FOLDER\n", stderr);
        return 2;
    }
    const Path folder = argv[1];
    PosixFileAccess files(folder);
    Failure failure;
    if (!WriteGeneratedDatabase(files, folder / "table.pdb", failure)) {
        std::fprintf(stderr, "generate_table: %s\n", failure.text.c_str());
        return 1;
    }
    std::ofstream csv(folder / "table.csv", std::ios::binary);
    csv << GeneratedCsv();
    std::ofstream definitions(folder / "fields.txt");
    for (const Field& field : GeneratedFields()) definitions << DefinitionText(field) << '\n';
    csv.close();
    definitions.close();
    if (!csv || !definitions) {
        std::fprintf(stderr, "generate_table: the table could not be written to %s\n", folder.c_str());
        return 1;
    }
    return 0;
}
