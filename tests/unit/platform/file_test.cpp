#include "qxpaf/platform/file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <type_traits>

#include "platform/self_closing_file.h"
#include "support/temp_dir.h"

namespace {

using std::string;
using std::wstring;
using test_support::TempDir;
using test_support::WorkingDirectory;

static_assert(sizeof(QX_File) == sizeof(FILE*));
static_assert(!std::is_copy_constructible_v<QX_File> && !std::is_copy_assignable_v<QX_File>);
static_assert(!std::is_polymorphic_v<QX_File>);

/** A name outside ASCII, in both widths. */
const string kName = "caf\xC3\xA9-\xE2\x82\xAC.txt";
const wstring kWideName = L"caf\u00E9-\u20AC.txt";

/** Gives every file test a working directory of its own. */
class FileTest : public testing::Test
{
 protected:
  TempDir dir_;
  WorkingDirectory inside_{dir_.Path()};
};

bool IsDirectory(const string& path)
{
  return std::filesystem::is_directory(path);
}

TEST_F(FileTest, StartsClosed)
{
  const QX_File file;
  EXPECT_FALSE(file.IsOpen());
  EXPECT_TRUE(!file);
  EXPECT_EQ(file.f(), nullptr);
}

TEST_F(FileTest, WritesAndReadsThroughTheHandle)
{
  QX_File file;
  ASSERT_TRUE(file.Open("a", "w", false));
  EXPECT_TRUE(file.IsOpen());
  EXPECT_FALSE(!file);
  EXPECT_EQ(std::fputs("text", file.f()), 1);
  file.Close();
  EXPECT_FALSE(file.IsOpen());
  EXPECT_EQ(file.f(), nullptr);
  file.Close();
  EXPECT_EQ(dir_.Read("a"), "text");
}

TEST_F(FileTest, TheDestructorCloses)
{
  {
    QX_File file;
    ASSERT_TRUE(file.Open("a", "w", false));
    std::fputs("buffered", file.f());
  }
  EXPECT_EQ(dir_.Read("a"), "buffered");
}

TEST_F(FileTest, OpeningAgainClosesTheFileBefore)
{
  QX_File file;
  ASSERT_TRUE(file.Open("a", "w", false));
  std::fputs("first", file.f());
  ASSERT_TRUE(file.Open("b", "w", false));
  EXPECT_EQ(dir_.Read("a"), "first");
  EXPECT_FALSE(file.Open("missing", "r", false));
  EXPECT_FALSE(file.IsOpen());
}

TEST_F(FileTest, WideNamesAndModesAreUtf8)
{
  QX_File file;
  ASSERT_TRUE(file.Open(kWideName.c_str(), L"w", false));
  std::fputs("wide", file.f());
  file.Close();
  EXPECT_EQ(dir_.Read(kName), "wide");
  ASSERT_TRUE(file.Open(kWideName.c_str(), "r", false));
  EXPECT_EQ(std::fgetc(file.f()), 'w');
  EXPECT_FALSE(file.Open(L"missing", L"r", false));
  EXPECT_FALSE(file.Open(L"missing", "r", false));
  EXPECT_FALSE(file.IsOpen());
}

TEST_F(FileTest, AFailureIsReportedOnlyWhenAsked)
{
  QX_File file;
  testing::internal::CaptureStderr();
  EXPECT_FALSE(file.Open("missing", "r", false));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");

  const string message = string(": ") + std::strerror(ENOENT) + "\n";
  testing::internal::CaptureStderr();
  EXPECT_FALSE(file.Open("missing", "r", true));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "missing" + message);
  testing::internal::CaptureStderr();
  EXPECT_FALSE(file.Open(kWideName.c_str(), L"r", true));
  EXPECT_FALSE(file.Open(kWideName.c_str(), "r", true));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), kName + message + kName + message);
  EXPECT_FALSE(file.IsOpen());
}

TEST_F(FileTest, TheInternalTwinBehavesTheSame)
{
  {
    qxpaf::SelfClosingFILE file;
    EXPECT_EQ(file.f(), nullptr);
    ASSERT_TRUE(file.Open("a", "w", false));
    std::fputs("x", file.f());
    ASSERT_TRUE(file.Open("b", "w", false));
    EXPECT_EQ(dir_.Read("a"), "x");
    file.Close();
    EXPECT_EQ(file.f(), nullptr);
    ASSERT_TRUE(file.Open("a", "a", false));
    std::fputs("y", file.f());
  }
  EXPECT_EQ(dir_.Read("a"), "xy");
  qxpaf::SelfClosingFILE missing;
  testing::internal::CaptureStderr();
  EXPECT_FALSE(missing.Open("missing", "r", true));
  EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::StartsWith("missing: "));
}

