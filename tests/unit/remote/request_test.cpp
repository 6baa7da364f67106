#include "remote/request.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "support/guarded_buffer.h"

namespace {

using qxpaf::Request;
using qxpaf::RequestWriter;
using qxpaf::TabFreeText;
using qxpaf::TwoNumbers;
using qxpaf::WholeRequest;

constexpr const char* kNull = nullptr;
const std::string kMin = std::to_string(LONG_MIN);

TEST(Request, PutsATabBeforeEveryField)
{
  const short postcode = -2;
  EXPECT_STREQ("pafName", Request("pafName").Text());
  EXPECT_STREQ("pafName\t0", Request("pafName", 0).Text());
  EXPECT_STREQ("pafName\t-7\ttext", Request("pafName", -7, "text").Text());
  EXPECT_STREQ("pafName\ta\tb\t\td\t9", Request("pafName", "a", "b", "", "d", 9).Text());
  EXPECT_STREQ("pafName\t-2\t2147483647\t-2147483648", Request("pafName", postcode, INT_MAX, INT_MIN).Text());
  EXPECT_EQ("pafName\t9223372036854775807\t" + kMin, Request("pafName", LONG_MAX, LONG_MIN).Text());
}

TEST(Request, TakesNullForAnEmptyText)
{
  EXPECT_STREQ("pafName\t\t1\t", Request("pafName", kNull, 1, kNull).Text());
  EXPECT_STREQ("pafName\t\t1\t", WholeRequest("pafName", kNull, 1, kNull).Text());
}

TEST(Request, SendsTextAsItIs)
{
  EXPECT_STREQ("pafName\t\t\n\r\xC3\xBC %d\t1", Request("pafName", "\t\n\r\xC3\xBC %d", 1).Text());
}

/** Whatever field is the long one, everything behind the 255th character is lost, in the middle of numbers too. */
TEST(Request, IsCutAtEveryPlace)
{
  for (std::size_t length = 0; length <= 300; ++length) {
    const std::string x(length, 'x');
    const char* const text = x.c_str();
    const auto cut = [](const std::string& whole) { return whole.substr(0, 255); };
    EXPECT_EQ(cut(x), Request(x).Text()) << length;
    EXPECT_EQ(cut(x + "\t5\tb\t" + kMin), Request(x, 5, "b", LONG_MIN).Text()) << length;
    EXPECT_EQ(cut("pafName\t" + x + "\tsecond\t" + kMin), Request("pafName", text, "second", LONG_MIN).Text())
        << length;
    EXPECT_EQ(cut("pafName\t-12\t" + x + "\t34"), Request("pafName", -12, text, 34).Text()) << length;
    EXPECT_EQ(cut("pafName\t-12\tfirst\t" + x), Request("pafName", -12, "first", text).Text()) << length;
    EXPECT_EQ(cut("pafName\t" + x + "\t" + x + "\t" + x), Request("pafName", text, text, text).Text()) << length;
  }
}

TEST(RequestWriter, StaysInItsBufferAndTerminates)
{
  const std::string whole = "pafName\t" + kMin + "\ttext\t\t-1";
  for (std::size_t capacity = 1; capacity <= whole.size() + 3; ++capacity) {
    test_support::GuardedBuffer buffer(capacity);
    RequestWriter(buffer.Data(), capacity).Write("pafName", LONG_MIN, "text", "", -1);
    EXPECT_EQ(whole.substr(0, capacity - 1), buffer.Data());
    EXPECT_TRUE(buffer.Intact()) << capacity;
  }
}

TEST(WholeRequest, IsNeverCut)
{
  for (const std::size_t length : {0u, 1u, 100u, 255u, 256u, 100000u}) {
    const std::string x(length, 'x');
    const std::string y(length / 2, 'y');
    EXPECT_EQ("pafName\t" + kMin + "\t" + x + "\t\t" + y + "\t-2147483648",
              WholeRequest("pafName", LONG_MIN, x.c_str(), "", y.c_str(), INT_MIN).Text());
  }
  EXPECT_STREQ("pafName", WholeRequest("pafName").Text());
}

struct TabRow
{
  std::string text;
  std::string sent;
};

TEST(TabFreeText, PutsBlanksForTabsAndCutsOnlyThen)
{
  const std::string x126(126, 'x');
  const std::vector<TabRow> rows = {
      {"", ""},
      {"Main St", "Main St"},
      {"\t", " "},
      {"\ta\t\tb\t", " a  b "},
      {"a\nb\tc", "a\nb c"},
      {x126 + "\t", x126 + " "},    // 127 characters
      {x126 + "\tz", x126 + " "},   // 128
      {x126 + "yz\t", x126 + "y"},  // the TAB itself is cut off
      {std::string(126, '\t') + "abc", std::string(126, ' ') + "a"},
      {x126 + x126 + x126, x126 + x126 + x126},  // no TAB, no limit
      {x126 + x126 + "\t", x126 + "x"},
  };
  for (const TabRow& row : rows) EXPECT_EQ(row.sent, TabFreeText(row.text.c_str()).Text()) << row.text;
}

TEST(TabFreeText, LeavesNullToTheRequest)
{
  EXPECT_EQ(nullptr, TabFreeText(nullptr).Text());
  EXPECT_STREQ("pafName\t\tb", Request("pafName", TabFreeText(nullptr).Text(), "b").Text());
}

TEST(TabFreeText, DoesNotChangeTheCallersText)
{
  const std::string text = "a\tb";
  const TabFreeText copy(text.c_str());
  EXPECT_STREQ("a b", copy.Text());
  EXPECT_EQ("a\tb", text);
}

struct NumbersRow
{
  std::string text;
  std::string first;
  std::string second;
};

TEST(TwoNumbers, AreTheTextsThatAreReadAsNumbers)
{
  const std::string digits127(127, '1');
  const std::vector<NumbersRow> rows = {
      {"", "", ""},
      {"north", "", ""},
      {",1,2", "", ""},
      {"-", "", ""},
      {"150", "150", ""},
      {"150,", "150", ""},
      {"150.25,-33.5", "150.25", "-33.5"},
      {"150.25 -33.5", "150.25", "-33.5"},
      {"150.25;-33.5;7", "150.25", "-33.5"},
      {"150.25\t-33.5", "150.25", "-33.5"},
      {"150.25x-33.5", "150.25", "-33.5"},
      {"150.25-33.5", "150.25", "33.5"},  // whatever stands behind the first number is the separator
      {"1,,2", "1", ""},
      {"1,x2", "1", ""},
      {"1, 2", "1", " 2"},  // white space belongs to what is read
      {" 1,2 ", " 1", "2"},
      {"+1.5e3,-.5E-2", "+1.5e3", "-.5E-2"},
      {"1.2.3", "1.2", "3"},
      {"0x10,inf", "0x10", "inf"},
      {digits127 + "," + digits127, digits127, digits127},
      {digits127 + "9," + digits127 + "8", digits127, digits127},
      {std::string(1000, '1') + ",2", digits127, "2"},
  };
  for (const NumbersRow& row : rows) {
    const TwoNumbers numbers(row.text.c_str());
    EXPECT_EQ(row.first, numbers.First()) << row.text;
    EXPECT_EQ(row.second, numbers.Second()) << row.text;
  }
}

TEST(TwoNumbers, AreEmptyForNull)
{
  const TwoNumbers numbers(nullptr);
  EXPECT_STREQ("", numbers.First());
  EXPECT_STREQ("", numbers.Second());
}

TEST(TwoNumbers, ReadNothingBehindTheText)
{
  for (const std::string text : {"1", "1,", "1,2", ""}) {
    test_support::GuardedBuffer exact(text.size() + 1);
    text.copy(exact.Data(), text.size());
    exact.Data()[text.size()] = '\0';
    const TwoNumbers numbers(exact.Data());
    EXPECT_EQ(text.substr(0, 1), numbers.First());
    EXPECT_EQ(text.size() < 3 ? "" : "2", std::string(numbers.Second()));
  }
}

}  // namespace
