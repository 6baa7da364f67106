// Random properties, commands and queries through the real Australian plug-in, over a database of the sample addresses.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "blackbox/support/command_call.h"
#include "blackbox/support/delivery.h"
#include "blackbox/support/random_text.h"
#include "blackbox/support/session.h"
#include "blackbox/twin/function_table.h"

namespace blackbox {
namespace {

constexpr int kRounds = 10000;

const std::vector<std::string> kAddressParts = {"1 Macquarie St Sydney NSW 2000",
                                                "6 Macquarie Street",
                                                "Unit 2, ",
                                                "Level 3 ",
                                                "PO Box 15 ",
                                                "Sydney",
                                                " NSW ",
                                                "2000",
                                                " ",
                                                ",",
                                                "\t",
                                                "\n",
                                                "St",
                                                "30000001",
                                                "-33.8675",
                                                "151.2127",
                                                "High",
                                                "/",
                                                "-",
                                                "12",
                                                "Lot 4 "};

/** An instance, and the thread's default instance, on a database built from the sample. */
class AustralianTest : public testing::Test
{
 protected:
  void SetUp() override
  {
    const std::string build = std::string(PAF_PROGRAM) + " build " + SAMPLE + " db >build.log 2>&1";
    ASSERT_EQ(std::system(build.c_str()), 0) << build;
    workspace.Configure({"ARF/AU/=@/db", "PafDir=@/db"});
    id = Open("AU");
    ASSERT_EQ(id, 1);
    ASSERT_EQ(pafOpenPaf(), 0);
    char text[64] = "6 Macquarie St Sydney NSW 2000";
    ASSERT_EQ(pafGetDpidNonAmas(text, sizeof text - 1), 0) << Describe(pafGetDpidNonAmas(text, sizeof text - 1));
  }
  void TearDown() override { CloseEverything(); }

  static void CloseEverything()
  {
    for (int any = 1; any <= 64; ++any) pafClosePafId(any);
    EXPECT_EQ(pafClosePaf(), 0);
  }

  /** Commands open and close what they like: only the instance 1 and the default one are open again. */
  void PutInstancesBack()
  {
    CloseEverything();
    ASSERT_EQ(Open("AU"), 1);
    ASSERT_EQ(pafOpenPaf(), 0);
  }

  std::vector<std::string> PropertyNames()
  {
    std::vector<std::string> names = {"PropertyName",
                                      "Barcode:",
                                      "Barcode2:",
                                      "Barcode3:",
                                      "GIFProperty:",
                                      "BSP:",
                                      "NPSP:",
                                      "ArfVersion:",
                                      "ArfStatus:",
                                      "iPindle:",
                                      "Delimiter",
                                      "30000001",
                                      "2000",
                                      "AU",
                                      "1",
                                      "\\",
                                      ";",
                                      ":"};
    std::string all(8192, '\0');
    EXPECT_EQ(pafGetPropertiesId(id, "Properties", all.data(), static_cast<int>(all.size())), 0) << Describe(6406);
    std::istringstream stream(all.c_str());
    for (std::string name; std::getline(stream, name, ';');) names.push_back(name);
    EXPECT_GT(names.size(), 30u);
    return names;
  }

