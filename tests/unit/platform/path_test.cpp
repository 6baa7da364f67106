#include "qxpaf/platform/path.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>

#include "support/guarded_buffer.h"

namespace {

using std::string;
using std::wstring;

const string kUtf8 = "/tmp/caf\xC3\xA9";
const wstring kWide = L"/tmp/caf\u00E9";

static_assert(sizeof(QX_Path) == sizeof(string));
static_assert(!std::is_polymorphic_v<QX_Path>);
static_assert(std::is_same_v<decltype(std::declval<QX_Path&>() = ""), QX_Path&>);
static_assert(std::is_same_v<decltype(std::declval<QX_Path&>() += ""), QX_Path&>);
static_assert(std::is_same_v<decltype(std::declval<const QX_Path&>().Native()), const string&>);

TEST(Path, IsMadeFromEveryKindOfText)
{
  EXPECT_EQ(QX_Path().String(), "");
  EXPECT_EQ(QX_Path(kUtf8).String(), kUtf8);
  EXPECT_EQ(QX_Path(kUtf8.c_str()).String(), kUtf8);
  EXPECT_EQ(QX_Path(kWide).String(), kUtf8);
  EXPECT_EQ(QX_Path(kWide.c_str()).String(), kUtf8);
  const QX_Path original("a/b");
  const QX_Path copy(original);
  EXPECT_EQ(copy.String(), "a/b");
}

TEST(Path, NullPointersGiveTheEmptyPath)
{
  const char* const noText = nullptr;
  const wchar_t* const noWideText = nullptr;
  EXPECT_TRUE(QX_Path(noText).Empty());
  EXPECT_TRUE(QX_Path(noWideText).Empty());
  QX_Path path("x");
  EXPECT_TRUE((path = noText).Empty());
  path = "x";
  EXPECT_TRUE((path = noWideText).Empty());
}

TEST(Path, IsAssignedFromEveryKindOfText)
{
  QX_Path path("before");
  EXPECT_EQ((path = QX_Path("p")).String(), "p");
  EXPECT_EQ((path = kUtf8).String(), kUtf8);
  EXPECT_EQ((path = "c").String(), "c");
  EXPECT_EQ((path = kWide).String(), kUtf8);
  path.Clear();
  EXPECT_EQ((path = kWide.c_str()).String(), kUtf8);
  EXPECT_EQ(&(path = "again"), &path);
  path = *&path;
  EXPECT_EQ(path.String(), "again");
}

TEST(Path, AppendsEveryKindOfTextWithoutASeparator)
{
  QX_Path path("a");
  path += QX_Path("b");
  path += string("c/");
  path += "d";
  path += wstring(L"\u20AC");
  path += L"\u00E9";
  EXPECT_EQ(path.String(), "abc/d\xE2\x82\xAC\xC3\xA9");
  EXPECT_EQ(&(path += "x"), &path);
  QX_Path doubled("ab");
  EXPECT_EQ((doubled += doubled).String(), "abab");
}

TEST(Path, NarrowTextIsKeptByteForByte)
{
  const string bytes = "\xFF\xC3/\\.\x01";
  EXPECT_EQ(QX_Path(bytes).Native(), bytes);
  EXPECT_STREQ(QX_Path(bytes).c_str(), bytes.c_str());
  EXPECT_EQ((QX_Path("a") += bytes).Native(), "a" + bytes);
}

TEST(Path, JoiningInsertsNothing)
{
  EXPECT_EQ((QX_Path("/a/") + QX_Path("b")).String(), "/a/b");
  EXPECT_EQ((QX_Path("/a") + "b").String(), "/ab");
  EXPECT_EQ((QX_Path() + QX_Path()).String(), "");
}

struct PartsRow
{
  const char* path;
  const char* filePath;
  const char* fileName;
  const char* extension;
  const char* withoutExtension;
};

class PathParts : public testing::TestWithParam<PartsRow>
{
};

TEST_P(PathParts, AreCutAtTheLastSeparatorAndTheLastDot)
{
  const PartsRow& row = GetParam();
  const QX_Path path(row.path);
  EXPECT_EQ(path.ExtractFilePath().String(), row.filePath);
  EXPECT_EQ(path.ExtractFileName().String(), row.fileName);
  EXPECT_EQ(path.ExtractExtension().String(), row.extension);
  EXPECT_EQ(path.RemoveExtension().String(), row.withoutExtension);
  EXPECT_EQ(path.String(), row.path);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PathParts,
    testing::Values(PartsRow{"/usr/lib/libx.so", "/usr/lib/", "libx.so", ".so", "/usr/lib/libx"},
                    PartsRow{"/a.b/c", "/a.b/", "c", "", "/a.b/c"},
                    PartsRow{"/a.b/c.d", "/a.b/", "c.d", ".d", "/a.b/c"},
                    PartsRow{".profile", "", ".profile", ".profile", ""},
                    PartsRow{"/home/.profile", "/home/", ".profile", ".profile", "/home/"},
                    PartsRow{"a.tar.gz", "", "a.tar.gz", ".gz", "a.tar"}, PartsRow{"name.", "", "name.", ".", "name"},
                    PartsRow{"plain", "", "plain", "", "plain"}, PartsRow{"dir/", "dir/", "", "", "dir/"},
                    PartsRow{"dir.x/", "dir.x/", "", "", "dir.x/"}, PartsRow{"/", "/", "", "", "/"},
                    PartsRow{"", "", "", "", ""}, PartsRow{"..", "", "..", ".", "."},
                    PartsRow{"a\\b.c", "", "a\\b.c", ".c", "a\\b"}, PartsRow{"a//b", "a//", "b", "", "a//b"}));

struct DividerRow
{
  const char* text;
  const char* asPath;
  const char* asBuffer;
};

class TrailingDivider : public testing::TestWithParam<DividerRow>
{
};

TEST_P(TrailingDivider, IsAddedToAPath)
{
  QX_Path path(GetParam().text);
  EXPECT_EQ(&path.AddTrailingPathDivider(), &path);
  EXPECT_EQ(path.String(), GetParam().asPath);
}

TEST_P(TrailingDivider, IsAddedToACopyOfAString)
{
  const string text = GetParam().text;
  EXPECT_EQ(IncludeTrailingPathDelimiter(text), GetParam().asPath);
  EXPECT_EQ(IncludeTrailingPathDelimiter<string>(text), GetParam().asPath);
  EXPECT_EQ(text, GetParam().text);
}

TEST_P(TrailingDivider, IsAddedInABufferThatHasJustTheRoom)
{
  const string expected = GetParam().asBuffer;
  test_support::GuardedBuffer buffer(expected.size() + 1);
  string(GetParam().text).copy(buffer.Data(), string::npos);
  buffer.Data()[string(GetParam().text).size()] = '\0';
  char* const text = buffer.Data();
  static_assert(std::is_same_v<decltype(IncludeTrailingPathDelimiter(text)), char*>);
  EXPECT_EQ(IncludeTrailingPathDelimiter(text), text);
  EXPECT_EQ(buffer.Bytes(), expected + '\0');
  EXPECT_TRUE(buffer.Intact());
}

INSTANTIATE_TEST_SUITE_P(Rows, TrailingDivider,
                         testing::Values(DividerRow{"", "", ""}, DividerRow{"/tmp", "/tmp/", "/tmp/"},
                                         DividerRow{"/tmp/", "/tmp/", "/tmp/"}, DividerRow{"/", "/", "/"},
                                         DividerRow{"C:\\dir\\", "C:\\dir\\/", "C:\\dir\\"},
                                         DividerRow{"\\", "\\/", "\\"}, DividerRow{"a//", "a//", "a//"}));

TEST(Path, ArraysTakeTheFormForBuffers)
{
  char text[8] = "ab";
  EXPECT_EQ(IncludeTrailingPathDelimiter(text), text);
  EXPECT_STREQ(text, "ab/");
}

TEST(Path, ClearEmpties)
{
  QX_Path path("x");
  EXPECT_FALSE(path.Empty());
  path.Clear();
  EXPECT_TRUE(path.Empty());
  EXPECT_STREQ(path.c_str(), "");
}

struct OrderRow
{
  const char* a;
  const char* b;
  int sign;
};

class PathOrder : public testing::TestWithParam<OrderRow>
{
};

TEST_P(PathOrder, IsByteWise)
{
  const OrderRow& row = GetParam();
  const int result = QX_Path(row.a).Compare(QX_Path(row.b));
  EXPECT_EQ((result > 0) - (result < 0), row.sign);
  EXPECT_EQ(QX_Path(row.a) == QX_Path(row.b), row.sign == 0);
  EXPECT_EQ(QX_Path(row.a) != QX_Path(row.b), row.sign != 0);
}

INSTANTIATE_TEST_SUITE_P(Rows, PathOrder,
                         testing::Values(OrderRow{"", "", 0}, OrderRow{"a", "a", 0}, OrderRow{"a", "b", -1},
                                         OrderRow{"b", "a", 1}, OrderRow{"a", "ab", -1}, OrderRow{"A", "a", -1},
                                         OrderRow{"\xC3\xA9", "z", 1}, OrderRow{"a/", "a", 1}));

TEST(Path, IsAbsoluteWhenItBeginsWithASeparator)
{
  EXPECT_TRUE(QX_Path("/").IsAbsolutePath());
  EXPECT_TRUE(QX_Path("/a").IsAbsolutePath());
  EXPECT_FALSE(QX_Path("").IsAbsolutePath());
  EXPECT_FALSE(QX_Path("a/").IsAbsolutePath());
  EXPECT_FALSE(QX_Path("\\a").IsAbsolutePath());
}

TEST(Path, WideTextIsThatOfUtf8)
{
  EXPECT_EQ(QX_Path(kUtf8).WString(), kWide);
  EXPECT_EQ(QX_Path().WString(), L"");
  EXPECT_EQ(QX_Path("\xF0\x9F\x98\x80").WString(), wstring(1, static_cast<wchar_t>(0x1F600)));
}

TEST(Path, TextThatIsNotUtf8IsReadAsWindows1252FromTheStart)
{
  EXPECT_EQ(QX_Path("caf\xE9").WString(), L"caf\u00E9");
  EXPECT_EQ(QX_Path::ConvertToOtherType("\xC3\xA9\xE9"), L"\u00C3\u00A9\u00E9");
  EXPECT_EQ(QX_Path::ConvertToOtherType("\x80/x"), L"\u20AC/x");
}

TEST(Path, ConversionsAreStatic)
{
  EXPECT_EQ(QX_Path::ConvertFromOtherType(kWide), kUtf8);
  EXPECT_EQ(QX_Path::ConvertToOtherType(kUtf8), kWide);
}

}  // namespace