TEST_F(FileTest, RemoveInBothWidths)
{
  dir_.Write("a", "");
  dir_.Write(kName, "");
  dir_.MakeDirectory("empty");
  dir_.Write("full/x", "");
  EXPECT_EQ(QX_File_Remove("a"), 0);
  EXPECT_EQ(QX_File_Remove("a"), -1);
  EXPECT_EQ(QX_File_Remove(kWideName.c_str()), 0);
  EXPECT_EQ(QX_File_Remove(kWideName.c_str()), -1);
  EXPECT_EQ(QX_File_Remove("empty"), 0);
  EXPECT_EQ(QX_File_Remove("full"), -1);
  EXPECT_FALSE(std::filesystem::exists(kName));
}

TEST_F(FileTest, RenameInBothWidths)
{
  dir_.Write("a", "1");
  dir_.Write("c", "overwritten");
  EXPECT_EQ(QX_File_Rename("a", "b"), 0);
  EXPECT_EQ(QX_File_Rename("a", "b"), -1);
  EXPECT_EQ(QX_File_Rename(L"b", kWideName.c_str()), 0);
  EXPECT_EQ(QX_File_Rename(L"b", kWideName.c_str()), -1);
  EXPECT_EQ(QX_File_Rename(kWideName.c_str(), L"c"), 0);
  EXPECT_EQ(dir_.Read("c"), "1");
}

TEST_F(FileTest, FileExistsMeansThatItOpensForReading)
{
  dir_.Write(kName, "");
  dir_.MakeDirectory("d");
  EXPECT_TRUE(FileExists_(kName.c_str()));
  EXPECT_TRUE(FileExists_(kWideName.c_str()));
  EXPECT_TRUE(FileExists_("d"));
  EXPECT_TRUE(FileExists_(L"d"));
  EXPECT_FALSE(FileExists_("missing"));
  EXPECT_FALSE(FileExists_(L"missing"));
  EXPECT_FALSE(FileExists_(""));
  EXPECT_FALSE(FileExists_(L""));
  EXPECT_FALSE(FileExists_(static_cast<const char*>(nullptr)));
  EXPECT_FALSE(FileExists_(static_cast<const wchar_t*>(nullptr)));
}

TEST_F(FileTest, DirectoryExistsMeansThatItCanBeListed)
{
  dir_.Write("file", "");
  dir_.MakeDirectory("d");
  EXPECT_TRUE(DirectoryExists_("d"));
  EXPECT_TRUE(DirectoryExists_("d/"));
  EXPECT_TRUE(DirectoryExists_("/"));
  EXPECT_FALSE(DirectoryExists_("file"));
  EXPECT_FALSE(DirectoryExists_("missing"));
  EXPECT_FALSE(DirectoryExists_(""));
  EXPECT_FALSE(DirectoryExists_(nullptr));
}

struct PatternRow
{
  string pattern;
  bool found;
};

void PrintTo(const PatternRow& row, std::ostream* out)
{
  *out << row.pattern;
}

class FilePattern : public FileTest, public testing::WithParamInterface<PatternRow>
{
};

TEST_P(FilePattern, MatchesEntriesOfItsDirectory)
{
  dir_.Write("one.dat", "");
  dir_.Write("sub/two.dat", "");
  dir_.Write("sub/.hidden", "");
  dir_.MakeDirectory("empty");
  EXPECT_EQ(FilePatternExists_(GetParam().pattern.c_str()), GetParam().found);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, FilePattern,
    testing::Values(PatternRow{"*.dat", false}, PatternRow{"one.dat", false}, PatternRow{"./*.dat", true},
                    PatternRow{"./one.dat", true}, PatternRow{"./o?e.d[a-c]t", true}, PatternRow{"./*.DAT", false},
                    PatternRow{"./*.doc", false}, PatternRow{"sub/t*", true}, PatternRow{"./sub/two.dat", true},
                    PatternRow{"sub/*hidden", true}, PatternRow{"empty/*", true}, PatternRow{"empty/?*t", false},
                    PatternRow{"./sub", true}, PatternRow{"sub/", false}, PatternRow{"missing/*", false},
                    PatternRow{"one.dat/*", false}, PatternRow{"s*/two.dat", false}, PatternRow{"", false},
                    PatternRow{"/", false}, PatternRow{"/*", true}, PatternRow{"./one\\.dat", true}));

TEST_F(FileTest, APatternHasNoNullForm)
{
  EXPECT_FALSE(FilePatternExists_(nullptr));
}

/** "./././" and so on, of exactly this many characters, naming the working directory. */
string LongWorkingDirectory(std::size_t length)
{
  string path = length % 2 == 0 ? "./" : ".//";
  while (path.size() < length) path += "./";
  return path;
}

