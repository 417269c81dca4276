#include "Words.h"

#include "Errors.h"

namespace evalgtool {

std::vector<std::string> splitWords(std::string const &text) {
    std::vector<std::string> words;
    std::string word;
    bool inWord = false;
    char quote = 0;
    for (char c : text) {
        if (quote) {
            if (c == quote)
                quote = 0;
            else
                word += c;
        } else if (c == '\'' || c == '"') {
            quote = c;
            inWord = true;
        } else if (c == ' ' || c == '\t' || c == '\n' || c == '\r') {
            if (inWord) words.push_back(word);
            word.clear();
            inWord = false;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (quote) throw UsageError(std::string("unmatched ") + quote + " in '" + text + "'");
    if (inWord) words.push_back(word);
    return words;
}

} // namespace evalgtool
