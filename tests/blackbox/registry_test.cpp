// The exported registry-style accessors over the configuration file.
#include "qxpaf/registry.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/workspace.h"

namespace blackbox {
namespace {

struct Row
{
  const char* key;
  const char* name;
  int status;
  const char* value;
};

void PrintTo(const Row& row, std::ostream* out)
{
  *out << (row.key == nullptr ? "null" : row.key) << " " << row.name;
}

class LookUpTest : public testing::TestWithParam<Row>
{
 protected:
  Workspace workspace{{"Root=of all", "  \t Led=by blanks", "Crlf=ends\r", "Twice=first", "Twice=second",
                       "Empty=", "Key/Name=in key", "Key/Sub/Name=in sub-key", "KEY/Upper=found", "Key/Equal=a=b",
                       "Key/Trail=x ", "Key/Blank =x", "NoEquals", "Key/Name2=other", "/Lead=separator"}};
};

TEST_P(LookUpTest, FindsTheValueOrLeavesTheOutputsAlone)
{
  GuardedBuffer buffer(64);
  int size = 64;
  EXPECT_EQ(LookUpRegistry_(GetParam().key, GetParam().name, buffer.data(), size, false), GetParam().status);
  if (GetParam().status == 0) {
    EXPECT_EQ(buffer.Text(), GetParam().value);
    EXPECT_EQ(size, static_cast<int>(std::strlen(GetParam().value)));
  } else {
    EXPECT_TRUE(buffer.IsUntouched());
    EXPECT_EQ(size, 64);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, LookUpTest,
    testing::Values(Row{nullptr, "Root", 0, "of all"}, Row{"", "Root", 0, "of all"}, Row{"", "rOOT", 0, "of all"},
                    Row{"", "Led", 0, "by blanks"}, Row{"", "Crlf", 0, "ends"}, Row{"", "Twice", 0, "first"},
                    Row{"", "Empty", 0, ""}, Row{"Key", "Name", 0, "in key"}, Row{"key", "NAME", 0, "in key"},
                    Row{"Key/Sub", "Name", 0, "in sub-key"}, Row{"Key\\Sub", "Name", 0, "in sub-key"},
                    Row{"Key", "Upper", 0, "found"}, Row{"Key", "Equal", 0, "a=b"}, Row{"Key", "Trail", 0, "x "},
                    Row{"Key", "Name2", 0, "other"}, Row{"Key\\", "Name", 1302, ""}, Row{"Key/", "Name", 1302, ""},
                    Row{"Key", "Blank", 1302, ""}, Row{"Key", "Blank ", 0, "x"}, Row{"Key", "Nam", 1302, ""},
                    Row{"Key", "Sub/Name", 1302, ""}, Row{"", "Key/Name", 1302, ""}, Row{"Other", "Name", 1302, ""},
                    Row{"", "NoEquals", 1302, ""}, Row{"", "", 1302, ""}, Row{"/", "Lead", 1302, ""}));

class RegistryTest : public testing::Test
{
 protected:
  int LookUp(const char* key, const char* name, std::string& value, int size = 300)
  {
    GuardedBuffer buffer(static_cast<size_t>(size));
    const int status = LookUpRegistry_(key, name, buffer.data(), size, true);
    value = status == 0 ? buffer.Text() : "";
    return status;
  }

  Workspace workspace;
};

TEST_F(RegistryTest, AValueIsCutAndPaddedAndItsLengthTold)
{
  const std::string value = "0123456789012345678901234567890123456789";
  workspace.Configure({"V=" + value});
  for (int capacity : {1, 2, 10, 39, 40, 41, 42, 100}) {
    GuardedBuffer buffer(static_cast<size_t>(capacity));
    int size = capacity;
    EXPECT_EQ(LookUpRegistry_(nullptr, "V", buffer.data(), size, false), 0);
    EXPECT_EQ(size, 40);
    const size_t kept = std::min<size_t>(40, static_cast<size_t>(capacity) - 1);
    std::string expected = value.substr(0, kept);
    expected.resize(static_cast<size_t>(capacity), '\0');
    EXPECT_EQ(buffer.Bytes(), expected) << "capacity " << capacity;
  }
}

TEST_F(RegistryTest, KeyAndNameTogetherMayHave254Characters)
{
  std::string value;
  workspace.Configure({});
  const std::string key(200, 'k');
  EXPECT_EQ(LookUp(key.c_str(), std::string(54, 'n').c_str(), value), 1302);
  EXPECT_EQ(LookUp(key.c_str(), std::string(55, 'n').c_str(), value), 1300);
  EXPECT_EQ(LookUp(nullptr, std::string(254, 'n').c_str(), value), 1302);
  EXPECT_EQ(LookUp(nullptr, std::string(255, 'n').c_str(), value), 1300);
  EXPECT_EQ(LookUp("", std::string(255, 'n').c_str(), value), 1300);
  workspace.RemoveConfiguration();
  EXPECT_EQ(LookUp(key.c_str(), std::string(55, 'n').c_str(), value), 1300) << "found before the file is opened";
  EXPECT_EQ(LookUp(nullptr, "a/b", value), 1302) << "found before the file is opened";
}

TEST_F(RegistryTest, WithoutAFile)
{
  std::string value;
  EXPECT_EQ(LookUp("Key", "Name", value), 1301);
  unsigned int number = 7;
  EXPECT_FALSE(LookUpRegistryI_("Key", "Name", number, false));
  EXPECT_EQ(number, 7u);
  char** names = reinterpret_cast<char**>(1);
  char** values = names;
  EnumerateRegistry_("Key", &names, &values);
  EXPECT_EQ(names, nullptr);
  EXPECT_EQ(values, nullptr);
}

TEST_F(RegistryTest, TheFileIsFoundAsTheLibraryFindsIt)
{
  std::string value;
  unsetenv("HOME");
  workspace.WriteFile("env", "X=env\n");
  workspace.WriteFile("home/.morvex", "X=home\n");
  EXPECT_EQ(LookUp("", "X", value), 1301);
  setenv("HOME", (workspace.Root() + "/home").c_str(), 1);
  LookUp("", "X", value);
  EXPECT_EQ(value, "home");
  setenv("HOME", (workspace.Root() + "/home/").c_str(), 1);
  LookUp("", "X", value);
  EXPECT_EQ(value, "home");
  setenv("MORVEX_CONFIG_FILE", (workspace.Root() + "/env").c_str(), 1);
  LookUp("", "X", value);
  EXPECT_EQ(value, "env");
  workspace.Configure({"X=working"});
  LookUp("", "X", value);
  EXPECT_EQ(value, "working");
}

TEST_F(RegistryTest, ALongHomeIsNotTried)
{
  std::string value;
  for (size_t length : {246u, 247u}) {
    std::string home = workspace.Root() + "/";
    while (home.size() + 1 < length) home.append(std::min<size_t>(100, length - home.size() - 1), 'h').append("/");
    home.resize(length, 'h');
    workspace.WriteFile(home.substr(workspace.Root().size() + 1) + "/.morvex", "X=home\n");
    setenv("HOME", home.c_str(), 1);
    EXPECT_EQ(LookUp("", "X", value), length == 246 ? 0 : 1301) << length;
  }
}

TEST_F(RegistryTest, LinesAreReadInPiecesOf255Characters)
{
  std::string value;
  workspace.WriteFile(".morvex", std::string(255, '#') + "X=piece\n");
  EXPECT_EQ(LookUp("", "X", value), 0);
  EXPECT_EQ(value, "piece");
  workspace.WriteFile(".morvex", std::string(254, '#') + "X=piece\n");
  EXPECT_EQ(LookUp("", "X", value), 1302);
  workspace.WriteFile(".morvex", "X=" + std::string(260, 'v') + "\n");
  EXPECT_EQ(LookUp("", "X", value), 0);
  EXPECT_EQ(value, std::string(253, 'v'));
}

TEST_F(RegistryTest, Numbers)
{
  struct NumberRow
  {
    const char* text;
    unsigned int number;
  };
  for (const NumberRow& row : {NumberRow{"12", 12}, NumberRow{"12abc", 12}, NumberRow{"0x10", 0}, NumberRow{"010", 10},
                               NumberRow{"", 0}, NumberRow{"abc", 0}, NumberRow{" 7", 7}, NumberRow{"+7", 7},
                               NumberRow{"-1", 4294967295u}, NumberRow{"2147483647", 2147483647u}}) {
    workspace.Configure({std::string("Key/N=") + row.text});
    unsigned int number = 99;
    EXPECT_TRUE(LookUpRegistryI_("Key", "N", number, false)) << row.text;
    EXPECT_EQ(number, row.number) << "'" << row.text << "'";
  }
  unsigned int number = 99;
  EXPECT_FALSE(LookUpRegistryI_("Key", "M", number, false));
  EXPECT_FALSE(LookUpRegistryI_("Key", "a/b", number, false));
  EXPECT_EQ(number, 99u);
}

/** The names and values of a key as "name=value;…", freed as the caller must. */
std::string Enumerate(const char* key)
{
  char** names = nullptr;
  char** values = nullptr;
  EnumerateRegistry_(key, &names, &values);
  if (names == nullptr || values == nullptr) return names == nullptr && values == nullptr ? "null" : "half";
  std::string list;
  size_t count = 0;
  for (; names[count] != nullptr && values[count] != nullptr; ++count) {
    list.append(names[count]).append("=").append(values[count]).append(";");
    delete[] names[count];
    delete[] values[count];
  }
  EXPECT_EQ(names[count], nullptr);
  EXPECT_EQ(values[count], nullptr);
  delete[] names;
  delete[] values;
  return list;
}

TEST_F(RegistryTest, EnumeratesTheValuesDirectlyInAKey)
{
  workspace.Configure({"Root=1", "Key/b=2", "Key/a=1", "KEY/Sub/x=3", "key/c=", "Key/d=x=y", "Key/b=again", "Keys/e=5",
                       "Key/no equals", "  Key/led=6", "Key/=nameless", "Other/x=1"});
  EXPECT_EQ(Enumerate("Key"), "b=2;a=1;c=;d=x=y;b=again;led=6;=nameless;");
  EXPECT_EQ(Enumerate("kEY"), Enumerate("Key"));
  EXPECT_EQ(Enumerate("Key\\Sub"), "x=3;");
  EXPECT_EQ(Enumerate("Key/Sub"), "x=3;");
  EXPECT_EQ(Enumerate("Nothing"), "");
  EXPECT_EQ(Enumerate("Key/"), "");
  EXPECT_EQ(Enumerate(std::string(254, 'k').c_str()), "");
  EXPECT_EQ(Enumerate(std::string(255, 'k').c_str()), "null");
}

TEST_F(RegistryTest, EnumerationNeedsBothOutputs)
{
  workspace.Configure({"Key/a=1"});
  char** list = reinterpret_cast<char**>(1);
  EnumerateRegistry_("Key", nullptr, &list);
  EnumerateRegistry_("Key", &list, nullptr);
  EXPECT_EQ(list, reinterpret_cast<char**>(1));
}

TEST_F(RegistryTest, WhatIsNotOffered)
{
  workspace.Configure({"Key/a=1", "Key/Sub/b=2"});
  EXPECT_EQ(EnumerateRegistryKeys_("Key"), 0);
  EXPECT_EQ(EnumerateRegistryKeys_(""), 0);
  EXPECT_EQ(SetRegistryValue_("Key", "a", "2"), 0);
  EXPECT_EQ(Enumerate("Key"), "a=1;") << "nothing was written";
  int major = 1;
  int minor = 2;
  int release = 3;
  int build = 4;
  GetVersionOfThisFile(major, minor, release, build, nullptr);
  EXPECT_EQ(major, 1);
  EXPECT_EQ(minor, 2);
  EXPECT_EQ(release, 3);
  EXPECT_EQ(build, 4);
}

TEST_F(RegistryTest, FilesAndDirectories)
{
  workspace.WriteFile("dir/file.dat", "x");
  const std::string root = workspace.Root();
  EXPECT_TRUE(FileExists_((root + "/dir/file.dat").c_str()));
  EXPECT_TRUE(FileExists_("dir/file.dat"));
  EXPECT_FALSE(FileExists_("dir/none.dat"));
  EXPECT_FALSE(FileExists_(""));
  EXPECT_TRUE(DirectoryExists_("dir"));
  EXPECT_TRUE(DirectoryExists_((root + "/dir/").c_str()));
  EXPECT_FALSE(DirectoryExists_("dir/file.dat"));
  EXPECT_FALSE(DirectoryExists_("none"));
  EXPECT_FALSE(DirectoryExists_(""));
}

TEST_F(RegistryTest, FilePatterns)
{
  workspace.WriteFile("dir/file.dat", "x");
  workspace.WriteFile("top.dat", "x");
  const std::string root = workspace.Root();
  EXPECT_TRUE(FilePatternExists_((root + "/dir/*.dat").c_str()));
  EXPECT_TRUE(FilePatternExists_("dir/f?le.[d]at"));
  EXPECT_TRUE(FilePatternExists_("dir/file.dat"));
  EXPECT_TRUE(FilePatternExists_("./*.dat"));
  EXPECT_FALSE(FilePatternExists_("*.dat")) << "no directory part";
  EXPECT_FALSE(FilePatternExists_("dir/*.txt"));
  EXPECT_FALSE(FilePatternExists_("none/*.dat"));
  EXPECT_TRUE(FilePatternExists_("dir/*"));
  EXPECT_FALSE(FilePatternExists_(("dir/" + std::string(256, '*')).c_str()));
  EXPECT_TRUE(FilePatternExists_(("dir/" + std::string(255, '*')).c_str()));
  EXPECT_FALSE(FilePatternExists_((std::string(256, '/') + "*").c_str()));
}

TEST_F(RegistryTest, MakingADirectory)
{
  const mode_t before = umask(0);
  EXPECT_EQ(mkdir_("made"), 0);
  umask(before);
  struct stat status;
  ASSERT_EQ(stat("made", &status), 0);
  EXPECT_TRUE(S_ISDIR(status.st_mode));
  EXPECT_EQ(status.st_mode & 07777u, 0775u);
  EXPECT_NE(mkdir_("made"), 0);
  EXPECT_NE(mkdir_("none/made"), 0);
}

TEST_F(RegistryTest, TheComputer)
{
  char host[256] = "";
  ASSERT_EQ(gethostname(host, sizeof host), 0);
  std::string label(host);
  label = label.substr(0, label.find('.'));
  GuardedBuffer buffer(256);
  GetComputerName_(buffer.data(), 256);
  EXPECT_EQ(buffer.Text(), label);
  EXPECT_EQ(GetNumberOfProcessors_(), static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN)));
}

}  // namespace
}  // namespace blackbox
