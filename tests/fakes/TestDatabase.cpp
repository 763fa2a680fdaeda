#include "tests/fakes/TestDatabase.h"

#include "db/FieldValue.h"

namespace quillary {

namespace {

std::string Big16(unsigned value) { return {static_cast<char>(value >> 8), static_cast<char>(value)}; }
std::string Big32(std::uint32_t value) { return Big16(value >> 16) + Big16(value & 0xFFFF); }

std::string Padded(std::string text, std::size_t size) {
    text.resize(size);
    return text;
}

std::string SchemaRecord(std::vector<std::string> texts, const std::string& padding) {
    while (texts.size() < 20) texts.push_back(padding);
    return FromHex("FF FF FF 01 FF 00") + Entries(texts) + FromHex("00 FF");
}

}  // namespace

std::string FromHex(std::string_view hex) {
    std::string bytes;
    bool isHigh = true;
    for (const char c : hex) {
        if (c == ' ' || c == '\n') continue;
        const int digit = c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10;
        if (isHigh) bytes.push_back(0);
        bytes.back() = static_cast<char>(bytes.back() << 4 | digit);
        isHigh = !isHigh;
    }
    return bytes;
}

std::string Entries(const std::vector<std::string>& texts) {
    std::string entries;
    for (std::size_t k = 0; k < texts.size(); ++k) entries += Big16(static_cast<unsigned>(k)) + texts[k];
    return entries;
}

void ImageParts::AddSchema(const std::vector<std::string>& names, const std::vector<std::string>& types,
                           const std::vector<std::string>& widths, std::string_view infoText, std::string_view lock) {
    records.push_back({5, SchemaRecord(types, "T")});
    records.push_back({1, SchemaRecord(names, "")});
    records.push_back({6, SchemaRecord(widths, "80")});
    records.push_back({4, SchemaRecord({std::string(infoText), std::string(lock)}, "")});
}

void ImageParts::Add(std::uint8_t attributes, const std::vector<std::string>& texts) {
    records.push_back({attributes, FromHex("FF FF FF 01 FF 00") + Entries(texts) + FromHex("00 FF")});
}

std::string ImageParts::Build() const {
    const std::size_t appInfoAt = 78 + 8 * records.size() + 2;
    std::string appInfo;
    if (hasAppInfo) {
        appInfo = std::string(2, '\0');
        for (const char* category :
             {"Unfiled", "FieldLabels", "DataRecords", "DataRecordsFout", "Preferences", "DataType", "FieldLengths"}) {
            appInfo += Padded(category, 16);
        }
        appInfo.resize(258);
        for (char id = 0; id < 16; ++id) appInfo += id;
        appInfo += FromHex("0F 00") + Big16(formatVersion) + Big32(lockWord);
        appInfo.resize(290);
        appInfo += tail.empty() ? std::string(126, '\0') + FromHex("FF000000 FF000000 FF000000") : tail;
    }
    std::string image = Padded(name, 32) + FromHex("0008") + Big16(version);
    image.resize(52);
    image += Big32(hasAppInfo ? static_cast<std::uint32_t>(appInfoAt) : 0);
    image.resize(60);
    image += "Qly1Qly1";
    image += Padded({static_cast<char>(records.size()), static_cast<char>(records.size() >> 8)}, 8);
    image += Big16(static_cast<unsigned>(records.size()));
    std::size_t at = appInfoAt + appInfo.size();
    std::uint32_t uniqueId = 1;
    for (const Record& record : records) {
        image += Big32(static_cast<std::uint32_t>(at)) +
                 Big32(static_cast<std::uint32_t>(record.attributes) << 24 | uniqueId++);
        at += record.bytes.size();
    }
    image += std::string(2, '\0') + appInfo;
    for (const Record& record : records) image += record.bytes;
    return image;
}

Field MakeField(std::string_view name, std::string_view storedType) {
    Field field;
    field.name = name;
    field.storedType.emplace(storedType);
    DecodeFieldType(storedType, field.type, field.options);
    return field;
}

std::vector<std::vector<std::string>> ShownTexts(const CQuillaryDoc& doc, bool formatted) {
    std::vector<std::vector<std::string>> rows;
    for (const RecordRef& record : doc.Shown()) {
        std::vector<std::string> row;
        for (std::size_t k = 0; k < doc.FieldCount(); ++k) {
            const auto stored = FindEntry(record.Entries(), static_cast<std::uint8_t>(k));
            row.push_back(!stored     ? "<none>"
                          : formatted ? DisplayText(doc.TypeOf(k), *stored, doc.Style(), doc.Page())
                                      : std::string(*stored));
        }
        rows.push_back(row);
    }
    return rows;
}

}  // namespace quillary
