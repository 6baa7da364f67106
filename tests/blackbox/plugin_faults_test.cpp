// Plug-ins that are odd in exactly one way. Each suite runs against the folder of fakes that its name says, once with
// the odd library as the Australian plug-in and once under a free name.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include "blackbox/support/fake.h"
#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/session.h"
#include "blackbox/support/workspace.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

struct OddPlugin
{
  const char* library;
  const char* database;  // a name that leads to it
};

class OddTest : public testing::TestWithParam<OddPlugin>
{
 protected:
  const char* Library() const { return GetParam().library; }
  const char* Database() const { return GetParam().database; }
  int TryOpen() const { return pafOpenArfId2(0, Database()); }

  /** Every failed open gives its Id back and leaves the library able to answer. */
  void ExpectOpenFails(int status)
  {
    for (int time = 0; time < 3; ++time) {
      int id = 0;
      EXPECT_EQ(pafOpenArfId(&id, 0, Database()), status);
      EXPECT_EQ(id, 1);
      EXPECT_EQ(pafClosePafId(1), PAF_ERR_INVALID_ID);
    }
  }

  /** An entry point is missing: the text says which, and the library is unloaded again. */
  void ExpectMissing(const std::string& entryPoint)
  {
    ExpectOpenFails(PAF_ERR_ENTRY_POINT_MISSING);
    EXPECT_FALSE(IsLibraryLoaded(Library()));
    EXPECT_EQ(TryOpen(), -PAF_ERR_ENTRY_POINT_MISSING);
    EXPECT_EQ(Describe(PAF_ERR_ENTRY_POINT_MISSING), entryPoint + " function doesn't exist in " + Library());
    EXPECT_EQ(Describe(PAF_ERR_ENTRY_POINT_MISSING), "");
  }

  Workspace workspace{std::vector<std::string>{}};
};

#define ODD_SUITE(Name)       \
  class Name : public OddTest \
  {                           \
  };                          \
  INSTANTIATE_TEST_SUITE_P(   \
      As, Name,               \
      testing::Values(OddPlugin{"libqxarfau.so", "AU./odd"}, OddPlugin{"libfakeodd.so", "DLL:FakeOdd;/odd"}))

ODD_SUITE(LacksGetDb);
TEST_P(LacksGetDb, IsNoPlugin)
{
  ExpectMissing("GetDb");
}

ODD_SUITE(LacksGetSearcher);
TEST_P(LacksGetSearcher, IsNoPlugin)
{
  ExpectMissing("GetSearcher");
}

ODD_SUITE(LacksCanUnloadNow);
TEST_P(LacksCanUnloadNow, IsNoPlugin)
{
  ExpectMissing("CanUnloadNow");
}

ODD_SUITE(LacksGetOtherProperties);
TEST_P(LacksGetOtherProperties, ServesInstances)
{
  Fake fake(Library());
  const int id = Open(Database());
  EXPECT_EQ(pafGetFindStatusId(id), 0);
  EXPECT_EQ(pafClosePafId(id), 0);
}

ODD_SUITE(NoLibrary);
TEST_P(NoLibrary, FailsWithTheLoadersWordsAndTheFileName)
{
  ASSERT_EQ(dlopen(Library(), RTLD_LAZY), nullptr);
  const std::string loaderText = dlerror();
  ASSERT_EQ(loaderText.find("No such file"), std::string::npos) << "a file is there, but no library: " << loaderText;
  EXPECT_EQ(TryOpen(), -PAF_ERR_LIBRARY_NOT_LOADED);
  const std::string withName = loaderText + ". " + Library();
  EXPECT_EQ(Describe(PAF_ERR_LIBRARY_NOT_LOADED), withName.size() <= 254 ? withName : loaderText.substr(0, 254));
  EXPECT_EQ(Describe(PAF_ERR_LIBRARY_NOT_LOADED), "");
  ExpectOpenFails(PAF_ERR_LIBRARY_NOT_LOADED);
}

