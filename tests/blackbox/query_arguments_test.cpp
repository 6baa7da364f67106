// What each function hands to the plug-in, byte for byte.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>

#include "blackbox/support/fake.h"
#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

/** Every byte value but NUL. */
std::string AllBytes()
{
  std::string text;
  for (int byte = 1; byte < 256; ++byte) text += static_cast<char>(byte);
  return text;
}

/** Texts that a careless forwarder would change. */
const std::vector<std::string>& Texts()
{
  static const std::vector<std::string> kTexts = {"",
                                                  " ",
                                                  "1 Macquarie St",
                                                  "\t\r\n",
                                                  "%s%n%d",
                                                  "a\tb\nc",
                                                  "\xc3\xa9t\xc3\xa9",
                                                  AllBytes(),
                                                  std::string(5000, 'L')};
  return kTexts;
}

class QueryArgumentsTest : public SessionTest
{
 protected:
  /** The arguments of the last call of an operation, and that there were so many. */
  std::vector<Argument> Got(FakeOperation operation, size_t count)
  {
    std::vector<Argument> arguments = fake.Last(operation).arguments;
    EXPECT_EQ(arguments.size(), count);
    arguments.resize(count);
    return arguments;
  }

  GuardedBuffer out{32};
};

TEST_F(QueryArgumentsTest, LookupAddressGetsTheTextALocalBufferAndTheAmasFlag)
{
  struct Row
  {
    int amas;
    bool strict;
  };
  for (const Row& row : {Row{1, true}, Row{0, false}, Row{2, true}, Row{-1, true}}) {
    for (const std::string& text : Texts()) {
      GuardedBuffer address(text, 64);
      ASSERT_EQ(pafLookupAddress(id, address.data(), address.size(), row.amas), 0);
      const auto got = Got(kFakeLookupAddress, 4);
      EXPECT_EQ(got[0], text);
      EXPECT_EQ(got[2], 2048);
      EXPECT_EQ(got[3].raw.number != 0, row.strict);
      if (row.amas == 0 || row.amas == 1) {
        EXPECT_EQ(got[3], row.amas);
      }
    }
  }
}

TEST_F(QueryArgumentsTest, GetDpidLooksUpWithAmasAndGetDpidNonAmasWithout)
{
  for (const std::string& text : Texts()) {
    GuardedBuffer strict(text, 64);
    ASSERT_EQ(pafGetDpidId(id, strict.data(), strict.size()), 0);
    auto got = Got(kFakeLookupAddress, 4);
    EXPECT_EQ(got[0], text);
    EXPECT_EQ(got[2], 2048);
    EXPECT_EQ(got[3], 1);

    GuardedBuffer lenient(text, 64);
    ASSERT_EQ(pafGetDpidNonAmasId(id, lenient.data(), lenient.size()), 0);
    got = Got(kFakeLookupAddress, 4);
    EXPECT_EQ(got[0], text);
    EXPECT_EQ(got[2], 2048);
    EXPECT_EQ(got[3], 0);
  }
}

TEST_F(QueryArgumentsTest, FixLastLineGetsTheTextAndABufferOf512)
{
  for (const std::string& text : Texts()) {
    GuardedBuffer line(text, 64);
    ASSERT_EQ(pafFixLastLineId(id, line.data(), line.size()), 0);
    const auto got = Got(kFakeFixLastLine, 3);
    EXPECT_EQ(got[0], text);
    EXPECT_EQ(got[2], 512);
  }
}

TEST_F(QueryArgumentsTest, ValidatePartialAddressGetsTheTextAndABufferOf10)
{
  for (const std::string& text : Texts()) {
    GuardedBuffer address(text, 64);
    ASSERT_EQ(pafValidatePartialAddressId(id, address.data(), address.size()), 0);
    const auto got = Got(kFakeValidatePartialAddress, 3);
    EXPECT_EQ(got[0], text);
    EXPECT_EQ(got[2], 10);
  }
}

