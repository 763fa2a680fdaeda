#include "cli/BashWords.h"

namespace quillary {

BashLine ReadBashLine(std::string_view line, std::string_view breaks) {
    constexpr std::string_view kBlanks = " \t\n";
    constexpr std::string_view kEscapedInQuotes = "\\\"$`";
    BashLine read;
    std::string word;
    bool isWord = false;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        const bool hasNext = i + 1 < line.size();
        if (read.quote != 0) {
            if (c == read.quote) {
                read.quote = 0;
            } else if (c == '\\' && read.quote == '"' && hasNext && kEscapedInQuotes.find(line[i + 1]) != line.npos) {
                word += line[++i];
            } else {
                word += c;
            }
        } else if (kBlanks.find(c) != kBlanks.npos) {
            if (isWord) read.words.push_back(word);
            word.clear();
            isWord = false;
            kept = 0;
        } else {
            isWord = true;
            if (c == '\\') {
                if (hasNext) word += line[++i];
            } else if (c == '\'' || c == '"') {
                read.quote = c;
            } else {
                word += c;
                if (breaks.find(c) != breaks.npos) kept = word.size();
            }
            if (read.quote != 0) read.kept = word.size();
        }
    }
    if (read.quote == 0) read.kept = kept;
    read.words.push_back(word);
    return read;
}

std::string QuoteForBash(std::string_view text, char quote) {
    constexpr std::string_view kPlain = "%+,-./:=@_";
    std::string quoted;
    for (const char c : text) {
        const bool isPlain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                             (c & 0x80) != 0 || kPlain.find(c) != kPlain.npos;
        if (quote == '\'') {
            quoted += c == '\'' ? "'\\''" : std::string(1, c);
        } else {
            const bool isEscaped =
                quote == '"' ? std::string_view("\\\"$`").find(c) != std::string_view::npos : !isPlain;
            if (isEscaped) quoted += '\\';
            quoted += c;
        }
    }
    return quoted;
}

}  // namespace quillary
