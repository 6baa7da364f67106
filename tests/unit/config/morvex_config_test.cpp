#include "config/morvex_config.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "support/config_sandbox.h"
#include "unit/config/breaking_stream.h"

namespace {

using qxpaf::MorvexConfig;
using std::string;
using std::wstring;
using test_support::ConfigSandbox;
using testing::ElementsAre;
using testing::IsEmpty;

using Strings = std::vector<string>;
using WideStrings = std::vector<wstring>;

class MorvexConfigTest : public testing::Test
{
 protected:
  /** A reader over this content with a key open. */
  MorvexConfig Open(const string& content, const string& key)
  {
    sandbox_.Configure(content);
    MorvexConfig config;
    EXPECT_TRUE(config.OpenKey(key, 0));
    EXPECT_EQ(config.LastError(), 0);
    return config;
  }

  ConfigSandbox sandbox_;
};

/** The value read, or "error " and its code. The output must be left alone on failure. */
string Read(MorvexConfig& config, const string& name)
{
  string value = "untouched";
  if (config.ReadValue(name, value)) return config.LastError() == 0 ? value : "success with an error";
  return value == "untouched" ? "error " + std::to_string(config.LastError()) : "failure with a value";
}

string ReadNumber(MorvexConfig& config, const string& name)
{
  unsigned int value = 4711;
  if (config.ReadValueI(name, value)) return config.LastError() == 0 ? std::to_string(value) : "success with an error";
  return value == 4711 ? "error " + std::to_string(config.LastError()) : "failure with a value";
}

struct ReadRow
{
  const char* content;
  const char* key;
  const char* name;
  const char* result;
};

void PrintTo(const ReadRow& row, std::ostream* out)
{
  *out << row.content << " [" << row.key << "] " << row.name;
}

class ReadValueTest : public MorvexConfigTest, public testing::WithParamInterface<ReadRow>
{
};

TEST_P(ReadValueTest, FindsTheFirstLineThatFits)
{
  const ReadRow& row = GetParam();
  MorvexConfig config = Open(row.content, row.key);
  EXPECT_EQ(Read(config, row.name), row.result);
}

INSTANTIATE_TEST_SUITE_P(
    Keys, ReadValueTest,
    testing::Values(
        ReadRow{"ArfBaseDir=/data/arf/\n", "", "ArfBaseDir", "/data/arf/"},
        ReadRow{"ARF/AU/Main=/data/au/main.dat\n", "ARF\\AU", "Main", "/data/au/main.dat"},
        ReadRow{"ARF/AU/Main=x\n", "ARF/AU", "Main", "x"}, ReadRow{"ARF/AU/Main=x\n", "ARF\\AU\\", "Main", "x"},
        ReadRow{"ARF/AU/Main=x\n", "ARF/AU/", "Main", "x"}, ReadRow{"ARF/AU/Main=x\n", "ARF", "Main", "error 1302"},
        ReadRow{"ARF/AU/Main=x\n", "", "Main", "error 1302"}, ReadRow{"ARF/AU/Main=x\n", "RF/AU", "Main", "error 1302"},
        ReadRow{"ARF/AU/Main=x\n", "ARF//AU", "Main", "error 1302"},
        ReadRow{"ARF/AU/=/data/au\n", "ARF\\AU", "", "/data/au"}, ReadRow{"=root\n", "", "", "root"},
        ReadRow{"/a=1\n", "\\", "a", "1"}, ReadRow{"/a=1\n", "", "a", "error 1302"},
        ReadRow{"ARF\\AU\\Main=x\n", "ARF\\AU", "Main", "error 1302"}));

INSTANTIATE_TEST_SUITE_P(Case, ReadValueTest,
                         testing::Values(ReadRow{"Arf/Au/x=1\n", "ARF\\AU", "X", "1"},
                                         ReadRow{"ARF/AU/X=Yes\n", "arf/au", "x", "Yes"},
                                         ReadRow{"caf\xC3\xA9=1\n", "", "CAF\xC3\xA9", "1"},
                                         ReadRow{"caf\xC3\xA9=1\n", "", "CAF\xC3\x89", "error 1302"},
                                         ReadRow{"a[=1\n", "", "A{", "error 1302"},
                                         ReadRow{"a@=1\n", "", "a`", "error 1302"}));

INSTANTIATE_TEST_SUITE_P(Values, ReadValueTest,
                         testing::Values(ReadRow{"a=1\nA=2\na=3\n", "", "a", "1"}, ReadRow{"X=\n", "", "X", ""},
                                         ReadRow{"X=", "", "X", ""}, ReadRow{"X\n", "", "X", "error 1302"},
                                         ReadRow{"a=b=c\n", "", "a", "b=c"}, ReadRow{"a=b/c=d\n", "", "a", "b/c=d"},
                                         ReadRow{"a= 1 \t\n", "", "a", " 1 \t"},
                                         ReadRow{"a =1\n", "", "a", "error 1302"}, ReadRow{"a =1\n", "", "a ", "1"},
                                         ReadRow{"  a=1\n", "", "a", "1"}, ReadRow{"a=1\r\n", "", "a", "1"},
                                         ReadRow{"a=1\r", "", "a", "1\r"}, ReadRow{"\n\r\n  \n\ta=1\n", "", "a", "1"},
                                         ReadRow{"#a=1\na=2\n", "", "a", "2"}, ReadRow{"#a=1\n", "", "#a", "1"},
                                         ReadRow{"", "", "a", "error 1302"}, ReadRow{"ab=1\n", "", "a", "error 1302"},
                                         ReadRow{"a=1\n", "", "ab", "error 1302"},
                                         ReadRow{"a=\xFF\x80\xC3\n", "", "a", "\xFF\x80\xC3"},
                                         ReadRow{"\xEF\xBB\xBF"
                                                 "a=1\n",
                                                 "", "a", "error 1302"}));

INSTANTIATE_TEST_SUITE_P(BadNames, ReadValueTest,
                         testing::Values(ReadRow{"a/b=1\n", "", "a/b", "error 1321"},
                                         ReadRow{"a=b=1\n", "", "a=b", "error 1321"},
                                         ReadRow{"", "k", "/", "error 1321"}, ReadRow{"", "k", "=", "error 1321"},
                                         ReadRow{"a\\b=1\n", "", "a\\b", "1"}));

TEST_F(MorvexConfigTest, StartsWithNothingReadAndNoError)
{
  MorvexConfig config;
  EXPECT_EQ(config.LastError(), 0);
  EXPECT_EQ(Read(config, "a"), "error 1302");
  EXPECT_THAT(config.EnumerateKeys(), IsEmpty());
  EXPECT_EQ(config.LastError(), 0);
}

TEST_F(MorvexConfigTest, ASuccessClearsTheLastError)
{
  MorvexConfig config = Open("a=1\n", "");
  EXPECT_EQ(Read(config, "b"), "error 1302");
  EXPECT_EQ(Read(config, "a"), "1");
  EXPECT_EQ(Read(config, "b/"), "error 1321");
  EXPECT_TRUE(config.OpenKey("missing", 0));
  EXPECT_EQ(config.LastError(), 0);
  EXPECT_FALSE(config.SetError(77));
  EXPECT_EQ(config.LastError(), 77);
  EXPECT_THAT(config.EnumerateKeys(), IsEmpty());
  EXPECT_EQ(config.LastError(), 0);
  Strings names;
  Strings values;
  config.SetError(77);
  EXPECT_TRUE(config.EnumerateValues(names, values));
  EXPECT_EQ(config.LastError(), 0);
}

TEST_F(MorvexConfigTest, TheAccessArgumentIsIgnored)
{
  sandbox_.Configure("k/a=1\n");
  for (const int access : {-1, 0, 1, 0x20019}) {
    MorvexConfig config;
    EXPECT_TRUE(config.OpenKey("k", access));
    EXPECT_EQ(Read(config, "a"), "1");
  }
}

TEST_F(MorvexConfigTest, KeysMayBeChangedWithoutOpening)
{
  MorvexConfig config = Open("a=root\nk/a=1\nk/l/a=2\n", "k");
  EXPECT_EQ(Read(config, "a"), "1");
  config.SetCurrentKey("k\\l");
  EXPECT_EQ(Read(config, "a"), "2");
  config.SetCurrentKey("");
  EXPECT_EQ(Read(config, "a"), "root");
}

TEST_F(MorvexConfigTest, EachObjectReadsTheFileAfreshAndOnce)
{
  MorvexConfig before = Open("a=1\n", "");
  sandbox_.Configure("a=2\n");
  EXPECT_TRUE(before.OpenKey("", 0));
  EXPECT_EQ(Read(before, "a"), "1");
  MorvexConfig after;
  EXPECT_TRUE(after.OpenKey("", 0));
  EXPECT_EQ(Read(after, "a"), "2");
}

TEST_F(MorvexConfigTest, WithoutAFileEveryOperationFails)
{
  if (ConfigSandbox::MachineHasConfig()) GTEST_SKIP() << "this machine has a configuration file";
  MorvexConfig config;
  EXPECT_FALSE(config.OpenKey("k", 0));
  EXPECT_EQ(config.LastError(), kRegistryNoFile);
  sandbox_.Configure("a=1\n");
  EXPECT_FALSE(config.OpenKey("", 0)) << "the failed load must not be retried";
  EXPECT_EQ(Read(config, "a"), "error 1301");
  EXPECT_EQ(Read(config, "a/b"), "error 1301");
  EXPECT_EQ(ReadNumber(config, "a"), "error 1301");
  config.SetError(0);
  EXPECT_THAT(config.EnumerateKeys(), IsEmpty());
  EXPECT_EQ(config.LastError(), kRegistryNoFile);
  config.SetError(0);
  Strings names = {"x"};
  Strings values = {"y"};
  EXPECT_FALSE(config.EnumerateValues(names, values));
  EXPECT_EQ(config.LastError(), kRegistryNoFile);
  EXPECT_THAT(names, IsEmpty());
  EXPECT_THAT(values, IsEmpty());
}

TEST_F(MorvexConfigTest, ADirectoryInTheFilesPlaceIsAReadError)
{
  sandbox_.Dir().MakeDirectory("work/.morvex");
  sandbox_.Dir().Write("home/.morvex", "a=1\n");
  MorvexConfig config;
  EXPECT_FALSE(config.OpenKey("", 0));
  EXPECT_EQ(config.LastError(), kRegistryReadError);
  EXPECT_EQ(Read(config, "a"), "error 1320");
  EXPECT_EQ(ReadNumber(config, "a"), "error 1320");
  EXPECT_THAT(config.EnumerateKeys(), IsEmpty());
  EXPECT_EQ(config.LastError(), kRegistryReadError);
}

TEST_F(MorvexConfigTest, LinesBeforeAReadErrorAreKept)
{
  FILE* stream = OpenBreakingStream("a=1\nb=2\nc");
  ASSERT_NE(stream, nullptr);
  MorvexConfig config;
  EXPECT_EQ(config.ReadConfigFile(stream), kRegistryReadError);
  std::fclose(stream);
  EXPECT_EQ(Read(config, "a"), "1");
  EXPECT_EQ(Read(config, "b"), "2");
}

TEST_F(MorvexConfigTest, LongLinesAreSplitAfter1023Characters)
{
  for (const std::size_t length : {std::size_t{1021}, std::size_t{1022}, std::size_t{1023}}) {
    const string value(length - 2, 'v');
    MorvexConfig config = Open("a=" + value + "\nb=1\n", "");
    EXPECT_EQ(Read(config, "a"), value);
    EXPECT_EQ(Read(config, "b"), "1");
  }
  const string value(1021, 'v');
  MorvexConfig split = Open("a=" + value + "  b=2\nc=3\n", "");
  EXPECT_EQ(Read(split, "a"), value);
  EXPECT_EQ(Read(split, "b"), "2") << "the remainder is a line of its own";
  EXPECT_EQ(Read(split, "c"), "3");
}

TEST_F(MorvexConfigTest, ACarriageReturnAtTheEndOfAFullPieceStays)
{
  MorvexConfig fits = Open("a=" + string(1019, 'v') + "\r\n", "");
  EXPECT_EQ(Read(fits, "a"), string(1019, 'v'));
  MorvexConfig split = Open("a=" + string(1020, 'v') + "\r\n", "");
  EXPECT_EQ(Read(split, "a"), string(1020, 'v') + "\r");
}

TEST_F(MorvexConfigTest, NamesAndKeysMayBeAsLongAsALine)
{
  const string key(500, 'k');
  const string name(500, 'n');
  MorvexConfig config = Open(key + "/" + name + "=v\n", key);
  EXPECT_EQ(Read(config, name), "v");
  EXPECT_EQ(Read(config, string(5000, 'n')), "error 1302");
}

struct NumberRow
{
  const char* text;
  const char* result;
};

class ReadValueITest : public MorvexConfigTest, public testing::WithParamInterface<NumberRow>
{
};

TEST_P(ReadValueITest, TakesWholeUnsignedNumbersOfAnyBase)
{
  MorvexConfig config = Open(string("k/n=") + GetParam().text + "\n", "k");
  EXPECT_EQ(ReadNumber(config, "n"), GetParam().result) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ReadValueITest,
    testing::Values(NumberRow{"0", "0"}, NumberRow{"12", "12"}, NumberRow{"0x10", "16"}, NumberRow{"0x1F", "31"},
                    NumberRow{"0X1f", "31"}, NumberRow{"010", "8"}, NumberRow{"017", "15"},
                    NumberRow{"08", "error 1322"}, NumberRow{"", "error 1322"}, NumberRow{"10a", "error 1322"},
                    NumberRow{"12 ", "error 1322"}, NumberRow{"0x", "error 1322"}, NumberRow{"x", "error 1322"},
                    NumberRow{" ", "error 1322"}, NumberRow{"-", "error 1322"}, NumberRow{" 12", "12"},
                    NumberRow{"+12", "12"}, NumberRow{"-1", "4294967295"}, NumberRow{"4294967295", "4294967295"},
                    NumberRow{"4294967296", "0"}, NumberRow{"99999999999999999999999", "4294967295"}));

TEST_F(MorvexConfigTest, ANumberThatIsMissingOrBadlyNamedFailsLikeAText)
{
  MorvexConfig config = Open("a=1\n", "");
  EXPECT_EQ(ReadNumber(config, "b"), "error 1302");
  EXPECT_EQ(ReadNumber(config, "a/b"), "error 1321");
}

struct ListRow
{
  const char* content;
  const char* key;
  Strings names;
  Strings values;
  Strings keys;
};

void PrintTo(const ListRow& row, std::ostream* out)
{
  *out << row.content << " [" << row.key << "]";
}

class EnumerateTest : public MorvexConfigTest, public testing::WithParamInterface<ListRow>
{
};

TEST_P(EnumerateTest, ListsValuesInFileOrderAndKeysSorted)
{
  const ListRow& row = GetParam();
  MorvexConfig config = Open(row.content, row.key);
  Strings names = {"before"};
  Strings values = {"before"};
  EXPECT_TRUE(config.EnumerateValues(names, values));
  EXPECT_EQ(names, row.names);
  EXPECT_EQ(values, row.values);
  EXPECT_EQ(config.EnumerateKeys(), row.keys);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, EnumerateTest,
    testing::Values(ListRow{"A/b=1\nA/c/d=2\nB=3\n", "", {"B"}, {"3"}, {"A"}},
                    ListRow{"A/b=1\nA/c/d=2\nB=3\n", "A", {"b"}, {"1"}, {"c"}},
                    ListRow{"A/b=1\nA/c/d=2\nB=3\n", "a\\C", {"d"}, {"2"}, {}},
                    ListRow{"A/b=1\nA/c/d=2\nB=3\n", "X", {}, {}, {}},
                    ListRow{"z=1\na=2\nz=3\n", "", {"z", "a", "z"}, {"1", "2", "3"}, {}},
                    ListRow{"k/=1\nk/x=\n", "k", {"", "x"}, {"1", ""}, {}},
                    ListRow{"k/a=b=c/d\n", "k", {"a"}, {"b=c/d"}, {}}, ListRow{"k/a\nk/\nk\n", "k", {}, {}, {}},
                    ListRow{"k/b/x=1\nK/a/x=1\nk/B/y\nk/b/z=2\nk/a/b/c=3\n", "k", {}, {}, {"B", "a", "b"}},
                    ListRow{"k//x=1\n", "k", {}, {}, {""}}, ListRow{"//x=1\n", "", {}, {}, {""}},
                    ListRow{"k/\xC3\xA9/x=1\nk/z/x=1\n", "k", {}, {}, {"z", "\xC3\xA9"}},
                    ListRow{"k/s/no equals sign\n", "k", {}, {}, {"s"}}, ListRow{"kk/a=1\n", "k", {}, {}, {}},
                    ListRow{"", "", {}, {}, {}}));

TEST_F(MorvexConfigTest, WideFormsConvertNamesAndValues)
{
  MorvexConfig config = Open("k/caf\xC3\xA9=\xE2\x82\xAC \xF0\x9F\x98\x80\nk/bad=\xE9x\n", "k");
  const wstring cafe = L"CAF\u00E9";
  const wstring euro = L"\u20AC \U0001F600";
  wstring value;
  EXPECT_TRUE(config.ReadValue(cafe, value));
  EXPECT_EQ(value, euro);
  EXPECT_TRUE(config.ReadValue(wstring(L"bad"), value));
  EXPECT_EQ(value, L"\u00E9x");
  value = L"untouched";
  EXPECT_FALSE(config.ReadValue(wstring(L"missing"), value));
  EXPECT_EQ(config.LastError(), kRegistryNotFound);
  EXPECT_FALSE(config.ReadValue(wstring(L"a/b"), value));
  EXPECT_EQ(config.LastError(), kRegistryBadName);
  EXPECT_FALSE(config.ReadValue(wstring(L"a=b"), value));
  EXPECT_EQ(config.LastError(), kRegistryBadName);
  EXPECT_EQ(value, L"untouched");
  WideStrings names = {L"before"};
  WideStrings values = {L"before"};
  EXPECT_TRUE(config.EnumerateValues(names, values));
  EXPECT_THAT(names, ElementsAre(L"caf\u00E9", L"bad"));
  EXPECT_THAT(values, ElementsAre(euro, L"\u00E9x"));
}

TEST_F(MorvexConfigTest, WideFormsFailWithTheLoad)
{
  sandbox_.Dir().MakeDirectory("work/.morvex");
  MorvexConfig config;
  EXPECT_FALSE(config.OpenKey("", 0));
  wstring value = L"untouched";
  EXPECT_FALSE(config.ReadValue(wstring(L"a"), value));
  EXPECT_EQ(config.LastError(), kRegistryReadError);
  EXPECT_EQ(value, L"untouched");
  WideStrings names = {L"before"};
  WideStrings values = {L"before"};
  EXPECT_FALSE(config.EnumerateValues(names, values));
  EXPECT_THAT(names, IsEmpty());
  EXPECT_THAT(values, IsEmpty());
}

}  // namespace
