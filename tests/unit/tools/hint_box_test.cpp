#include "paf/hint_box.h"

#include <gtest/gtest.h>

#include <future>

#include "unit/tools/pseudo_terminal.h"
#include "unit/tools/scripted_session.h"

namespace tool {
namespace {

using Kind = Key::Kind;
using tool_test::PseudoTerminal;
using tool_test::Script;

/** Hints for "m": a locality, a street and an address; for the text of one of them only itself and an address. */
std::vector<std::string> HintsFor(const std::string& text)
{
  if (text == "m") return {"MILL STREET\tS\t1\t", "MILTON VIC\tL\t12\t", "1 MILL STREET\tA\t1\t5"};
  if (text == "MILL STREET") return {"MILL STREET\tS\t1\t", "1 MILL STREET\tA\t1\t5"};
  if (text == "MILTON VIC") return {"MILTON VIC\tL\t12\t"};
  if (text == "5") return {"5\tA\t1\t5", "5 MILL STREET\tA\t1\t6"};
  return {};
}

class Box : public testing::Test
{
 protected:
  Box()
  {
    Script() = {};
    Script().firstHint = [this](const std::string& text, const std::string&, int) {
      asked_.push_back(text);
      left_ = HintsFor(text);
      return Script().nextHint();
    };
    Script().nextHint = [this] {
      if (left_.empty()) return Reply{0, "\t\t\t", ""};
      const std::string hint = left_.front();
      left_.erase(left_.begin());
      return Reply{0, hint, ""};
    };
  }

  std::optional<Hint> Press(Kind kind) { return box_.Press({kind, ""}); }
  void Type(const std::string& text) { EXPECT_FALSE(box_.Press({Kind::Text, text})); }

