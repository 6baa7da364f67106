// The default plug-in is not there, or has nothing to say without a database. One suite for each folder of fakes.
#include <gtest/gtest.h>

#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/properties.h"
#include "blackbox/support/session.h"
#include "blackbox/support/workspace.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

class WithoutDefaultPlugin : public testing::Test
{
 protected:
  void SetUp() override { workspace.MakeDatabase("paf", "DATABASENAME=AU\n"); }

  /** Every name that goes to the default plug-in fails with the status; everything else is as ever. */
  void ExpectFails(int status)
  {
    for (const char* name :
         {"OutputFields", "PafEngineVersion", "PafLibVersion", "PafVersionInfo", "SortPlanDate", "Barcode:1",
          "Barcode2:1", "Barcode3:1", "GIFProperty:x", "ArfVersion:AU.one", "ArfStatus:AU.one"}) {
      EXPECT_EQ(Read(0, name), (Answer{status, ""})) << name;
      EXPECT_EQ(ReadDefault(name), (Answer{status, ""})) << name;
    }
    EXPECT_EQ(Read(0, "ArfLibVersionAu", 1), (Answer{0, ""}));
    EXPECT_EQ(Read(0, "ArfStatus:AU.nowhere"), (Answer{0, "ARF Not Registered"}));
    EXPECT_EQ(Read(0, "ArfVersion:AU.nowhere"), (Answer{0, ""}));
    EXPECT_EQ(Read(0, "PropertyName12"), (Answer{0, "OutputFields"}));
    EXPECT_EQ(Read(0, "anything"), (Answer{0, ""}));
    EXPECT_EQ(Read(0, "ArfLibVersion"), (Answer{0, "5.10.246.2"}));
  }

  Workspace workspace{{"PafDir=@/paf", "ARF/AU/one=/one"}};
};

using PluginWithoutProperties = WithoutDefaultPlugin;

TEST_F(PluginWithoutProperties, FailsForWhatItWouldAnswer)
{
  ExpectFails(PAF_ERR_ENTRY_POINT_MISSING);
}

TEST_F(PluginWithoutProperties, ServesInstancesAllTheSame)
{
  ASSERT_EQ(pafOpenPaf(), 0);
  EXPECT_EQ(pafGet_FindStatus(), 0);
  EXPECT_EQ(ReadDefault("CountryCode"), (Answer{0, "AU"}));
  EXPECT_EQ(ReadDefault("PafLibVersion").status, 0) << "the searcher answers now";
  EXPECT_EQ(pafClosePaf(), 0);
}

using PluginThatIsNone = WithoutDefaultPlugin;

TEST_F(PluginThatIsNone, FailsForWhatItWouldAnswer)
{
  ExpectFails(PAF_ERR_LIBRARY_NOT_LOADED);
}

TEST_F(PluginThatIsNone, OtherPluginsHaveNoVersionEither)
{
  for (const char* country : {"Nz", "Us", "Uk"}) {
    EXPECT_EQ(Read(0, std::string("ArfLibVersion") + country, 1), (Answer{0, ""})) << country;
  }
}

TEST_F(PluginThatIsNone, OpensNoDefaultDatabaseAndSaysWhy)
{
  EXPECT_EQ(pafOpenPaf(), PAF_ERR_LIBRARY_NOT_LOADED);
  EXPECT_NE(Describe(PAF_ERR_LIBRARY_NOT_LOADED).find("libqxarfau.so"), std::string::npos);
  GuardedBuffer out(255);
  EXPECT_EQ(pafGetAddress("q", out.data()), PAF_ERR_NOT_OPEN);
  EXPECT_TRUE(out.IsUntouched());
  EXPECT_EQ(Property(0, "ClientCount"), "0");
}

}  // namespace
}  // namespace blackbox
