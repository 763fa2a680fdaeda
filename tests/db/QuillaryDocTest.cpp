// A document opened from bytes, changed, saved, and the bytes that come out.
#include "db/QuillaryDoc.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "db/RecoveryFile.h"
#include "platform/posix/CodePages.h"
#include "tests/fakes/TestDatabase.h"

namespace quillary {
namespace {

using testing::ElementsAre, testing::HasSubstr;

class QuillaryDoc : public testing::Test {
  protected:
    bool Open(const ImageParts& parts, OpenMode mode = OpenMode::Edit) {
        files.contents["/db.pdb"] = parts.Build();
        return doc.OpenDatabase("/db.pdb", mode, questions);
    }
    std::string Saved() {
        Failure failure;
        EXPECT_TRUE(doc.SaveDatabase(failure)) << failure.text;
        return files.contents["/db.pdb"];
    }

    MemoryFiles files;
    ScriptedQuestions questions;
    CQuillaryDoc doc{files};
};

ImageParts Contacts() {
    ImageParts parts;
    parts.AddSchema({"Name", "Due", "Done"}, {"T", "D", "B!"}, {"120", "-5", "x"}, "Info\r\ntext", "-7");
    parts.Add(2, {"Ann", "36500", "true"});
    parts.Add(3, {"Bob", "", "false"});
    parts.Add(0x42, {"Cid"});
    return parts;
}

TEST_F(QuillaryDoc, OpensWhatAFileHolds) {
    ASSERT_TRUE(Open(Contacts()));
    EXPECT_EQ(-7, doc.InfoLockHash());
    EXPECT_EQ(0, doc.FieldWidth(2)) << "no number";
    EXPECT_EQ(80, doc.FieldWidth(3));
    EXPECT_EQ(0, ShownWidth(doc.Fields()[1]));
    EXPECT_THAT(ShownTexts(doc),
                ElementsAre(ElementsAre("Ann", "36500", "true"), ElementsAre("Cid", "<none>", "<none>")));
    EXPECT_TRUE(doc.NextRecord());
    EXPECT_FALSE(doc.NextRecord());
    EXPECT_FALSE(doc.FieldText(1, true));
    EXPECT_FALSE(doc.IsModified());
    const std::string before = files.contents["/db.pdb"];
    EXPECT_EQ(before, Saved()) << "an unchanged document writes nothing";
}

TEST_F(QuillaryDoc, SchemaTextsThatMeanNothingStayUntilTheyAreSet) {
    ImageParts parts;
    parts.AddSchema({"A", "B", "C", "D"}, {"", "Zoo", "F2", "I7"}, {"abc", " 80", "99999999999", ""});
    ASSERT_TRUE(Open(parts));
    std::string expected = files.contents["/db.pdb"];
    doc.SetEditOnSelect(true);
    const std::string saved = Saved();
    EXPECT_EQ(expected.substr(expected.find("abc")), saved.substr(saved.find("abc")));
    EXPECT_NE(saved.find(FromHex("0000 0001") + "Zoo"), saved.npos) << "an empty type";
    doc.SetFieldWidth(0, 70);
    doc.SetFieldWidth(0, 0);
    EXPECT_EQ(Saved().find("abc"), saved.npos);
}

// A save that stopped, and a file that is by now no database, or gone.
TEST_F(QuillaryDoc, ACopyIsToldOfWhenThereIsNoDatabase) {
    ASSERT_TRUE(Open(Contacts()));
    const std::string recovery = RecoveryFile::Head("/db.pdb", {1, 7, 0, 0, true}, "old", "new") + "new";
    for (const bool isGone : {false, true}) {
        files.contents = {{"/db.pdb", ""}, {"/db.pdb.recovery", recovery}};
        if (isGone) files.contents.erase("/db.pdb");
        for (const OpenMode mode : {OpenMode::Read, OpenMode::Edit, OpenMode::EditExclusive}) {
            EXPECT_FALSE(doc.OpenDatabase("/db.pdb", mode, questions));
            EXPECT_EQ(RecoveryState::Unrelated, doc.Recovery()) << isGone;
        }
        EXPECT_EQ(recovery, files.contents["/db.pdb.recovery"]);
    }
    EXPECT_FALSE(doc.OpenDatabase("/other.pdb", OpenMode::Edit, questions));
    EXPECT_EQ(RecoveryState::None, doc.Recovery());
}

TEST_F(QuillaryDoc, AnImageThatCouldNotBeReadIsNotMade) {
    const std::string text(20000, 'x');
    DatabaseContent content;
    content.fields = {MakeField("A", "t")};
    content.shown.assign(60000, {text.data(), static_cast<std::uint32_t>(text.size()), kCategoryShown});
    Image image;
    Failure failure;
    EXPECT_FALSE(EncodeDatabase(content, image, failure));
    EXPECT_EQ(Message::ImageTooLarge, failure.message);
    EXPECT_EQ(text.data(), content.shown[0].data) << "as it was";
}

TEST_F(QuillaryDoc, TheWholeFileByteForByte) {
    Field field = MakeField("A", "F");
    field.width = 70;
    doc.NewDatabase("Ab", {field});
    Failure failure;
    ASSERT_TRUE(doc.AppendRecord(Entries({"1"}), failure));
    doc.SetSort({{"A", true}});
    doc.SetFilter({{{false, "A", 3, "0"}, {true, "", 1, "x"}}, true, false});
    ASSERT_TRUE(doc.SaveDatabaseAs("/db.pdb", "Ab", failure));
    ImageParts parts;
    parts.name = "Ab";
    // Two conditions: field 0 greater than "0", or all fields contain "x". One key: field 0, descending.
    parts.tail = "0" + std::string(39, '\0') + FromHex("02 83") + "x" + std::string(39, '\0') + FromHex("01 01") +
                 std::string(42, '\0') + FromHex("00010000 FF000000 FF000000");
    parts.AddSchema({"A"}, {"F"}, {"70"});
    parts.Add(2, {"1"});
    EXPECT_EQ(parts.Build(), files.contents["/db.pdb"]);
}

TEST_F(QuillaryDoc, LockWordAndSortKeyWidth) {
    // Keys as written (4 bytes each): field 1 descending, field 0 ascending, none.
    const std::string tail = std::string(126, '\0') + FromHex("01010000 00000000 FF000000");
    const struct {
        const char* name;
        std::uint32_t lockWord;
        std::uint16_t formatVersion;
        std::vector<SortKey> keys;
        int asked;
        const char* written;  // 4 bytes wide whatever the lock word says
    } kCases[] = {
        {"open", 0, 3, {{"Due", true}, {"Name", false}}, 0, "01010000 00000000 FF"},
        {"below 3", 2, 3, {{"Due", true}, {"Name", false}}, 1, "01010000 00000000 FF"},
        {"negative", 0xFFFFFFFF, 3, {{"Due", true}, {"Name", false}}, 1, "01010000 00000000 FF"},
        // Read 5 bytes wide: 01 01 00 00 00 | 00 00 00 FF 00 | 00 00 and what follows.
        {"3 or more", 3, 3, {{"Due", true}, {"Name", false}, {"Name", false}}, 1, "01010000 00000000 00"},
        {"version 2 has no keys", 0, 2, {}, 0, "FF000000 FF000000 FF"},
        {"version 0 has no lock either", 5, 0, {}, 0, "FF000000 FF000000 FF"},
    };
    for (const auto& c : kCases) {
        ImageParts parts = Contacts();
        parts.tail = tail;
        parts.lockWord = c.lockWord;
        parts.formatVersion = c.formatVersion;
        struct AcceptAll : ScriptedQuestions {
            bool AskDatabasePassword(const CQuillaryDoc&) override { return ++asked > 0; }
        } accept;
        files.contents["/db.pdb"] = parts.Build();
        ASSERT_TRUE(doc.OpenDatabase("/db.pdb", OpenMode::Edit, accept)) << c.name;
        EXPECT_EQ(c.asked, accept.asked) << c.name;
        EXPECT_EQ(c.keys, doc.Sort()) << c.name;
        EXPECT_EQ(c.formatVersion < 3 ? 3u : 2u, doc.Shown().size()) << c.name;
        doc.SetStyle(DateStyle::Long);
        const std::string saved = Saved();
        EXPECT_THAT(saved, HasSubstr(FromHex(c.written) + FromHex("000000 FFFFFF01FF00"))) << c.name;
        const std::uint32_t kept = c.formatVersion == 0 ? 0 : c.lockWord;
        EXPECT_EQ(kept, AppInfoBlock::Read(saved, DatabaseHeader::Read(saved)->AppInfoOffset()).LockWord()) << c.name;
    }
}

TEST_F(QuillaryDoc, RefusesWhatIsNoDatabase) {
    ImageParts noName;
    noName.AddSchema({""}, {"t"});
    ImageParts noTypes = Contacts();
    noTypes.records.erase(noTypes.records.begin());
    ImageParts versionOne = Contacts();
    versionOne.version = 1;
    const std::tuple<const char*, std::string, Message> kCases[] = {
        {"empty", "", Message::None},
        {"version 1", versionOne.Build(), Message::None},
        {"no DataType record", noTypes.Build(), Message::NoDataType},
        {"no field", noName.Build(), Message::NoFieldNames},
        {"text", std::string(5000, 'x'), Message::None},
    };
    for (const auto& [name, image, reason] : kCases) {
        questions.told.clear();
        files.contents["/db.pdb"] = image;
        EXPECT_FALSE(doc.OpenDatabase("/db.pdb", OpenMode::Edit, questions)) << name;
        EXPECT_THAT(questions.told, ElementsAre(Message::InvalidDatabaseFile)) << name;
        EXPECT_EQ(reason, doc.ReaderError().message) << name;
        EXPECT_FALSE(doc.IsOpen());
    }
}

TEST_F(QuillaryDoc, ConditionsAndKeysWithoutAFieldAreClosedUp) {
    ImageParts parts = Contacts();
    const std::string whole(40, 'x');  // without a NUL
    // Conditions: selector 9 names no field and carries the "or" flag; unused; field 0 contains "xx...". Keys: 7
    // (none), FF, 1.
    parts.tail = std::string(40, 'a') + FromHex("09 80") + std::string(42, '\0') + whole + FromHex("02 01") +
                 FromHex("07000000 FF000000 01010000");
    ASSERT_TRUE(Open(parts));
    EXPECT_EQ((FilterSettings{{{false, "Name", 1, whole}}, true, false}), doc.Filter());
    EXPECT_EQ((SortSettings{{"Due", true}}), doc.Sort());
    doc.SetStyle(DateStyle::Long);
    EXPECT_THAT(Saved(),
                HasSubstr(whole + FromHex("02 81") + std::string(84, '\0') + FromHex("01010000 FF000000 FF000000")));
}

TEST_F(QuillaryDoc, ADamagedSchemaReadsTheSameAfterEverySave) {
    ImageParts parts;
    // Names, types and an info text in which the scan finds later entries, and a name that is nothing else.
    parts.AddSchema({"a\x02z", "\x05\x03", "?"}, {"\x02", "D!", "L\x03x;y"}, {}, "in\x01to", "77");
    parts.tail = std::string(126, '\0') + FromHex("01000000 02010000 FF000000");
    ASSERT_TRUE(Open(parts));
    Failure failure;
    ASSERT_TRUE(doc.OverwriteDatabase(failure));
    const std::string first = files.contents["/db.pdb"];
    const auto fields = doc.Fields();
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(doc.OpenDatabase("/db.pdb", OpenMode::Edit, questions));
        ASSERT_TRUE(doc.OverwriteDatabase(failure));
        EXPECT_EQ(first, files.contents["/db.pdb"]);
        EXPECT_EQ(fields.size(), doc.FieldCount());
    }
    // And what is changed later is found behind them.
    auto changed = fields;
    changed[2].type = FieldType::Phone;
    changed.push_back(MakeField("later", "t"));
    doc.SetFields(changed);
    doc.SetInfo(doc.InfoTextBytes(), 78);
    (void)Saved();
    ASSERT_TRUE(doc.OpenDatabase("/db.pdb", OpenMode::Edit, questions));
    ASSERT_EQ(4u, doc.FieldCount());
    EXPECT_EQ(FieldType::Phone, doc.TypeOf(2));
    EXPECT_EQ(78, doc.InfoLockHash());
}

TEST_F(QuillaryDoc, WithoutAnAppInfoBlockHiddenRecordsStayHidden) {
    ImageParts parts = Contacts();
    parts.hasAppInfo = false;
    ASSERT_TRUE(Open(parts));
    EXPECT_EQ(2u, doc.Shown().size());
    EXPECT_EQ(1u, doc.Hidden().size());
    doc.SetStyle(DateStyle::Long);
    EXPECT_EQ('\x0F', Saved()[DatabaseHeader::Read(Saved())->AppInfoOffset() + 274]);
}

TEST_F(QuillaryDoc, RestoreTakesEveryChangeBackAlsoAcrossASave) {
    ASSERT_TRUE(Open(Contacts()));
    const auto texts = ShownTexts(doc);
    const auto snapshot = doc.Snapshot();
    Failure failure;
    ASSERT_TRUE(doc.AppendRecord(Entries({"New", "1", "true"}), failure));
    doc.ReplaceRecord(0, Entries({"Eve"}));
    doc.SetSort({{"Name", false}});
    (void)Saved();
    doc.RemoveRecord(0);
    doc.Restore(*snapshot);
    EXPECT_EQ(texts, ShownTexts(doc));
    EXPECT_TRUE(doc.Sort().empty());
    EXPECT_TRUE(doc.IsModified()) << "the file holds what was taken back";
    (void)Saved();
    ASSERT_TRUE(doc.OpenDatabase("/db.pdb", OpenMode::Read, questions));
    EXPECT_EQ(texts, ShownTexts(doc));
}

TEST(QuillaryDocName, IsCutBetweenCharactersAndElseKeptAsItIs) {
    const auto shiftJis = CodePageByName("shift_jis");
    ASSERT_TRUE(shiftJis);
    std::string pairs;
    for (int i = 0; i < 16; ++i) pairs += "\x82\xA0";
    const std::tuple<const char*, const AnsiText&, std::string, std::string> kCases[] = {
        {"31 bytes", AnsiText::Windows1252(), std::string(40, 'n'), std::string(31, 'n')},
        {"15 characters of two bytes", *shiftJis, pairs, pairs.substr(0, 30)},
        {"one byte before them", *shiftJis, "n" + pairs, "n" + pairs.substr(0, 30)},
        {"control characters", AnsiText::Windows1252(), "a\x01\n\x1B[31m\x7F", "a\x01\n\x1B[31m\x7F"},
    };
    for (const auto& [name, page, given, kept] : kCases) {
        SCOPED_TRACE(name);
        MemoryFiles files;
        ScriptedQuestions questions;
        CQuillaryDoc doc(files, page);
        doc.NewDatabase("x", {MakeField("a", "t")});
        Failure failure;
        ASSERT_TRUE(doc.SaveDatabaseAs("/db.pdb", given, failure));
        EXPECT_EQ(kept + std::string(32 - kept.size(), '\0'), files.contents["/db.pdb"].substr(0, 32));
        ASSERT_TRUE(doc.OpenDatabase("/db.pdb", OpenMode::Edit, questions));
        EXPECT_EQ(page.ToWide(kept), doc.Name());
    }
}

}  // namespace
}  // namespace quillary
