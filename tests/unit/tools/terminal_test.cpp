#include "paf/terminal.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <csignal>
#include <cstring>
#include <thread>

#include "paf/exit_code.h"
#include "unit/tools/failure_of.h"
#include "unit/tools/pseudo_terminal.h"

namespace tool {
namespace {

using Kind = Key::Kind;
using tool_test::FailureOf;
using tool_test::PseudoTerminal;
using tool_test::Replaced;

struct KeyRow
{
  const char* typed;
  Kind kind;
  const char* text;
};

constexpr KeyRow kKeys[] = {
    {"a", Kind::Text, "a"},
    {" ", Kind::Text, " "},
    {"~", Kind::Text, "~"},
    {"\xC3\xA9", Kind::Text, "\xC3\xA9"},
    {"\xE2\x82\xAC", Kind::Text, "\xE2\x82\xAC"},
    {"\xF0\x9F\x98\x80", Kind::Text, "\xF0\x9F\x98\x80"},
    {"\r", Kind::Enter, ""},
    {"\n", Kind::Enter, ""},
    {"\t", Kind::Tab, ""},
    {"\x7F", Kind::Backspace, ""},
    {"\x08", Kind::Backspace, ""},
    {"\x17", Kind::EraseWord, ""},
    {"\x15", Kind::EraseAll, ""},
    {"\x10", Kind::Up, ""},
    {"\x0E", Kind::Down, ""},
    {"\033[A", Kind::Up, ""},
    {"\033[B", Kind::Down, ""},
    {"\033OA", Kind::Up, ""},
    {"\033OB", Kind::Down, ""},
    {"\033[1;5A", Kind::Up, ""},
    {"\033[C", Kind::Other, ""},
    {"\033[3~", Kind::Other, ""},
    {"\033[200~", Kind::Other, ""},
    {"\033x", Kind::Other, ""},
    {"\x01", Kind::Other, ""},
    {"\x13", Kind::Other, ""},  // which would stop the output of a terminal that edits lines
    {"\x03", Kind::Leave, ""},
    {"\x04", Kind::Leave, ""},
    {"\033", Kind::Leave, ""},
    {"\033[", Kind::Other, ""},
    {"\xC3", Kind::Other, ""},  // the rest of the character does not come
    {"\xE2\x82", Kind::Other, ""},
};

TEST(Terminal, ReadsKeys)
{
  PseudoTerminal user;
  Terminal terminal;
  for (const KeyRow& row : kKeys) {
    SCOPED_TRACE(testing::PrintToString(row.typed));
    EXPECT_FALSE(terminal.HasKey());
    user.Type(row.typed);
    const Key key = terminal.ReadKey();
    EXPECT_EQ(static_cast<int>(key.kind), static_cast<int>(row.kind));
    EXPECT_EQ(key.text, row.text);
  }
}

TEST(Terminal, ReadsKeysThatComeTogetherOneByOne)
{
  PseudoTerminal user;
  Terminal terminal;
  user.Type("a\xC3\xA9\033[Bb");
  EXPECT_EQ(terminal.ReadKey().text, "a");
  EXPECT_EQ(terminal.ReadKey().text, "\xC3\xA9");
  EXPECT_EQ(terminal.ReadKey().kind, Kind::Down);
  EXPECT_TRUE(terminal.HasKey());
  EXPECT_EQ(terminal.ReadKey().text, "b");
  EXPECT_FALSE(terminal.HasKey());
}

TEST(Terminal, EchoesNothingAndIsGivenBackAsItWas)
{
  PseudoTerminal user;
  const termios before = user.Settings();
  {
    Terminal terminal;
    user.Type("secret\r");
    while (terminal.ReadKey().kind != Kind::Enter) {
    }
    EXPECT_EQ(user.Settings().c_lflag & (ICANON | ECHO | ISIG), 0U);
  }
  EXPECT_EQ(user.Shown(), "");
  const termios after = user.Settings();
  EXPECT_EQ(after.c_lflag, before.c_lflag);
  EXPECT_EQ(after.c_iflag, before.c_iflag);
  EXPECT_EQ(std::memcmp(after.c_cc, before.c_cc, sizeof after.c_cc), 0);
}

TEST(Terminal, KnowsItsSize)
{
  PseudoTerminal user;
  Terminal terminal;
  EXPECT_EQ(terminal.Rows(), 24U);
  EXPECT_EQ(terminal.Columns(), 80U);
  user.Resize(5, 200);
  EXPECT_EQ(terminal.Rows(), 5U);
  EXPECT_EQ(terminal.Columns(), 200U);
  user.Resize(0, 0);
  EXPECT_EQ(terminal.Rows(), 24U);
  EXPECT_EQ(terminal.Columns(), 80U);
}

TEST(Terminal, AChangeOfSizeEndsTheWaiting)
{
  PseudoTerminal user;
  Terminal terminal;
  const pthread_t reader = pthread_self();
  std::atomic<bool> read = false;
  std::thread resizer([&] {
    while (!read) {
      pthread_kill(reader, SIGWINCH);
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  });
  const Key key = terminal.ReadKey();
  read = true;
  resizer.join();
  EXPECT_EQ(key.kind, Kind::Resize);
  user.Type("x");
  Key next = terminal.ReadKey();
  while (next.kind == Kind::Resize) {
    next = terminal.ReadKey();
  }
  EXPECT_EQ(next.text, "x");
}

TEST(Terminal, TheEndOfInputIsLeaving)
{
  PseudoTerminal user;
  Terminal terminal;
  std::signal(SIGHUP, SIG_IGN);
  user.HangUp();
  EXPECT_EQ(terminal.ReadKey().kind, Kind::Leave);
  EXPECT_EQ(terminal.ReadKey().kind, Kind::Leave);
}

int LeavesWhenSignalled(int signal)
{
  PseudoTerminal user;
  Terminal terminal;
  std::raise(signal);
  return terminal.ReadKey().kind == Kind::Leave && terminal.ReadKey().kind == Kind::Leave ? 7 : 8;
}

TEST(TerminalDeathTest, ASignalToEndIsLeaving)
{
  EXPECT_EXIT(_exit(LeavesWhenSignalled(SIGTERM)), testing::ExitedWithCode(7), "");
  EXPECT_EXIT(_exit(LeavesWhenSignalled(SIGHUP)), testing::ExitedWithCode(7), "");
  EXPECT_EXIT(_exit(LeavesWhenSignalled(SIGINT)), testing::ExitedWithCode(7), "");
}

TEST(Terminal, IsPresentWhenInputAndErrorAreOne)
{
  const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
  {
    const PseudoTerminal user;
    EXPECT_TRUE(Terminal::IsPresent());
    const Replaced error(STDERR_FILENO, nothing);
    EXPECT_FALSE(Terminal::IsPresent());
  }
  {
    const PseudoTerminal user;
    const Replaced input(STDIN_FILENO, nothing);
    EXPECT_FALSE(Terminal::IsPresent());
    EXPECT_TRUE(FailureOf([] { Terminal(); }).starts_with("the terminal cannot be set up: "));
  }
  close(nothing);
}

}  // namespace
}  // namespace tool
