#include "paf/hints.h"

#include <gtest/gtest.h>

#include "unit/tools/scripted_session.h"

namespace tool {
namespace {

using tool_test::Script;

/** Answers the texts one after the other, then an empty one. */
void Answer(const std::vector<std::string>& texts)
{
  auto next = std::make_shared<std::size_t>(0);
  Script() = {};
  Script().nextHint = [texts, next] { return Reply{0, *next < texts.size() ? texts[(*next)++] : "\t\t\t", ""}; };
  Script().firstHint = [](const std::string&, const std::string&, int) { return Script().nextHint(); };
}

std::vector<Hint> Read()
{
  Session session;
  std::vector<Hint> hints = {{"left from before", "", "", ""}};
  EXPECT_EQ(ReadHints(session, "x", "", 10, hints).status, 0);
  return hints;
}

TEST(Hints, AreTakenApart)
{
  Answer({"TOWN VIC 3999\tL\t120\t", "HIGH STREET, TOWN\tS\t7\t", "THE MILL\tB\t2\t", "1 HIGH STREET\tA\t1\t30000001",
          "?\tZ\t1\t", "alone"});
  const std::vector<Hint> hints = Read();
  ASSERT_EQ(hints.size(), 6U);
  const std::vector<std::string> kinds = {"locality", "street", "building", "address", "Z", ""};
  for (std::size_t i = 0; i < hints.size(); ++i) {
    EXPECT_EQ(hints[i].kind, kinds[i]);
    EXPECT_EQ(hints[i].IsFinal(), i == 3);
  }
  EXPECT_EQ(hints[0].text, "TOWN VIC 3999");
  EXPECT_EQ(hints[0].count, "120");
  EXPECT_EQ(hints[3].dpid, "30000001");
  EXPECT_EQ(hints[5].text, "alone");
}

TEST(Hints, MayBeNone)
{
  Answer({});
  EXPECT_TRUE(Read().empty());
}

TEST(Hints, AnAddressWithoutIdentifierIsNotFinal)
{
  Answer({"1 HIGH STREET\tA\t2\t"});
  EXPECT_FALSE(Read().at(0).IsFinal());
}

TEST(Hints, AreAskedForAsTheCallerSays)
{
  Script() = {};
  std::string asked;
  Script().firstHint = [&asked](const std::string& text, const std::string& place, int most) {
    asked = text + "|" + place + "|" + std::to_string(most);
    return Reply{};
  };
  Session session;
  std::vector<Hint> hints;
  ReadHints(session, "1 hi", "TOWN VIC", 3, hints);
  EXPECT_EQ(asked, "1 hi|TOWN VIC|3");
}

TEST(Hints, AFailureKeepsThoseBeforeIt)
{
  Script() = {};
  Script().firstHint = [](const std::string&, const std::string&, int) { return Reply{0, "A\tL\t1\t", ""}; };
  Script().nextHint = [] { return Reply{601, "", "gone"}; };
  Session session;
  std::vector<Hint> hints;
  const Reply reply = ReadHints(session, "x", "", 10, hints);
  EXPECT_EQ(StatusText(reply), "gone (status 601)");
  EXPECT_EQ(hints.size(), 1U);
}

}  // namespace
}  // namespace tool
