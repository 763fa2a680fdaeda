// Reading images that other programs, or accidents, made.
#include <gtest/gtest.h>

#include "db/DatabaseReader.h"
#include "tests/fakes/TestDatabase.h"

namespace quillary {
namespace {

ImageParts Simple() {
    ImageParts parts;
    parts.AddSchema({"Name", "Due"}, {"t", "D"});
    parts.Add(2, {"Ann", "36500"});
    parts.Add(0x43, {"Bob", ""});
    return parts;
}

std::vector<std::string> Names(const std::string& image) {
    CDatabaseReader reader;
    reader.ReadHeader(image);
    std::vector<std::string> names;
    for (bool more = reader.FirstDataRecord(); more; more = reader.NextDataRecord()) {
        names.emplace_back(reader.Field(0).value_or("<none>"));
    }
    return names;
}

void SetOffset(std::string& image, std::size_t record, std::uint32_t offset) {
    for (int i = 0; i < 4; ++i) image[78 + 8 * record + i] = static_cast<char>(offset >> (24 - 8 * i));
}

std::uint32_t OffsetOf(const std::string& image, std::size_t record) {
    return ReadRecordListEntry(image, record)->offset;
}

TEST(DatabaseReader, WhatARecordIs) {
    ImageParts parts = Simple();
    parts.Add(0x82, {"deleted"});
    parts.Add(0x42, {"Cid"});
    parts.Add(0x12, {"secret"});
    parts.Add(7, {"foreign"});
    const std::string image = parts.Build();
    EXPECT_EQ((std::vector<std::string>{"Ann", "Bob", "Cid"}), Names(image));
    CDatabaseReader reader;
    reader.ReadHeader(image);
    EXPECT_EQ(3u, reader.ForeignRecordCount());
    EXPECT_EQ(0u, reader.DamagedCount());
    const std::string cut = image.substr(0, image.find("Bob"));
    EXPECT_EQ((std::vector<std::string>{"Ann", "<none>", "<none>"}), Names(cut));
    reader.ReadHeader(cut);
    for (bool more = reader.FirstDataRecord(); more;) more = reader.NextDataRecord();
    EXPECT_EQ(2u, reader.DamagedCount());
    const std::string beginning = image.substr(0, kHeaderSize + kRecordEntrySize);
    reader.ReadHeader(beginning);
    EXPECT_EQ(10u, reader.DamagedCount()) << "the application-info block, and what the list does not reach";

    parts.records[1].attributes = 0x81;
    EXPECT_FALSE(IsDatabaseImage(parts.Build())) << "a deleted FieldLabels record is none";
    parts.records[1].attributes = 0x41;
    EXPECT_TRUE(IsDatabaseImage(parts.Build()));
    parts.version = 1;
    EXPECT_FALSE(IsDatabaseImage(parts.Build()));
}

TEST(DatabaseReader, AFieldLengthsRecordAtIndexZeroCountsAsMissing) {
    ImageParts parts;
    parts.hasAppInfo = false;
    parts.AddSchema({"Name"}, {"t"});
    parts.Add(2, {"Ann"});
    const auto schema = [&parts] {
        const std::string image = parts.Build();
        CDatabaseReader reader;
        reader.ReadHeader(image);
        return reader.ReadSchema() ? Message::None : reader.LastError();
    };
    EXPECT_EQ(Message::None, schema()) << "DataType may stand first";
    std::swap(parts.records[0], parts.records[1]);
    EXPECT_EQ(Message::None, schema()) << "FieldLabels may stand first";
    std::swap(parts.records[0], parts.records[2]);
    EXPECT_EQ(Message::NoFieldLength, schema());
    parts.hasAppInfo = true;
    EXPECT_EQ(Message::None, schema()) << "the block takes index 0";
}

TEST(DatabaseReader, WildOffsetsReadAsRecordsWithoutEntries) {
    const std::string whole = Simple().Build();
    const std::size_t kAnn = 4, kBob = 5;
    const std::tuple<const char*, std::size_t, std::uint32_t, std::vector<std::string>> kCases[] = {
        {"outside the file", kBob, 0xFFFFFFF0, {"Ann", "<none>"}},
        {"at its end", kBob, static_cast<std::uint32_t>(whole.size()), {"Ann", "<none>"}},
        {"before its predecessor", kBob, OffsetOf(whole, kAnn) - 1, {"<none>", "<none>"}},
        {"behind its successor", kAnn, OffsetOf(whole, kBob) + 1, {"<none>", "<none>"}},
        {"shorter than its header", kBob, OffsetOf(whole, kAnn) + 5, {"<none>", "<none>"}},
    };
    for (const auto& [name, record, offset, names] : kCases) {
        std::string image = whole;
        SetOffset(image, record, offset);
        EXPECT_EQ(names, Names(image)) << name;
    }
}

TEST(DatabaseReader, EveryTruncationReadsWhatIsThere) {
    const std::string whole = Simple().Build();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        // A heap block of exactly this size: the sanitizer sees one byte too far.
        const std::vector<char> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        CDatabaseReader reader;
        reader.ReadHeader({cut.data(), cut.size()});
        for (bool more = reader.FirstDataRecord(); more; more = reader.NextDataRecord()) {
            for (std::uint8_t k = 0; k < 20; ++k) {
                const auto text = reader.Field(k).value_or(std::string_view(cut.data(), 0));
                ASSERT_LE(text.data() + text.size(), cut.data() + cut.size());
            }
        }
        (void)reader.ReadSchema();
    }
    EXPECT_EQ((std::vector<std::string>{"Ann", "Bo"}), Names(whole.substr(0, whole.size() - 5)));
}

TEST(DatabaseReader, CrossingOffsetsDoNotGrowBeyondTwiceTheFile) {
    ImageParts parts = Simple();
    for (int i = 0; i < 3000; ++i) parts.records.push_back({2, "no end mark cuts one off"});
    std::string image = parts.Build();
    const std::uint32_t begin = OffsetOf(image, 6);
    for (std::size_t i = 0; i < 3000; ++i)
        SetOffset(image, 4 + i, i % 3 == 2 ? static_cast<std::uint32_t>(image.size()) : begin);
    CDatabaseReader reader;
    reader.ReadHeader(image);
    std::size_t total = 0;
    for (bool more = reader.FirstDataRecord(); more; more = reader.NextDataRecord()) total += reader.DataRecord().size;
    EXPECT_LE(total, 2 * image.size());
}

}  // namespace
}  // namespace quillary