ODD_SUITE(NullDb);
TEST_P(NullDb, GivesNoDatabaseObject)
{
  Fake fake(Library());
  ExpectOpenFails(PAF_ERR_PLUGIN_MEMORY);
  EXPECT_EQ(Describe(PAF_ERR_PLUGIN_MEMORY), "ERR_QXARF_OUTOFMEMORY");
  EXPECT_EQ(fake.Sequence(), "GetDb GetDb GetDb ");
  fake->clearAnswer(kFakeGetDb);
  EXPECT_EQ(pafClosePafId(Open(Database())), 0);
}

ODD_SUITE(NullSearcher);
TEST_P(NullSearcher, ClosesTheDatabaseAgain)
{
  Fake fake(Library());
  EXPECT_EQ(TryOpen(), -PAF_ERR_OUT_OF_MEMORY);
  EXPECT_EQ(fake.Sequence(), "GetDb DbOpen GetSearcher DbClose DbRelease ");
  ExpectOpenFails(PAF_ERR_OUT_OF_MEMORY);
  EXPECT_EQ(fake->counter(kFakeLiveDbs), 0);
  fake->clearAnswer(kFakeGetSearcher);
  EXPECT_EQ(pafClosePafId(Open(Database())), 0);
}

ODD_SUITE(OpenFails);
TEST_P(OpenFails, PassesStatusAndTextOn)
{
  Fake fake(Library());
  EXPECT_EQ(TryOpen(), -77);
  EXPECT_EQ(Describe(77), "the fake database is closed today");
  EXPECT_EQ(Describe(77), "");
  EXPECT_EQ(fake.Sequence(), "GetDb DbOpen DbClose DbRelease ");
  ExpectOpenFails(77);
  EXPECT_EQ(fake->counter(kFakeLiveDbs), 0);
}

ODD_SUITE(FillsBuffers);
TEST_P(FillsBuffers, NeverWritesOutsideThem)
{
  Fake fake(Library());
  fake->setCountry("XX");
  const int id = Open(Database());
  GuardedBuffer lookup("address", 2048);
  EXPECT_EQ(pafLookupAddress(id, lookup.data(), 2048, 1), 0);
  EXPECT_EQ(lookup.Text(), std::string(2047, 'x'));
  GuardedBuffer lastLine("line", 2048);
  EXPECT_EQ(pafFixLastLineId(id, lastLine.data(), 2048), 0);
  EXPECT_EQ(lastLine.Text(), std::string(511, 'x'));
  GuardedBuffer partial("partial", 2048);
  EXPECT_EQ(pafValidatePartialAddressId(id, partial.data(), 2048), 0);
  EXPECT_EQ(partial.Text(), std::string(9, 'x'));
  GuardedBuffer address(1024);
  EXPECT_EQ(pafDpidToAddressId(id, 1, address.data(), 1024), 0);
  EXPECT_EQ(address.Text(), std::string(1023, 'x'));
  EXPECT_EQ(fake.Last(kFakeGetAddress).arguments.at(0), "xxxxxxx1") << "the delimiter is the first character";
  fake.Behave(kFakeSetGeographicalCodes, kFakeFill, 12);
  EXPECT_EQ(pafSetGeographicalCodesId(id, "codes"), 12);
  EXPECT_EQ(Describe(12), std::string(255, 'x'));
  EXPECT_EQ(pafClosePafId(id), 0);
}

ODD_SUITE(RefusesUnload);
TEST_P(RefusesUnload, StaysLoadedAndUsable)
{
  {
    Fake fake(Library());
    EXPECT_EQ(pafClosePafId(Open(Database())), 0);
    EXPECT_EQ(pafUnloadPlugins(), 0);
    EXPECT_EQ(fake.Count(kFakeCanUnloadNow), 1u);
  }
  EXPECT_TRUE(IsLibraryLoaded(Library()));
  EXPECT_EQ(pafClosePafId(Open(Database())), 0);
}

