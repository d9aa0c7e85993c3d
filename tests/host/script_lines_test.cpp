#include "script_lines.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using tesselctl::read_script;
using tesselctl::ScriptError;
using tesselctl::to_script_line;
using Words = std::vector<std::string>;

std::vector<tesselctl::ScriptLine> read(const std::string &text) {
    std::istringstream script(text);
    return read_script(script);
}

Words only_line(const std::string &text) {
    const auto lines = read(text);
    EXPECT_EQ(lines.size(), 1U);
    return lines.empty() ? Words() : lines.front().words;
}

TEST(ScriptLines, WordsStandBetweenBlanks) {
    EXPECT_EQ(only_line("  tap\t10  20 \r\n"), (Words{"tap", "10", "20"}));
}

TEST(ScriptLines, QuotesHoldBlanksAndMayBeEmpty) {
    EXPECT_EQ(only_line(R"(launch "a b.mp4" "")"), (Words{"launch", "a b.mp4", ""}));
}

TEST(ScriptLines, ABackslashMeansTheNextQuoteOrBackslashOnlyInQuotes) {
    EXPECT_EQ(only_line(R"(launch "a\"b\\c\d" e\f)"), (Words{"launch", R"(a"b\c\d)", R"(e\f)"}));
}

TEST(ScriptLines, QuotesMayBePartOfAWord) {
    EXPECT_EQ(only_line(R"(wait page=="a b"&&x 5)"), (Words{"wait", "page==a b&&x", "5"}));
}

TEST(ScriptLines, CommentsAndEmptyLinesCountButHoldNothing) {
    const auto lines = read("# what it shows\n\n   \n  # more\nstate\n");
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].number, 5);
    EXPECT_EQ(lines[0].words, Words{"state"});
}

TEST(ScriptLines, TheLastLineNeedsNoEnd) {
    EXPECT_EQ(read("state\nquit").size(), 2U);
    EXPECT_TRUE(read("").empty());
}

TEST(ScriptLines, AQuoteWithoutAnEndIsAFaultOfItsLine) {
    try {
        read("state\nlaunch \"a b\nquit\n");
        FAIL();
    } catch (const ScriptError &error) {
        EXPECT_STREQ(error.what(), "2: a quote has no end");
    }
}

TEST(ScriptLines, ANulCharacterIsAFaultOfItsLine) {
    EXPECT_THROW(read(std::string("sta\0te\n", 7)), ScriptError);
}

TEST(ScriptLines, WhatIsWrittenReadsTheSame) {
    for (const Words &words :
         {Words{"tap", "10", "20"}, Words{"launch", "a b", ""},
          Words{"launch", R"(quote" and \ back)"}, Words{"#no", "comment"}, Words{R"(c:\plain)"}}) {
        EXPECT_EQ(only_line(to_script_line(words)), words);
    }
}

}  // namespace
