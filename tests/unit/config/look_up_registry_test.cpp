#include <gtest/gtest.h>

#include <string>

#include "qxpaf/registry.h"
#include "support/config_sandbox.h"
#include "support/guarded_buffer.h"

namespace {

using std::string;
using test_support::ConfigSandbox;
using test_support::GuardedBuffer;

class LookUpRegistryTest : public testing::Test
{
 protected:
  ConfigSandbox sandbox_;
};

/** The value found, or "error " and the code. Buffer and size must be left alone on failure. */
string LookUp(const char* key, const char* name)
{
  GuardedBuffer buffer(300);
  int size = 300;
  const int code = LookUpRegistry_(key, name, buffer.Data(), size, false);
  EXPECT_TRUE(buffer.Intact());
  if (code != 0) {
    EXPECT_EQ(size, 300);
    EXPECT_EQ(buffer.Bytes(), string(300, GuardedBuffer::kFill));
    return "error " + std::to_string(code);
  }
  const string value = buffer.Data();
  EXPECT_EQ(buffer.Bytes(), value + string(300 - value.size(), '\0'));
  EXPECT_EQ(static_cast<std::size_t>(size), value.size());
  return value;
}

struct LookUpRow
{
  const char* content;
  const char* key;
  const char* name;
  const char* result;
};

void PrintTo(const LookUpRow& row, std::ostream* out)
{
  *out << row.content << " [" << (row.key != nullptr ? row.key : "null") << "] " << row.name;
}

class LookUpRows : public LookUpRegistryTest, public testing::WithParamInterface<LookUpRow>
{
};

TEST_P(LookUpRows, FindTheFirstLineThatFits)
{
  const LookUpRow& row = GetParam();
  sandbox_.Configure(row.content);
  EXPECT_EQ(LookUp(row.key, row.name), row.result);
}

INSTANTIATE_TEST_SUITE_P(
    Keys, LookUpRows,
    testing::Values(
        LookUpRow{"PafDir=/data\n", nullptr, "PafDir", "/data"}, LookUpRow{"PafDir=/data\n", "", "PafDir", "/data"},
        LookUpRow{"ARF/AU/Main=m\n", "ARF\\AU", "Main", "m"}, LookUpRow{"ARF/AU/Main=m\n", "ARF/AU", "Main", "m"},
        LookUpRow{"ARF/AU/Main=m\n", "arf\\Au", "MAIN", "m"}, LookUpRow{"Key/Name=x\n", "Key\\", "Name", "error 1302"},
        LookUpRow{"Key/Name=x\n", "Key/", "Name", "error 1302"}, LookUpRow{"Key//Name=x\n", "Key/", "Name", "x"},
        LookUpRow{"/Name=x\n", "", "Name", "error 1302"}, LookUpRow{"Key/=x\n", "Key", "", "x"},
        LookUpRow{"=x\n", nullptr, "", "x"}, LookUpRow{"=x\n", "", "", "x"},
        LookUpRow{"Key/Sub/Name=x\n", "Key", "Name", "error 1302"},
        LookUpRow{"Key/Sub/Name=x\n", "Key", "Sub/Name", "error 1302"},
        LookUpRow{"Key/Sub\\Name=x\n", "Key", "Sub\\Name", "x"},
        LookUpRow{"Key/Sub/Name=x\n", "Key", "Sub\\Name", "error 1302"},
        LookUpRow{"Key\\Name=x\n", "Key", "Name", "error 1302"}, LookUpRow{"", "Key", "Name", "error 1302"},
        LookUpRow{"caf\xC3\xA9/n=x\n", "CAF\xC3\xA9", "N", "x"},
        LookUpRow{"caf\xC3\xA9/n=x\n", "caf\xC3\x89", "n", "error 1302"}));

INSTANTIATE_TEST_SUITE_P(
    Lines, LookUpRows,
    testing::Values(LookUpRow{"k/n=1\nK/N=2\n", "k", "n", "1"}, LookUpRow{"Key/Name =x\n", "Key", "Name", "error 1302"},
                    LookUpRow{"Key/Name =x\nKey/Name=y\n", "Key", "Name", "y"},
                    LookUpRow{"Key/Name=\n", "Key", "Name", ""}, LookUpRow{"Key/Name\n", "Key", "Name", "error 1302"},
                    LookUpRow{"Key/Name=a=b/c\n", "Key", "Name", "a=b/c"},
                    LookUpRow{"Key/Na=me=x\n", "Key", "Na=me", "error 1302"},
                    LookUpRow{" \t\v\fk/n= 1 \n", "k", "n", " 1 "}, LookUpRow{"k/n=1\r\n", "k", "n", "1"},
                    LookUpRow{"k/n=1\r", "k", "n", "1\r"}, LookUpRow{"\r\n\n  \nk/n=1", "k", "n", "1"},
                    LookUpRow{"xk/n=1\n", "k", "n", "error 1302"}, LookUpRow{"k/nn=1\n", "k", "n", "error 1302"},
                    LookUpRow{"k/n=\xFF\xC3\x80\n", "k", "n", "\xFF\xC3\x80"},
                    LookUpRow{"k/m=1\nk/n=2\n", "k", "n", "2"}, LookUpRow{"k/z=1\n", "k", "n", "error 1302"}));

TEST_F(LookUpRegistryTest, WithoutAFileThereIsNoValue)
{
  if (ConfigSandbox::MachineHasConfig()) GTEST_SKIP() << "this machine has a configuration file";
  EXPECT_EQ(LookUp("k", "n"), "error 1301");
  EXPECT_EQ(LookUp("k", "a/b"), "error 1302");
}

TEST_F(LookUpRegistryTest, ADirectoryInTheFilesPlaceHasNoValues)
{
  sandbox_.Dir().MakeDirectory("work/.morvex");
  EXPECT_EQ(LookUp("k", "n"), "error 1302");
}

TEST_F(LookUpRegistryTest, EachCallReadsTheFileAfresh)
{
  sandbox_.Configure("k/n=1\n");
  EXPECT_EQ(LookUp("k", "n"), "1");
  sandbox_.Configure("k/n=2\n");
  EXPECT_EQ(LookUp("k", "n"), "2");
}

TEST_F(LookUpRegistryTest, ANullNameIsNotFound)
{
  sandbox_.Configure("=x\nk/=y\n");
  EXPECT_EQ(LookUp("k", nullptr), "error 1302");
  EXPECT_EQ(LookUp(nullptr, nullptr), "error 1302");
}

TEST_F(LookUpRegistryTest, KeyAndNameHaveAtMost254Characters)
{
  sandbox_.Configure("");
  const auto text = [](std::size_t length) { return string(length, 'x'); };
  EXPECT_EQ(LookUp("k", text(253).c_str()), "error 1302");
  EXPECT_EQ(LookUp("k", text(254).c_str()), "error 1300");
  EXPECT_EQ(LookUp(text(254).c_str(), ""), "error 1302");
  EXPECT_EQ(LookUp(text(255).c_str(), ""), "error 1300");
  EXPECT_EQ(LookUp(nullptr, text(254).c_str()), "error 1302");
  EXPECT_EQ(LookUp(nullptr, text(255).c_str()), "error 1300");
  EXPECT_EQ(LookUp("", text(254).c_str()), "error 1302");
  EXPECT_EQ(LookUp("", text(255).c_str()), "error 1300");
  EXPECT_EQ(LookUp(text(5000).c_str(), text(5000).c_str()), "error 1300");
  EXPECT_EQ(LookUp("k", (text(254) + "/").c_str()), "error 1300") << "the length is looked at first";
}

TEST_F(LookUpRegistryTest, TheLongestPathThatCanHaveAValueFillsItsLine)
{
  const string path = "k/" + string(252, 'n');
  sandbox_.Configure(path + "=\n" + path + "o=x\n");
  EXPECT_EQ(LookUp("k", path.substr(2).c_str()), "") << "the = is the 255th character";
  EXPECT_EQ(LookUp("k", (path.substr(2) + "o").c_str()), "error 1302") << "the = falls into the next piece";
}

TEST_F(LookUpRegistryTest, LongLinesAreSplitAfter255Characters)
{
  for (const std::size_t length : {std::size_t{253}, std::size_t{254}, std::size_t{255}}) {
    const string value(length - 4, 'v');
    sandbox_.Configure("k/n=" + value + "\nk/m=1\n");
    EXPECT_EQ(LookUp("k", "n"), value);
    EXPECT_EQ(LookUp("k", "m"), "1");
  }
  sandbox_.Configure("k/n=" + string(251, 'v') + " \tk/m=2\nk/o=3\n");
  EXPECT_EQ(LookUp("k", "n"), string(251, 'v'));
  EXPECT_EQ(LookUp("k", "m"), "2") << "the remainder is a line of its own";
  EXPECT_EQ(LookUp("k", "o"), "3");
  sandbox_.Configure("k/n=" + string(250, 'v') + "\r\nk/o=3\n");
  EXPECT_EQ(LookUp("k", "n"), string(250, 'v') + "\r") << "its line feed is in the next piece";
  EXPECT_EQ(LookUp("k", "o"), "3");
}

/** What a buffer of `size` bytes holds after looking up a value; `length` receives the length told. */
string LookUpCut(int size, int& length)
{
  GuardedBuffer buffer(static_cast<std::size_t>(std::max(size, 0)));
  length = size;
  EXPECT_EQ(LookUpRegistry_("k", "n", buffer.Data(), length, true), 0);
  EXPECT_TRUE(buffer.Intact());
  return buffer.Bytes();
}

TEST_F(LookUpRegistryTest, AValueIsCutPaddedAndItsLengthTold)
{
  const string value = "0123456789012345678901234567890123456789";
  sandbox_.Configure("k/n=" + value + "\n");
  for (const int size : {1, 2, 10, 39, 40, 41, 42, 64, 255, 256}) {
    int length = 0;
    string expected = value.substr(0, static_cast<std::size_t>(size) - 1);
    expected.resize(static_cast<std::size_t>(size), '\0');
    EXPECT_EQ(LookUpCut(size, length), expected) << size;
    EXPECT_EQ(length, 40) << size;
  }
}

TEST_F(LookUpRegistryTest, WithoutABufferOnlyTheLengthIsTold)
{
  sandbox_.Configure("k/n=abc\n");
  for (const int size : {0, -1, -2147483647 - 1}) {
    int length = 0;
    EXPECT_EQ(LookUpCut(size, length), "");
    EXPECT_EQ(length, 3);
  }
  int length = 100;
  EXPECT_EQ(LookUpRegistry_("k", "n", nullptr, length, false), 0);
  EXPECT_EQ(length, 3);
}

struct NumberRow
{
  const char* text;
  unsigned int number;
};

class LookUpNumber : public LookUpRegistryTest, public testing::WithParamInterface<NumberRow>
{
};

TEST_P(LookUpNumber, TakesTheLeadingDecimalDigits)
{
  sandbox_.Configure(string("k/n=") + GetParam().text + "\n");
  for (const bool ignored : {false, true}) {
    unsigned int value = 4711;
    EXPECT_TRUE(LookUpRegistryI_("k", "n", value, ignored));
    EXPECT_EQ(value, GetParam().number) << GetParam().text;
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, LookUpNumber,
                         testing::Values(NumberRow{"12", 12}, NumberRow{"12abc", 12}, NumberRow{"0x10", 0},
                                         NumberRow{"010", 10}, NumberRow{"", 0}, NumberRow{"abc", 0},
                                         NumberRow{" 7", 7}, NumberRow{"+7", 7}, NumberRow{"-1", 4294967295U},
                                         NumberRow{"4294967295", 4294967295U}, NumberRow{"4294967298", 2},
                                         NumberRow{"9223372036854775808", 4294967295U},
                                         NumberRow{"-9223372036854775809", 0},
                                         NumberRow{"000000000000000000000000000123", 12}));

TEST_F(LookUpRegistryTest, ANumberThatIsNotFoundLeavesTheOutputAlone)
{
  sandbox_.Configure("k/n=1\n");
  unsigned int value = 4711;
  EXPECT_FALSE(LookUpRegistryI_("k", "m", value, false));
  EXPECT_FALSE(LookUpRegistryI_("k", "a/b", value, false));
  EXPECT_FALSE(LookUpRegistryI_("k", string(300, 'n').c_str(), value, false));
  EXPECT_FALSE(LookUpRegistryI_(nullptr, nullptr, value, false));
  EXPECT_EQ(value, 4711U);
}

TEST_F(LookUpRegistryTest, NothingIsEverWritten)
{
  sandbox_.Configure("k/n=1\n");
  EXPECT_EQ(SetRegistryValue_("k", "n", "2"), 0);
  EXPECT_EQ(SetRegistryValue_(nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(sandbox_.Dir().Read("work/.morvex"), "k/n=1\n");
}

}  // namespace