/** What the library answers when the plug-in throws. */
class ThrowTest : public OddTest
{
 protected:
  void ExpectEveryOpenGivesUp(int status, FakeOperation place)
  {
    Fake fake(Library());
    ExpectOpenFails(status);
    EXPECT_EQ(fake.Count(place), 3u);
    fake->clearAnswer(place);
    const int id = Open(Database());
    EXPECT_EQ(id, 1) << "no Id and no lock was lost";
    EXPECT_EQ(pafGetFindStatusId(id), 0);
    EXPECT_EQ(pafClosePafId(id), 0);
  }

  void ExpectOperationGivesUp(int status)
  {
    Fake fake(Library());
    const int id = Open(Database());
    for (int time = 0; time < 3; ++time) {
      GuardedBuffer text("1 High St", 32);
      const std::string before = text.Bytes();
      EXPECT_EQ(pafLookupAddress(id, text.data(), 32, 1), status);
      EXPECT_EQ(text.Bytes(), before);
    }
    EXPECT_EQ(pafGetFindStatusId(id), 0);
    EXPECT_EQ(pafClosePafId(id), 0);
  }
};

#define THROW_SUITE(Name)       \
  class Name : public ThrowTest \
  {                             \
  };                            \
  INSTANTIATE_TEST_SUITE_P(     \
      As, Name,                 \
      testing::Values(OddPlugin{"libqxarfau.so", "AU./odd"}, OddPlugin{"libfakeodd.so", "DLL:FakeOdd;/odd"}))

THROW_SUITE(ThrowsBadAllocInGetDb);
TEST_P(ThrowsBadAllocInGetDb, EveryOpenGivesUp)
{
  ExpectEveryOpenGivesUp(PAF_ERR_OUT_OF_MEMORY, kFakeGetDb);
}

THROW_SUITE(ThrowsErrorInGetDb);
TEST_P(ThrowsErrorInGetDb, EveryOpenGivesUp)
{
  ExpectEveryOpenGivesUp(PAF_ERR_PLUGIN_SYSTEM, kFakeGetDb);
}

THROW_SUITE(ThrowsBadAllocInOpen);
TEST_P(ThrowsBadAllocInOpen, EveryOpenGivesUp)
{
  ExpectEveryOpenGivesUp(PAF_ERR_OUT_OF_MEMORY, kFakeDbOpen);
}

THROW_SUITE(ThrowsErrorInOpen);
TEST_P(ThrowsErrorInOpen, EveryOpenGivesUp)
{
  ExpectEveryOpenGivesUp(PAF_ERR_PLUGIN_SYSTEM, kFakeDbOpen);
}

THROW_SUITE(ThrowsBadAllocInGetSearcher);
TEST_P(ThrowsBadAllocInGetSearcher, EveryOpenGivesUp)
{
  ExpectEveryOpenGivesUp(PAF_ERR_OUT_OF_MEMORY, kFakeGetSearcher);
}

THROW_SUITE(ThrowsErrorInGetSearcher);
TEST_P(ThrowsErrorInGetSearcher, EveryOpenGivesUp)
{
  ExpectEveryOpenGivesUp(PAF_ERR_PLUGIN_SYSTEM, kFakeGetSearcher);
}

THROW_SUITE(ThrowsBadAllocInOperation);
TEST_P(ThrowsBadAllocInOperation, GivesUpAndGoesOn)
{
  ExpectOperationGivesUp(PAF_ERR_OUT_OF_MEMORY);
}

THROW_SUITE(ThrowsErrorInOperation);
TEST_P(ThrowsErrorInOperation, GivesUpAndGoesOn)
{
  ExpectOperationGivesUp(PAF_ERR_PLUGIN_SYSTEM);
}

}  // namespace
}  // namespace blackbox