TEST_F(FileTest, APatternsPartsHaveAtMost255Characters)
{
  dir_.Write(string(255, 'n'), "");
  EXPECT_TRUE(FilePatternExists_((LongWorkingDirectory(254) + "n*").c_str()));
  EXPECT_TRUE(FilePatternExists_((LongWorkingDirectory(255) + "n*").c_str()));
  EXPECT_FALSE(FilePatternExists_((LongWorkingDirectory(256) + "n*").c_str()));
  EXPECT_TRUE(FilePatternExists_(("./" + string(255, 'n')).c_str()));
  EXPECT_TRUE(FilePatternExists_(("./n" + string(254, '*')).c_str()));
  EXPECT_FALSE(FilePatternExists_(("./n" + string(255, '*')).c_str()));
  EXPECT_TRUE(FilePatternExists_((LongWorkingDirectory(255) + string(255, '*')).c_str()));
}

TEST_F(FileTest, MkdirCreatesOneDirectoryOpenToTheGroup)
{
  const mode_t before = umask(0);
  EXPECT_EQ(mkdir_("d"), 0);
  umask(022);
  EXPECT_EQ(mkdir_("e"), 0);
  umask(before);
  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status("d").permissions(), perms{0775});
  EXPECT_EQ(std::filesystem::status("e").permissions(), perms{0755});
  EXPECT_EQ(mkdir_("d"), -1);
  EXPECT_EQ(errno, EEXIST);
  EXPECT_EQ(mkdir_("missing/d"), -1);
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(FileTest, CreateDirCreatesEveryMissingDirectory)
{
  EXPECT_TRUE(CreateDir("a/b/c/"));
  EXPECT_TRUE(IsDirectory("a/b/c"));
  EXPECT_TRUE(CreateDir("a/b/d"));
  EXPECT_TRUE(IsDirectory("a/b/d"));
  EXPECT_TRUE(CreateDir("single"));
  EXPECT_TRUE(IsDirectory("single"));
  EXPECT_TRUE(CreateDir(dir_.Path("absolute/x/y").c_str()));
  EXPECT_TRUE(IsDirectory("absolute/x/y"));
}

TEST_F(FileTest, CreateDirHasNothingToDoForAnExistingDirectory)
{
  dir_.MakeDirectory("a/b");
  for (const char* path : {"a", "a/b", "a/b/", "/", ".", "a//b", "a/../a/b"}) EXPECT_TRUE(CreateDir(path)) << path;
}

TEST_F(FileTest, CreateDirRefusesEmptyAndLongPaths)
{
  const string longest = LongWorkingDirectory(254) + "d";
  EXPECT_FALSE(CreateDir(""));
  EXPECT_FALSE(CreateDir(nullptr));
  EXPECT_FALSE(CreateDir((longest + "d").c_str()));
  EXPECT_FALSE(CreateDir((longest + "/").c_str()));
  EXPECT_TRUE(std::filesystem::is_empty("."));
  EXPECT_TRUE(CreateDir(longest.c_str()));
  EXPECT_TRUE(IsDirectory("d"));
}

TEST_F(FileTest, CreateDirStopsAtTheFirstFailure)
{
  dir_.Write("file", "");
  EXPECT_FALSE(CreateDir("file"));
  EXPECT_FALSE(CreateDir("file/d"));
  EXPECT_FALSE(CreateDir("file/d/e"));
  EXPECT_TRUE(std::filesystem::is_regular_file("file"));
}

TEST_F(FileTest, CreateDirFailsBehindADoubledSeparator)
{
  EXPECT_FALSE(CreateDir("a//b"));
  EXPECT_TRUE(IsDirectory("a"));
  EXPECT_FALSE(std::filesystem::exists("a/b"));
  EXPECT_FALSE(CreateDir("c//"));
  EXPECT_TRUE(IsDirectory("c"));
  EXPECT_TRUE(CreateDir("a//b")) << "the doubled separator is in the part that exists";
}

TEST_F(FileTest, PositionsHave64Bits)
{
  static_assert(std::is_same_v<decltype(ftell_(nullptr)), long long>);
  QX_File file;
  ASSERT_TRUE(file.Open("sparse", "w+", false));
  EXPECT_EQ(ftell_(file.f()), 0);
  constexpr long long kFar = 5'000'000'000;
  ASSERT_EQ(fseek_(file.f(), kFar, SEEK_SET), 0);
  EXPECT_EQ(ftell_(file.f()), kFar);
  ASSERT_EQ(std::fputc('x', file.f()), 'x');
  EXPECT_EQ(fseek_(file.f(), -1, SEEK_CUR), 0);
  EXPECT_EQ(ftell_(file.f()), kFar);
  EXPECT_EQ(fseek_(file.f(), 0, SEEK_END), 0);
  EXPECT_EQ(ftell_(file.f()), kFar + 1);
  EXPECT_EQ(fseek_(file.f(), -1, SEEK_SET), -1);
  EXPECT_EQ(ftell_(file.f()), kFar + 1);
}

}  // namespace