TEST_F(QueryArgumentsTest, TextsArePassedInOrder)
{
  for (const std::string& text : Texts()) {
    const char* c = text.c_str();
    const std::string other = "other " + text;
    const char* o = other.c_str();

    ASSERT_EQ(pafGetAddressId(id, c, out.data(), 32), 0);
    EXPECT_EQ(Got(kFakeGetAddress, 3)[0], text);

    ASSERT_EQ(pafGetPopupHintId(id, c, o, 7, out.data(), 32), 0);
    EXPECT_EQ(Got(kFakeGetPopupHint, 5)[0], text);
    EXPECT_EQ(Got(kFakeGetPopupHint, 5)[1], other);

    ASSERT_EQ(pafGetAddressHintId(id, c, o, out.data(), 32), 0);
    EXPECT_EQ(Got(kFakeGetAddressHint, 4)[0], text);
    EXPECT_EQ(Got(kFakeGetAddressHint, 4)[1], other);

    ASSERT_EQ(pafValidateFullAddressId(id, c, out.data(), 32, 0, nullptr), 0);
    EXPECT_EQ(Got(kFakeValidateFullAddress, 5)[0], text);

    ASSERT_EQ(pafFormatAddressId(id, c, out.data(), 0, 32), 0);
    EXPECT_EQ(Got(kFakeFormatAddress, 4)[0], text);

    ASSERT_EQ(pafBeginPolygonSearch(id, c, o), 0);
    EXPECT_EQ(Got(kFakeBeginPolygonSearch, 2)[0], text);
    EXPECT_EQ(Got(kFakeBeginPolygonSearch, 2)[1], other);

    ASSERT_EQ(pafBeginAddressSearch(id, c), 0);
    EXPECT_EQ(Got(kFakeBeginAddressSearch, 1)[0], text);
  }
}

TEST_F(QueryArgumentsTest, SetGeographicalCodesGetsTheCodesAndAnEmptyErrorBufferOf256)
{
  for (const std::string& text : Texts()) {
    ASSERT_EQ(pafSetGeographicalCodesId(id, text.c_str()), 0);
    const auto got = Got(kFakeSetGeographicalCodes, 3);
    EXPECT_EQ(got[0], text);
    EXPECT_NE(got[1].raw.pointer, nullptr);
    EXPECT_EQ(got[1].raw.number, 0) << "the error text starts empty";
    EXPECT_EQ(got[2], 256);
  }
}

TEST_F(QueryArgumentsTest, SearchStatisticsGetsFourTextsInOrder)
{
  ASSERT_EQ(pafGetSearchStatistics(id, "one", "two", "", "four", out.data(), 32), 0);
  const auto got = Got(kFakeGetSearchStatistics, 6);
  EXPECT_EQ(got[0], "one");
  EXPECT_EQ(got[1], "two");
  EXPECT_EQ(got[2], "");
  EXPECT_EQ(got[3], "four");
}

TEST_F(QueryArgumentsTest, NumbersArePassedUnchanged)
{
  for (int number : {0, 1, -1, 7, INT_MAX, INT_MIN}) {
    ASSERT_EQ(pafGetPopupHintId(id, "a", "b", number, out.data(), 32), 0);
    EXPECT_EQ(Got(kFakeGetPopupHint, 5)[2], number);
    ASSERT_EQ(pafValidateFullAddressId(id, "a", out.data(), 32, number, nullptr), 0);
    EXPECT_EQ(Got(kFakeValidateFullAddress, 5)[3], number);
  }
  for (long option : {0L, -1L, 1L << 40, LONG_MAX, LONG_MIN}) {
    ASSERT_EQ(pafFormatAddressId(id, "a", out.data(), option, 32), 0);
    EXPECT_EQ(Got(kFakeFormatAddress, 4)[2], option);
  }
}

TEST_F(QueryArgumentsTest, GifConcordanceArgumentsKeepAll64Bits)
{
  ASSERT_EQ(pafBeginGifConcordance(id, INTPTR_MIN, -1, 0, 0x123456789abcdef0, INTPTR_MAX, INT_MIN), 0);
  const auto got = Got(kFakeBeginGifConcordance, 6);
  EXPECT_EQ(got[0], INTPTR_MIN);
  EXPECT_EQ(got[1], -1);
  EXPECT_EQ(got[2], 0);
  EXPECT_EQ(got[3], 0x123456789abcdef0);
  EXPECT_EQ(got[4], INTPTR_MAX);
  EXPECT_EQ(got[5], INT_MIN);

  GuardedBuffer second(16);
  int detail = 0;
  ASSERT_EQ(pafGetNextGifConcordance(id, out.data(), 32, second.data(), 16, &detail), 0);
  const auto next = Got(kFakeGetNextGifConcordance, 5);
  EXPECT_TRUE(next[0].Is(out.data()));
  EXPECT_EQ(next[1], 32);
  EXPECT_TRUE(next[2].Is(second.data()));
  EXPECT_EQ(next[3], 16);
  EXPECT_TRUE(next[4].Is(&detail));

  ASSERT_EQ(pafGetNextGifConcordance(id, out.data(), 32, second.data(), 16, nullptr), 0);
  EXPECT_TRUE(Got(kFakeGetNextGifConcordance, 5)[4].Is(nullptr));
}

