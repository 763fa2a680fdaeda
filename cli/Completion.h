// What may stand next on qly's command line. The shells ask for it with "qly __complete"; their scripts are in
// packaging/completions.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillary {

struct Completion {
    struct Candidate {
        std::string word;       // whole, as the program would get it
        std::string_view help;  // one line, may be empty
    };
    bool isFile = false;      // the shell lists its files
    std::string_view suffix;  // that these end with; empty: all
    std::vector<Candidate> candidates;
};

/// For the last of `words`, of which there is one at least: the words behind "qly" up to the cursor. Reads the database
/// that they name for its fields; one that cannot be read at once, or has a password, has none. Writes nothing.
[[nodiscard]] Completion CompleteWords(const std::vector<std::string>& words);

/// The answer to "qly __complete": "files SUFFIX", or "words" and a line for each candidate: the word and, behind a
/// tab, its help. `arguments` are "--" and the words; or "--bash", the command line up to the cursor as it was typed,
/// and the characters at which bash divides words: then a line is what takes the place of what bash calls the word.
[[nodiscard]] std::string CompletionAnswer(const std::vector<std::string>& arguments);

}  // namespace quillary
