#include "config/config_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/config_sandbox.h"
#include "support/temp_dir.h"

namespace {

using qxpaf::SelfClosingFILE;
using qxpaf::TrimConfigLine;
using std::string;
using test_support::ConfigSandbox;
using test_support::EnvValue;
using test_support::TempDir;
using testing::ElementsAre;

template <std::size_t longest>
std::vector<string> LinesOf(const string& content)
{
  const TempDir dir;
  SelfClosingFILE file;
  EXPECT_TRUE(file.Open(dir.Write("file", content).c_str(), "r", true));
  qxpaf::ConfigLineReader<longest> reader(file.f());
  std::vector<string> lines;
  for (std::string_view line; reader.Next(line);) lines.emplace_back(line);
  return lines;
}

struct TrimRow
{
  const char* piece;
  const char* line;
};

class ConfigLine : public testing::TestWithParam<TrimRow>
{
};

TEST_P(ConfigLine, LosesItsLineEndAndLeadingWhiteSpaceOnly)
{
  EXPECT_EQ(TrimConfigLine(GetParam().piece), GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(Rows, ConfigLine,
                         testing::Values(TrimRow{"a=1\n", "a=1"}, TrimRow{"a=1\r\n", "a=1"}, TrimRow{"a=1", "a=1"},
                                         TrimRow{"a=1\r", "a=1\r"}, TrimRow{"a=1\r\r\n", "a=1\r"},
                                         TrimRow{" \t\v\f\ra=1\n", "a=1"}, TrimRow{"a=1 \t\n", "a=1 \t"},
                                         TrimRow{"a = 1\n", "a = 1"}, TrimRow{"\n", ""}, TrimRow{"\r\n", ""},
                                         TrimRow{" \t \r\n", ""}, TrimRow{" ", ""}, TrimRow{"", ""},
                                         TrimRow{"\xC2\xA0x\n", "\xC2\xA0x"}, TrimRow{"# x=1\n", "# x=1"}));

TEST(ConfigLineReader, GivesEveryLineBlankOnesToo)
{
  EXPECT_THAT(LinesOf<1023>("a=1\n\n  b=2\r\n \nc=3"), ElementsAre("a=1", "", "b=2", "", "c=3"));
  EXPECT_THAT(LinesOf<1023>(""), ElementsAre());
}

TEST(ConfigLineReader, SplitsAtTheLongestPiece)
{
  EXPECT_THAT(LinesOf<5>("abcd\nabcd\n"), ElementsAre("abcd", "abcd"));
  EXPECT_THAT(LinesOf<5>("abcde\nx\n"), ElementsAre("abcde", "", "x"));
  EXPECT_THAT(LinesOf<5>("abcdef\nx\n"), ElementsAre("abcde", "f", "x"));
  EXPECT_THAT(LinesOf<5>("abcde  gh\n"), ElementsAre("abcde", "gh"));
  EXPECT_THAT(LinesOf<5>("abcdefghijkl"), ElementsAre("abcde", "fghij", "kl"));
}

TEST(ConfigLineReader, ACarriageReturnWhoseLineFeedIsInTheNextPieceStays)
{
  EXPECT_THAT(LinesOf<5>("abc\r\n"), ElementsAre("abc"));
  EXPECT_THAT(LinesOf<5>("abcd\r\n"), ElementsAre("abcd\r", ""));
  EXPECT_THAT(LinesOf<5>("abcde\r\n"), ElementsAre("abcde", ""));
}

TEST(ConfigLineReader, AZeroByteEndsAPiece)
{
  EXPECT_THAT(LinesOf<1023>(string("a=1\0b=2\nc=3\n", 12)), ElementsAre("a=1", "c=3"));
  EXPECT_THAT(LinesOf<5>(string("a\0bcdef\n", 8)), ElementsAre("a", "ef"));
}

TEST(ConfigLineReader, ADirectoryHasNoLinesButAnError)
{
  const TempDir dir;
  SelfClosingFILE file;
  ASSERT_TRUE(file.Open(dir.Path().c_str(), "r", true));
  qxpaf::ConfigLineReader<255> reader(file.f());
  std::string_view line;
  EXPECT_FALSE(reader.Next(line));
  EXPECT_NE(std::ferror(file.f()), 0);
}

TEST(ConfigFile, IsTakenFromTheFirstPlaceThatOpens)
{
  const ConfigSandbox sandbox;
  const TempDir& dir = sandbox.Dir();
  const EnvValue named("MORVEX_CONFIG_FILE", dir.Path("named"));
  EXPECT_EQ(qxpaf::FindConfigFile(), ConfigSandbox::MachineHasConfig() ? "/usr/etc/.morvex" : "");
  dir.Write("home/.morvex", "");
  EXPECT_EQ(qxpaf::FindConfigFile(), dir.Path("home/.morvex"));
  dir.Write("named", "");
  EXPECT_EQ(qxpaf::FindConfigFile(), dir.Path("named"));
  dir.Write("work/.morvex", "");
  EXPECT_EQ(qxpaf::FindConfigFile(), ".morvex");
}

TEST(ConfigFile, APlaceThatDoesNotOpenIsPassedOver)
{
  const ConfigSandbox sandbox;
  const TempDir& dir = sandbox.Dir();
  std::filesystem::create_symlink("nowhere", dir.Path("work/.morvex"));
  const EnvValue named("MORVEX_CONFIG_FILE", dir.Write("file", "") + "/below");
  dir.Write("home/.morvex", "");
  EXPECT_EQ(qxpaf::FindConfigFile(), dir.Path("home/.morvex"));
}

TEST(ConfigFile, ADirectoryIsTakenToo)
{
  const ConfigSandbox sandbox;
  sandbox.Dir().MakeDirectory("work/.morvex");
  sandbox.Dir().Write("home/.morvex", "");
  EXPECT_EQ(qxpaf::FindConfigFile(), ".morvex");
}

}  // namespace
