// The word splitter shared by the gallery and the graphing page.
#include <gtest/gtest.h>

#include "tools/Errors.h"
#include "tools/Words.h"

namespace {

using evalgtool::splitWords;
using Words = std::vector<std::string>;

TEST(Words, SplitAtBlanksKeepingQuotedBlanks) {
    struct Case {
        char const *text;
        Words words;
    } const cases[] = {
        {"", {}},
        {" \t ", {}},
        {"circle r=3", {"circle", "r=3"}},
        {"  circle\tr=3 \n", {"circle", "r=3"}},
        {"expr f='sin(x) / x'", {"expr", "f=sin(x) / x"}},
        {"'text=x^2 + y^2 = 9'", {"text=x^2 + y^2 = 9"}},
        {"expr f=\"a 'b'\"", {"expr", "f=a 'b'"}},
        {"f='' g", {"f=", "g"}},
        {"''", {""}},
    };
    for (Case const &c : cases) EXPECT_EQ(splitWords(c.text), c.words) << "'" << c.text << "'";
}

TEST(Words, AnOpenQuoteIsRefused) {
    for (char const *text : {"expr f='x+1", "\"", "a 'b\" c"})
        EXPECT_THROW(splitWords(text), evalgtool::UsageError) << text;
}

} // namespace
