// Exceptions that a plug-in lets out, from every place where the library calls it: none comes through, the status says
// which kind it was, and nothing stays locked or busy.
#include <gtest/gtest.h>

#include "blackbox/support/fake.h"
#include "blackbox/support/id_functions.h"
#include "blackbox/support/row_name.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

struct Thrown
{
  FakeBehaviour what;
  int status;
};

constexpr Thrown kThrown[] = {{kFakeThrowBadAlloc, PAF_ERR_OUT_OF_MEMORY},
                              {kFakeThrowError, PAF_ERR_PLUGIN_SYSTEM},
                              {kFakeThrowInt, PAF_ERR_PLUGIN_SYSTEM}};

class ThrowingOperationTest : public SessionTest, public testing::WithParamInterface<IdFunction>
{
};

INSTANTIATE_TEST_SUITE_P(Every, ThrowingOperationTest, testing::ValuesIn(IdFunctions()), RowName());

TEST_P(ThrowingOperationTest, BecomesAStatusAndLeavesTheInstanceIdle)
{
  for (const Thrown& thrown : kThrown) {
    fake.Behave(GetParam().operation, thrown.what);
    EXPECT_EQ(GetParam().call(id), GetParam().Failing(thrown.status));
    fake->clearAnswer(GetParam().operation);
    EXPECT_EQ(GetParam().call(id), 0);
  }
  EXPECT_EQ(pafClosePafId(id), 0);
}

class ExceptionsTest : public SessionTest
{
 protected:
  /** The library still opens, serves and closes instances, new and old. */
  void ExpectAlive()
  {
    const int other = Open("DLL:FakeTwo;/other");
    EXPECT_EQ(pafGetFindStatusId(other), 0);
    EXPECT_EQ(pafClosePafId(other), 0);
    EXPECT_EQ(pafGetFindStatusId(id), 0);
  }
};

TEST_F(ExceptionsTest, InTheGettersThatOpeningUses)
{
  for (FakeOperation place : {kFakeDbGetPath, kFakeDbRefCount}) {
    for (const Thrown& thrown : kThrown) {
      fake.Behave(place, thrown.what);
      EXPECT_EQ(pafOpenArfId2(0, "DLL:FakeTwo;/other"), -thrown.status) << fake->operationName(place);
      fake->clearAnswer(place);
      ExpectAlive();
    }
  }
}

TEST_F(ExceptionsTest, WhileAFailedOpenIsCleanedUp)
{
  for (FakeOperation place : {kFakeDbClose, kFakeDbRelease}) {
    for (const Thrown& thrown : kThrown) {
      fake.Answer(kFakeDbOpen, 77, "no");
      fake.Behave(place, thrown.what);
      EXPECT_LT(pafOpenArfId2(0, "DLL:FakeTwo;/other"), 0) << fake->operationName(place);
      fake->clearAnswer(kFakeDbOpen);
      fake->clearAnswer(place);
      ExpectAlive();
    }
  }
}

TEST_F(ExceptionsTest, InTheCallsThatClosingMakes)
{
  for (FakeOperation place : {kFakeGetArfDb, kFakeRelease, kFakeDbRefCount, kFakeDbClose, kFakeDbRelease}) {
    for (const Thrown& thrown : kThrown) {
      const int doomed = Open("DLL:FakeTwo;/doomed");
      fake.Behave(place, thrown.what);
      EXPECT_EQ(pafClosePafId(doomed), thrown.status) << fake->operationName(place);
      fake->clearAnswer(place);
      EXPECT_NE(pafClosePafId(doomed), PAF_ERR_ID_IN_USE) << fake->operationName(place);
      ExpectAlive();
    }
  }
}

TEST_F(ExceptionsTest, InTheDatabaseOfASearcherAtTheVersionGate)
{
  for (FakeOperation place : {kFakeGetArfDb, kFakeDbGetCountry, kFakeGetProperties}) {
    for (const Thrown& thrown : kThrown) {
      fake->setCountry("AU");
      fake.Behave(place, thrown.what);
      EXPECT_EQ(pafBeginAddressSearch(id, "q"), thrown.status) << fake->operationName(place);
      EXPECT_EQ(pafBeginGifConcordance(id, 1, 2, 3, 4, 5, 6), thrown.status) << fake->operationName(place);
      fake->clearAnswer(place);
      ExpectAlive();
    }
  }
}

TEST_F(ExceptionsTest, InTheDelimiterOfDpidToAddress)
{
  for (const Thrown& thrown : kThrown) {
    fake.Behave(kFakeGetProperties, thrown.what);
    char out[8] = "before";
    EXPECT_EQ(pafDpidToAddressId(id, 1, out, sizeof out), thrown.status);
    EXPECT_STREQ(out, "before");
    fake->clearAnswer(kFakeGetProperties);
    ExpectAlive();
  }
}

TEST_F(ExceptionsTest, InTheDescriptionOfAnError)
{
  for (const Thrown& thrown : kThrown) {
    fake.Answer(kFakeGetParsedInput, 12);
    char out[8];
    ASSERT_EQ(pafGetParsedInputId(id, out, sizeof out), 12);
    fake.Behave(kFakeGetErrorDescription, thrown.what);
    EXPECT_EQ(Describe(12), "");
    fake->clearAnswer(kFakeGetErrorDescription);
    EXPECT_EQ(Describe(12), "") << "the error was consumed";
    ExpectAlive();
  }
}

TEST_F(ExceptionsTest, InForceCloseAll)
{
  for (FakeOperation place : {kFakeRelease, kFakeDbClose, kFakeDbRelease}) {
    for (const Thrown& thrown : kThrown) {
      Open("DLL:FakeTwo;/more");
      fake.Behave(place, thrown.what);
      pafForceCloseAll();
      fake->clearAnswer(place);
      const int other = Open("DLL:FakeTwo;/other");
      EXPECT_EQ(pafGetFindStatusId(other), 0) << fake->operationName(place);
    }
  }
}

TEST_F(ExceptionsTest, InCanUnloadNow)
{
  for (const Thrown& thrown : kThrown) {
    fake.Behave(kFakeCanUnloadNow, thrown.what);
    pafUnloadPlugins();
    fake->clearAnswer(kFakeCanUnloadNow);
    ExpectAlive();
  }
}

}  // namespace
}  // namespace blackbox
