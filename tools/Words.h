#ifndef EVALG_TOOL_WORDS_H
#define EVALG_TOOL_WORDS_H

#include <string>
#include <vector>

namespace evalgtool {

// The words of a relation as a shell would split them: blanks separate,
// single or double quotes keep blanks inside one word. Throws UsageError for
// a quote left open.
std::vector<std::string> splitWords(std::string const &text);

} // namespace evalgtool

#endif