  Session session_;
  HintBox box_{session_, "VIC", 5};
  std::vector<std::string> asked_;
  std::vector<std::string> left_;
};

TEST_F(Box, BeginsEmptyAndAsksNothing)
{
  EXPECT_EQ(box_.Text(), "");
  EXPECT_TRUE(box_.Hints().empty());
  for (const Kind kind : {Kind::Up, Kind::Down, Kind::Enter, Kind::Tab, Kind::Backspace, Kind::EraseWord,
                          Kind::EraseAll, Kind::Resize, Kind::Leave, Kind::Other}) {
    EXPECT_FALSE(Press(kind));
  }
  EXPECT_EQ(box_.Text(), "");
  EXPECT_EQ(box_.Chosen(), 0U);
  EXPECT_TRUE(asked_.empty());
}

TEST_F(Box, ShowsHintsForWhatIsTyped)
{
  Type("m");
  ASSERT_EQ(box_.Hints().size(), 3U);
  EXPECT_EQ(box_.Chosen(), 0U);
  Type("x");
  EXPECT_TRUE(box_.Hints().empty());
  EXPECT_EQ(box_.Text(), "mx");
  EXPECT_EQ(asked_, (std::vector<std::string>{"m", "mx"}));
}

TEST_F(Box, ChoosesWithinTheHints)
{
  Type("m");
  Press(Kind::Up);
  EXPECT_EQ(box_.Chosen(), 0U);
  for (const std::size_t chosen : {1U, 2U, 2U}) {
    Press(Kind::Down);
    EXPECT_EQ(box_.Chosen(), chosen);
  }
  Press(Kind::Up);
  EXPECT_EQ(box_.Chosen(), 1U);
  EXPECT_EQ(asked_.size(), 1U);
}

TEST_F(Box, TakesTheTextOfAHintAndThenChoosesWhatIsBehindIt)
{
  Type("m");
  EXPECT_FALSE(Press(Kind::Enter));
  EXPECT_EQ(box_.Text(), "MILL STREET");
  EXPECT_EQ(box_.Chosen(), 1U);
  const auto taken = Press(Kind::Enter);
  ASSERT_TRUE(taken);
  EXPECT_EQ(taken->dpid, "5");
}

TEST_F(Box, AHintThatIsAloneStaysChosen)
{
  Type("m");
  Press(Kind::Down);
  EXPECT_FALSE(Press(Kind::Tab));
  EXPECT_EQ(box_.Text(), "MILTON VIC");
  EXPECT_EQ(box_.Chosen(), 0U);
}

TEST_F(Box, AFinalHintIsChosenAlthoughItRepeatsTheText)
{
  Type("5");
  EXPECT_EQ(box_.Chosen(), 0U);
  const auto taken = Press(Kind::Tab);
  ASSERT_TRUE(taken);
  EXPECT_EQ(taken->dpid, "5");
}

struct EraseRow
{
  const char* text;
  const char* character;
  const char* word;
};

constexpr EraseRow kErasures[] = {{"", "", ""},
                                  {"a", "", ""},
                                  {"ab", "a", ""},
                                  {"ab cd", "ab c", "ab "},
                                  {"ab ", "ab", ""},
                                  {"caf\xC3\xA9", "caf", ""},
                                  {"\xF0\x9F\x98\x80", "", ""},
                                  {"a \xE2\x82\xAC", "a ", "a "},
                                  {"\xA9\xA9", "", ""}};

TEST_F(Box, ErasesCharactersAndWords)
{
  for (const EraseRow& row : kErasures) {
    SCOPED_TRACE(row.text);
    Press(Kind::EraseAll);
    EXPECT_EQ(box_.Text(), "");
    Type(row.text);
    Press(Kind::Backspace);
    EXPECT_EQ(box_.Text(), row.character);
    Press(Kind::EraseAll);
    Type(row.text);
    Press(Kind::EraseWord);
    EXPECT_EQ(box_.Text(), row.word);
  }
}

TEST_F(Box, TellsTroubleUntilTheNextKey)
{
  Script().firstHint = [](const std::string& text, const std::string&, int) {
    return text == "m" ? Reply{601, "", "gone"} : Reply{0, "\t\t\t", ""};
  };
  Type("m");
  EXPECT_EQ(box_.Trouble(), "gone (status 601)");
  EXPECT_NE(Drawing(box_, 80, 24).find("gone (status 601)"), std::string::npos);
  Type("n");
  EXPECT_EQ(box_.Trouble(), "");
}

constexpr const char* kHelp = "Up, Down: choose   Enter: take   Esc: leave";

TEST_F(Box, IsDrawnWithTheCursorBehindTheText)
{
  EXPECT_EQ(Drawing(box_, 80, 24), std::string("\r\033[JAddress: \r\n") + kHelp + "\033[1A\r\033[9C");
  Type("m");
  Press(Kind::Down);
  EXPECT_EQ(Drawing(box_, 80, 24), std::string("\r\033[JAddress: m"
                                               "\r\n  MILL STREET  (1 address)"
                                               "\r\n\033[1m> MILTON VIC  (12 addresses)\033[0m"
                                               "\r\n  1 MILL STREET  (5)"
                                               "\r\n") +
                                       kHelp + "\033[4A\r\033[10C");
}

TEST_F(Box, NoLineIsLongerThanTheTerminalIsWide)
{
  Type("m");
  for (const std::size_t columns : {1U, 2U, 5U, 10U, 11U, 20U, 40U}) {
    SCOPED_TRACE(columns);
    const std::string drawing = Drawing(box_, columns, 24);
    EXPECT_EQ(drawing.find("(1 address)") == std::string::npos, columns < 26);
    EXPECT_EQ(drawing.find(kHelp), std::string::npos);
  }
  EXPECT_NE(Drawing(box_, 10, 24).find("\r\n  1 MILL \r\n"), std::string::npos) << Drawing(box_, 10, 24);
}

TEST_F(Box, TheEndOfALongTextIsShown)
{
  Type(std::string(50, 'x') + "caf\xC3\xA9");
  EXPECT_NE(Drawing(box_, 20, 24).find("Address: xxxxxxcaf\xC3\xA9\r\n"), std::string::npos) << Drawing(box_, 20, 24);
  EXPECT_NE(Drawing(box_, 14, 24).find("Address: caf\xC3\xA9\r\n"), std::string::npos);
  EXPECT_NE(Drawing(box_, 11, 24).find("Address: \xC3\xA9\r\n"), std::string::npos);
}

TEST_F(Box, ALowTerminalShowsTheChosenHints)
{
  Type("m");
  const auto shows = [this](const char* text) { return Drawing(box_, 80, 4).find(text) != std::string::npos; };
  EXPECT_TRUE(shows("MILL STREET  (1 address)"));
  EXPECT_TRUE(shows("MILTON"));
  EXPECT_FALSE(shows("(5)"));
  Press(Kind::Down);
  Press(Kind::Down);
  EXPECT_FALSE(shows("MILL STREET  (1 address)"));
  EXPECT_TRUE(shows("MILTON"));
  EXPECT_TRUE(shows("> 1 MILL STREET  (5)"));
}

TEST_F(Box, IsUsedFromATerminal)
{
  PseudoTerminal user;
  auto chosen = std::async(std::launch::async, [this] { return ChooseHint(session_, "VIC", 5); });
  user.Shown("Address: ");
  user.Type("m");
  user.Shown("MILTON VIC");
  user.Type("\r");
  user.Shown("> 1 MILL STREET");
  user.Type("\r");
  const std::optional<Hint> hint = chosen.get();
  ASSERT_TRUE(hint);
  EXPECT_EQ(hint->dpid, "5");
  EXPECT_TRUE(user.Shown().ends_with("\r\033[J"));
}

TEST_F(Box, IsLeftWithoutAHint)
{
  PseudoTerminal user;
  auto chosen = std::async(std::launch::async, [this] { return ChooseHint(session_, "VIC", 5); });
  user.Shown("Address: ");
  user.Type("m\003");
  EXPECT_FALSE(chosen.get());
}

}  // namespace
}  // namespace tool