TEST_F(QueryArgumentsTest, ResultFlagIsClearedFirstAndGoesToThePlugin)
{
  char flag = 'q';
  fake.Answer(kFakeValidateFullAddress, 0, "done", "", 'Y');
  ASSERT_EQ(pafValidateFullAddressId(id, "a", out.data(), 32, 0, &flag), 0);
  EXPECT_EQ(flag, 'Y');
  const auto got = Got(kFakeValidateFullAddress, 5);
  EXPECT_NE(got[4].raw.pointer, nullptr);
  EXPECT_EQ(got[4].raw.number, 0) << "NUL when the plug-in sees it";

  flag = 'q';
  fake.Behave(kFakeValidateFullAddress, kFakeSilent);
  ASSERT_EQ(pafValidateFullAddressId(id, "a", out.data(), 32, 0, &flag), 0);
  EXPECT_EQ(flag, '\0') << "the plug-in gave no verdict";
}

TEST_F(QueryArgumentsTest, ResultFlagIsClearedAlsoWhenTheCallFails)
{
  char flag = 'q';
  EXPECT_EQ(pafValidateFullAddressId(id + 100, "a", out.data(), 32, 0, &flag), PAF_ERR_INVALID_ID);
  EXPECT_EQ(flag, '\0');
  flag = 'q';
  fake.Behave(kFakeValidateFullAddress, kFakeSilent, 12);
  EXPECT_EQ(pafValidateFullAddressId(id, "a", out.data(), 32, 0, &flag), 12);
  EXPECT_EQ(flag, '\0');
  flag = 'q';
  BusyInstance busy(fake, id);
  EXPECT_EQ(pafValidateFullAddressId(id, "a", out.data(), 32, 0, &flag), PAF_ERR_ID_IN_USE);
  EXPECT_EQ(flag, '\0');
}

TEST_F(QueryArgumentsTest, ANullResultFlagIsAllowed)
{
  fake.Answer(kFakeValidateFullAddress, 0, "done", "", 'Y');
  ASSERT_EQ(pafValidateFullAddressId(id, "a", out.data(), 32, 0, nullptr), 0);
  EXPECT_EQ(out.Text(), "done");
  EXPECT_NE(Got(kFakeValidateFullAddress, 5)[4].raw.pointer, nullptr) << "the plug-in always gets a place for it";
}

TEST_F(QueryArgumentsTest, FindStatusIsThePluginsNumber)
{
  for (int status : {0, 1, 42, -1, -5, INT_MAX, INT_MIN}) {
    fake.Answer(kFakeGetFindStatus, status);
    EXPECT_EQ(pafGetFindStatusId(id), status);
  }
}

TEST_F(QueryArgumentsTest, DpidToAddressAsksWithSevenDelimitersAndTheDecimalNumber)
{
  struct Row
  {
    const char* delimiter;  // what the property answers; null: the plug-in writes nothing
    int status;             // with which status
    std::string seven;
  };
  const std::vector<Row> rows = {{"", 0, std::string(7, '\t')},
                                 {"|", 0, "|||||||"},
                                 {",;", 0, ",,,,,,,"},
                                 {"|", 12, "|||||||"},
                                 {"", 12, std::string(7, '\t')},
                                 {nullptr, 12, std::string(7, '\t')},
                                 {"\xff", 0, std::string(7, '\xff')},
                                 {"%", 0, "%%%%%%%"},
                                 {"7", 0, "7777777"}};
  for (const Row& row : rows) {
    fake->setProperty("Delimiter", row.delimiter, row.status);
    for (long dpid : {12345L, 0L, 1L, -5L, LONG_MAX, LONG_MIN}) {
      fake->clearCalls();
      ASSERT_EQ(pafDpidToAddressId(id, dpid, out.data(), 32), 0);
      EXPECT_EQ(fake.Sequence(), "GetProperties GetAddress ");
      const auto property = Got(kFakeGetProperties, 3);
      EXPECT_EQ(property[0], "Delimiter");
      EXPECT_EQ(property[2], 1024);
      const auto query = Got(kFakeGetAddress, 3);
      EXPECT_EQ(query[0], row.seven + std::to_string(dpid));
      EXPECT_EQ(query[2], 1024);
    }
  }
}

}  // namespace
}  // namespace blackbox
