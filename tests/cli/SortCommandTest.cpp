#include "tests/cli/Qly.h"

namespace quillary {

namespace {

class SortCommand : public QlyTest {};

TEST_F(SortCommand, StoresTheKeysAndSortsByThem) {
    ImageParts parts;
    parts.AddSchema({"Name", "Due", "No", "No:desc"}, {"t", "D", "F", "F"});
    parts.Add(2, {"b", "", "10", "3"});
    parts.Add(2, {"a", "7", "9", "1"});
    parts.Add(3, {"hidden"});
    parts.Add(9, {"of another program"});
    parts.Add(2, {"B", "-5", "10", "2"});
    Write("t.pdb", parts);
    Expect({"sort", "t.pdb"}, {
                                  {"an unknown field", {"No", "due:asc"}, 1, "no field \"due\". The database has \"N"},
                                  {"an unknown direction", {"Due:down"}, 1, "no field \"Due:down\"."},
                                  {"a fourth key", {"Name", "Due", "No", "Name"}, 2, "Too many words"},
                                  {"records that would be lost", {"Due"}, 1, "1 would not come back"},
                                  {"one key", {"Name", "--drop-foreign"}, 0, ""},
                              });
    const struct {
        std::vector<std::string> arguments;
        std::string names, keys;
    } kCases[] = {
        {{"sort", "t.pdb", "Name"}, "Bab", "00000000 FF000000 FF000000"},
        {{"sort", "t.pdb", "No:asc", "Due:desc", "Name"}, "aBb", "02000000 01010000 00000000"},
        // A name goes before an ending, and may have one.
        {{"sort", "t.pdb", "No:desc"}, "aBb", "03000000 FF000000 FF000000"},
        {{"sort", "t.pdb", "No:desc:desc"}, "bBa", "03010000 FF000000 FF000000"},
        {{"sort", "t.pdb"}, "bBa", "FF000000 FF000000 FF000000"},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ("", Output(c.arguments));
        EXPECT_THAT(Read("t.pdb"), HasSubstr(FromHex(c.keys + "FF FF FF 01 FF 00"))) << c.keys;
        const Json list = JsonOf({"list", "t.pdb", "--format", "json"});
        std::string names;
        for (const Json& record : list["records"]) names += record[0];
        EXPECT_EQ(c.names, names) << c.keys;
    }
}

}  // namespace

}  // namespace quillary