  Workspace workspace{std::vector<std::string>{}};
  RandomText random;
  int id = 0;
};

TEST_F(AustralianTest, CommandsAnswerWhatTheFunctionsAnswer)
{
  const std::string address = "6 Macquarie St Sydney NSW 2000";
  char dpid[64] = {};
  address.copy(dpid, sizeof dpid - 1);
  ASSERT_EQ(pafLookupAddress(id, dpid, sizeof dpid, 0), 0);
  CommandCall lookup("LookupAddress;Id=1;Lenient=True;" + address);
  EXPECT_EQ(lookup.Status(), 0);
  EXPECT_EQ(lookup.Text(), dpid);

  char found[256];
  ASSERT_EQ(pafDpidToAddressId(id, std::atol(dpid), found, sizeof found), 0);
  CommandCall byDpid("DpidToAddress;Dpid=" + std::string(dpid) + ";", 250);
  EXPECT_EQ(byDpid.Text(), found);
  CommandCall byId("LookupByAddressId;Id=1;" + std::string(dpid), 250);
  EXPECT_EQ(byId.Text(), found);

  char lastLine[64] = "Sydney NSW 2000";
  const int status = pafFixLastLineId(id, lastLine, sizeof lastLine);
  CommandCall fixed("FixLastLine;Id=1;Sydney NSW 2000", 63);
  EXPECT_EQ(fixed.Status(), status);
  EXPECT_EQ(fixed.Text(), lastLine);
}

TEST_F(AustralianTest, PropertiesKeepWithinTheirBuffers)
{
  int answered = 0;
  const std::vector<std::string> names = PropertyNames();
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    const std::string name = random.Number(0, 1) == 0
                                 ? random.One(names)
                                 : random.Damaged(random.Parts(names, 2)) + random.Bytes(random.Number(0, 1) * 300);
    if (random.Number(0, 1) == 0) {
      GuardedBuffer value(random.Number(0, 2) == 0 ? random.Bytes(300) : random.Parts(names, 2), 1);
      if (name != "OpenARF") pafSetPropertiesId(id, name.c_str(), value.data());
    }
    const int size = random.Number(1, 300);
    GuardedBuffer out(static_cast<size_t>(size));
    const int status = pafGetPropertiesId(random.Number(0, 4) == 0 ? 0 : id, name.c_str(), out.data(), size);
    ASSERT_TRUE(out.IsTerminated()) << name;
    if (status == 0 && !out.Text().empty()) ++answered;
  }
  EXPECT_GT(answered, kRounds / 20) << "too few of the names were good ones";
}

TEST_F(AustralianTest, CommandsKeepWithinTheirBuffer)
{
  int answered = 0;
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    if (round % 20 == 0) PutInstancesBack();
    const std::string data = random.Damaged(random.Parts(kAddressParts, 5));
    const std::string good = RandomName(random) + "Id=1;" + random.One(kAddressParts);
    CommandCall call(random.Number(0, 1) == 0 ? good : RandomCommand(random) + data, random.Number(-1, 320));
    if (call.Status() == 0 && !call.Text().empty()) ++answered;
  }
  EXPECT_GT(answered, kRounds / 100) << "too few of the commands were good ones";
}

TEST_F(AustralianTest, LongCommandsKeepWithinTheirBuffer)
{
  for (int round = 0; round < 100 && !HasFailure(); ++round) {
    if (round % 20 == 0) PutInstancesBack();
    const std::string data = random.Number(0, 1) == 0 ? random.Bytes(100 * 1024) : random.Parts(kAddressParts, 10000);
    CommandCall(RandomCommand(random) + data, random.Number(0, 1) == 0 ? random.Number(0, 320) : 100 * 1024);
  }
}

TEST_F(AustralianTest, QueriesKeepWithinTheirBuffers)
{
  for (int round = 0; round < kRounds / 10 && !HasFailure(); ++round) {
    for (const ExportedFunction& function : ExportedFunctions()) {
      if (function.run == nullptr || function.name == std::string("pafClosePafId")) continue;
      const std::string text = random.Number(0, 2) == 0 ? random.Bytes(300) : random.Parts(kAddressParts, 6);
      Delivery delivery(function, id, random.Number(0, 320), random.Damaged(text));
      delivery.ExpectUnchangedBehindTheSize();
    }
  }
}

/** Short enough that no request is cut; what has several texts gets one line without separators. */
std::string RandomInput(RandomText& random, const ExportedFunction& function)
{
  const bool isSimple = TakesSeveralTexts(function);
  std::string text = random.Number(0, 4) == 0 ? random.Bytes(60) : random.Parts(kAddressParts, 6);
  text = random.Damaged(text).substr(0, isSimple ? 90 : 200);
  if (isSimple) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
  }
  return text;
}

TEST(FromTheServer, RandomQueriesAnswerAlike)
{
  constexpr int kRoundsThroughServer = 15;
  Twin twin;
  FunctionTable table(twin, PlugIn::kRefuses);
  RandomText random;
  const std::vector<const ExportedFunction*> functions = Callable([](const ExportedFunction&) { return true; });
  for (int round = 0; round < kRoundsThroughServer; ++round) {
    for (const ExportedFunction* function : functions) {
      const std::string name = "random text " + std::to_string(round) + " of " + function->name;
      const int size = random.Number(0, 1) == 0 ? kWhole : random.Number(-1, 320);
      table.Add(*function, {name.c_str(), RandomInput(random, *function)}, size);
    }
  }
  twin.Check();
}

}  // namespace
}  // namespace blackbox
