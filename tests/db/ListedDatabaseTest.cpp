// Which files the list of databases shows.
#include "db/ListedDatabase.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "db/DatabaseReader.h"
#include "tests/fakes/TestDatabase.h"

namespace quillary {
namespace {

bool IsListed(const std::string& image, std::size_t* bytesRead = nullptr) {
    const ReadPart read = [&](std::uint64_t offset, char* to, std::size_t size) -> std::size_t {
        if (offset >= image.size()) return 0;
        const std::size_t count = image.copy(to, size, static_cast<std::size_t>(offset));
        if (bytesRead) *bytesRead += count;
        return count;
    };
    return IsListedDatabase(read, image.size());
}

// The same rule by reading the whole file.
bool OpensWithAField(const std::string& image) {
    CDatabaseReader reader;
    reader.ReadHeader(image);
    return IsDatabaseImage(image) && reader.ReadSchema() && reader.ColumnCount() > 0;
}

TEST(ListedDatabase, ReadsTheListAndOneRecordHoweverLargeTheFile) {
    ImageParts parts;
    for (int i = 0; i < 3000; ++i) parts.Add(2, {std::string(500, 'x')});
    parts.AddSchema({"Name"}, {"T"});
    std::size_t bytesRead = 0;
    EXPECT_TRUE(IsListed(parts.Build(), &bytesRead)) << "the schema may stand last";
    EXPECT_LT(bytesRead, 60000u);
    const ReadPart unreadable = [](std::uint64_t, char*, std::size_t) -> std::size_t { return 0; };
    EXPECT_FALSE(IsListedDatabase(unreadable, parts.Build().size()));
}

TEST(ListedDatabase, IsWhatTheWholeFileSays) {
    ::setenv("RC_PARAMS", "max_success=5000", 0);
    EXPECT_TRUE(rc::check([] {
        using Texts = std::vector<std::string>;
        ImageParts parts;
        parts.hasAppInfo = *rc::gen::arbitrary<bool>();
        parts.AddSchema(*rc::gen::element(Texts{"Name"}, Texts{""}, Texts{"A", "B"}), {"T"});
        for (const int category : *rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 8))) {
            parts.Add(static_cast<std::uint8_t>(category), {"x"});
        }
        for (std::size_t i = parts.records.size(); i > 1; --i) {
            std::swap(parts.records[i - 1], parts.records[*rc::gen::inRange<std::size_t>(0, i)]);
        }
        std::string image = parts.Build();
        const std::size_t listEnd = 78 + 8 * parts.records.size();
        for (int i = *rc::gen::inRange(0, 5); i > 0; --i) {
            // The lower half of an offset, in files that are this small, or the attributes.
            const std::size_t at = 78 + 8 * *rc::gen::inRange<std::size_t>(0, parts.records.size()) + 2;
            image[at + *rc::gen::inRange<std::size_t>(0, 3)] =
                *rc::gen::element('\0', '\1', '\5', '\6', '\x82', '\xC8');
        }
        image[35] = *rc::gen::element('\0', '\0', '\0', '\1');  // the version
        if (*rc::gen::arbitrary<bool>()) image.resize(*rc::gen::inRange<std::size_t>(listEnd - 16, image.size()));
        RC_ASSERT(IsListed(image) == OpensWithAField(image));
    }));
}

}  // namespace
}  // namespace quillary
