#include "tests/cli/Qly.h"

namespace quillary {
namespace {

class FilterCommand : public QlyTest {
  protected:
    void SetUp() override {
        ImageParts parts;
        parts.AddSchema({"Name", "No", "Ok", "Due", "At", "Kind"}, {"t", "F", "B", "D", "d", "Lx;y z"});
        parts.Add(2, {"Dan", "4", "true", "36591", "37859", "x"});
        parts.Add(2, {"ann", "1", "false", "36500", "0", "y z"});
        parts.Add(3, {"Cid", "3", "ja", "", "", "X"});
        parts.tail = std::string(126, '\0') + FromHex("01000000 FF000000 FF000000");  // sorted by No
        Write("t.pdb", parts);
    }
    // The names that a filter of these conditions leaves.
    std::string Names(std::vector<std::string> arguments, const std::string& command = "filter") {
        arguments.insert(arguments.begin(), {command, "t.pdb"});
        EXPECT_EQ("", Output(arguments));
        std::string names;
        const Json table = JsonOf({"list", "t.pdb", "--format", "json"});
        for (const auto& record : table["records"]) names += record[0].get<std::string>() + " ";
        return names;
    }
    Json Filter() { return JsonOf({"info", "t.pdb", "--json"})["filter"]; }
};

TEST_F(FilterCommand, Refuses) {
    const std::string long40(40, 'x');
    const std::vector<std::string> four = {"--where", "No", "is", "1", "--where", "No", "is", "2",
                                           "--where", "No", "is", "3", "--where", "No", "is", "4"};
    Expect(
        {"filter", "t.pdb"},
        {
            {"an unknown field", {"--where", "name", "is", "x"}, 1, "no field \"name\". The database has \"Name\", "},
            {"an unknown operator", {"--where", "Name", "isnt", "x"}, 2, "There are \"is\" and \"contains\"."},
            {"one of another type", {"--where", "Ok", "contains", "true"}, 2, "\"is\" and \"is not\"."},
            {"one that all fields lack", {"--where", "*", "is not", "x"}, 2, "\"is not\" for all fields."},
            {"a condition that ends early", {"--where", "Name", "is"}, 2, "\"--where\" needs FIELD OP VALUE."},
            {"a fourth condition", four, 2, "at most three"},
            {"40 bytes", {"--where", "Name", "is", long40}, 1, "at most 39 bytes of text; \"" + long40 + "\" has 40."},
            {"a character that the page lacks", {"--where", "Name", "is", "\xD0\xB6"}, 1, "cannot be stored"},
            {"no number", {"--where", "No", "is", "one"}, 2, "\"one\" is no number."},
            {"a number and more", {"--where", "No", "is", "1e5x"}, 2, "\"1e5x\" is no number."},
            {"no check box", {"--where", "Ok", "is", "yes"}, 1, "neither true nor false"},
            {"no date", {"--where", "Due", "is", "36500"}, 1, "is no date"},
            {"no time", {"--where", "At", "is", "25:00"}, 1, "is no time"},
            {"no item", {"--where", "Kind", "is", "X"}, 1, "no item of the list"},
            {"an empty item", {"--where", "Kind", "is", ""}, 1, "no item of the list"},
        });
}

TEST_F(FilterCommand, FiltersAllRecordsStoresAndSorts) {
    const std::vector<std::tuple<std::vector<std::string>, std::string, std::string>> kCases = {
        {{"*", "contains", ""}, "ann Cid Dan ", ""},
        {{"Name", "is", "DAN"}, "Dan ", "DAN"},
        {{"Name", "contains", "--any=x"}, "", "--any=x"},
        {{"Name", "is", "[a,b]"}, "", "[a,b]"},
        {{"*", "contains", "2003"}, "ann ", "2003"},
        {{"No", "greater than", "-1.5"}, "ann Cid Dan ", "-1.5"},
        {{"No", "less than", " +.3e1"}, "ann ", " +.3e1"},
        {{"Ok", "is", "true"}, "Cid Dan ", "T"},
        {{"Due", "is before", "3/7/2004"}, "ann Cid ", "36591"},
        {{"Due", "is", ""}, "Cid ", ""},
        {{"At", "is", "10:30 AM"}, "Dan ", "37800"},
        {{"At", "is after", "No Time"}, "ann Dan ", ""},
        {{"Kind", "is", "x"}, "Cid Dan ", "x"},
    };
    for (auto [words, names, value] : kCases) {
        words.insert(words.begin(), "--where");
        EXPECT_EQ(names, Names(words)) << words[3];
        EXPECT_EQ(value, Filter()["conditions"][0]["value"]) << words[3];
    }
}

TEST_F(FilterCommand, CombinesNarrowsAndLetsGo) {
    EXPECT_EQ("ann Dan ", Names({"--where", "Name", "is", "ann", "--where=Name", "is", "dan", "--any"}));
    EXPECT_EQ("or", Filter()["combine"]);
    EXPECT_EQ("Dan ", Names({"--where", "Ok", "is", "true", "--narrow"}));
    EXPECT_EQ("ann ", Names({"--where", "Name", "is", "ann", "--where", "Ok", "is", "false"}));
    EXPECT_EQ("ann ", Names({})) << "hidden ones stay so";
    EXPECT_TRUE(Filter()["conditions"].empty());
    EXPECT_EQ("ann Cid Dan ", Names({}, "showall")) << "also when no condition is left";
}

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
    const std::tuple<std::vector<std::string>, std::string, std::string> kCases[] = {
        {{"sort", "t.pdb", "No:asc", "Due:desc", "Name"}, "aBb", "02000000 01010000 00000000"},
        // A name goes before an ending, and may have one.
        {{"sort", "t.pdb", "No:desc"}, "aBb", "03000000 FF000000 FF000000"},
        {{"sort", "t.pdb", "No:desc:desc"}, "bBa", "03010000 FF000000 FF000000"},
        {{"sort", "t.pdb"}, "bBa", "FF000000 FF000000 FF000000"},
    };
    for (const auto& [arguments, names, keys] : kCases) {
        EXPECT_EQ("", Output(arguments));
        EXPECT_THAT(Read("t.pdb"), HasSubstr(FromHex(keys + "FF FF FF 01 FF 00"))) << keys;
        const Json list = JsonOf({"list", "t.pdb", "--format", "json"});
        std::string listed;
        for (const Json& record : list["records"]) listed += record[0];
        EXPECT_EQ(names, listed) << keys;
    }
}

}  // namespace
}  // namespace quillary
