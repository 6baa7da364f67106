// One database, many instances: sharing by path, counting, closing with the last user, remembered names.
#include <gtest/gtest.h>

#include "blackbox/support/country_fakes.h"
#include "blackbox/support/session.h"
#include "blackbox/support/workspace.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

class DatabaseSharingTest : public testing::Test
{
 protected:
  void Close(int id) { EXPECT_EQ(pafClosePafId(id), 0); }

  Workspace workspace;
  CountryFakes fakes;
  Fake& au = fakes["libqxarfau.so"];
};

TEST_F(DatabaseSharingTest, InstancesOnOnePathShareOneDatabase)
{
  workspace.Configure({"ARF/AU/one=/shared", "ARF/AU/two=/shared;OpenArf=Ram"});
  const int first = Open("AU.one");
  EXPECT_EQ(au->refCount("/shared"), 1);
  const int second = Open("AU.two", 3);
  const int third = Open("AU./shared");
  EXPECT_EQ(au->refCount("/shared"), 3);
  EXPECT_EQ(au->counter(kFakeOpens), 1) << "neither another name nor another mode opens it again";
  EXPECT_EQ(au.Count(kFakeGetDb), 1u);
  EXPECT_EQ(au->counter(kFakeLiveSearchers), 3);

  Close(first);
  EXPECT_EQ(au->refCount("/shared"), 2);
  Close(third);
  EXPECT_EQ(au->refCount("/shared"), 1);
  EXPECT_EQ(au->counter(kFakeCloses), 0);
  EXPECT_EQ(pafGetFindStatusId(second), 0);
  au->clearCalls();
  Close(second);
  EXPECT_EQ(au.Sequence(), "GetArfDb Release DbClose DbRelease ");
  EXPECT_EQ(au->counter(kFakeLiveDbs), 0);
}

TEST_F(DatabaseSharingTest, PathsAreComparedExactly)
{
  workspace.Configure({});
  const std::vector<std::string> paths = {"/shared", "/Shared", "/shared/", "//shared", "/shared/.", "/share"};
  for (const std::string& path : paths) Open("AU." + path);
  EXPECT_EQ(au->counter(kFakeOpens), static_cast<long>(paths.size()));
  for (const std::string& path : paths) EXPECT_EQ(au->refCount(path.c_str()), 1) << path;
}

TEST_F(DatabaseSharingTest, APathIsSharedAcrossCountries)
{
  workspace.Configure({});
  Open("NZ./shared");
  Open("AU./shared");
  EXPECT_EQ(au->counter(kFakeOpens), 0);
  EXPECT_EQ(fakes["libqxarfnz.so"]->refCount("/shared"), 2);
  EXPECT_EQ(fakes["libqxarfnz.so"]->counter(kFakeLiveSearchers), 2);
}

TEST_F(DatabaseSharingTest, ADatabaseOfANamedPluginIsSharedByItsReportedPath)
{
  workspace.Configure({});
  Fake& one = fakes["libfakeone.so"];
  Open("DLL:FakeOne;/shared");
  Open("DLL:FakeOne;/shared");
  EXPECT_EQ(one->counter(kFakeOpens), 2) << "its path is not the whole name";
  one->setReportedPath("DLL:FakeOne;/shared");
  Open("DLL:FakeOne;/shared");
  EXPECT_EQ(one->counter(kFakeOpens), 2) << "now it is";
  one->setReportedPath("/elsewhere");
  Open("AU./elsewhere");
  EXPECT_EQ(one->counter(kFakeOpens), 2);
  EXPECT_EQ(au->counter(kFakeOpens), 0);
}

TEST_F(DatabaseSharingTest, TheReportedPathDecides)
{
  workspace.Configure({});
  Open("AU./given");
  au->setReportedPath("/reported");
  Open("AU./given");
  EXPECT_EQ(au->counter(kFakeOpens), 2);
  Open("AU./reported");
  EXPECT_EQ(au->counter(kFakeOpens), 2);
}

TEST_F(DatabaseSharingTest, AClosedDatabaseIsOpenedAfresh)
{
  workspace.Configure({});
  for (int time = 1; time <= 3; ++time) {
    const int id = Open("AU./again");
    EXPECT_EQ(au->counter(kFakeOpens), time);
    Close(id);
    EXPECT_EQ(au->counter(kFakeDbReleases), time);
  }
}

TEST_F(DatabaseSharingTest, ClosingOneDatabaseLeavesTheOthers)
{
  workspace.Configure({});
  const int first = Open("AU./1");
  const int second = Open("NZ./2");
  const int third = Open("AU./3");
  Close(second);
  EXPECT_EQ(fakes["libqxarfnz.so"]->counter(kFakeLiveDbs), 0);
  const int fourth = Open("UK./4");
  EXPECT_EQ(au->refCount("/1"), 1);
  EXPECT_EQ(au->refCount("/3"), 1);
  EXPECT_EQ(fakes["libqxarfuk.so"]->refCount("/4"), 1);
  for (int id : {first, third, fourth}) Close(id);
  EXPECT_EQ(fakes.Counter(kFakeLiveDbs), 0);
}

TEST_F(DatabaseSharingTest, ManyDatabasesOpenedAndClosedInAnyOrder)
{
  workspace.Configure({});
  constexpr int kMany = 200;
  for (int i = 0; i < kMany; ++i) ASSERT_EQ(Open("AU./db" + std::to_string(i)), i + 1);
  for (int i = 0; i < kMany; i += 2) Close(i + 1);
  EXPECT_EQ(au->counter(kFakeLiveDbs), kMany / 2);
  for (int i = 0; i < kMany; i += 2) ASSERT_EQ(Open("AU./other" + std::to_string(i)), i + 1);
  for (int i = kMany; i >= 1; --i) Close(i);
  EXPECT_EQ(au->counter(kFakeLiveDbs), 0);
}

TEST_F(DatabaseSharingTest, AFailedOpenIsClosedAndReleasedAndLeavesNothing)
{
  workspace.Configure({});
  au.Answer(kFakeDbOpen, 77, "no");
  EXPECT_EQ(pafOpenArfId2(0, "AU./bad"), -77);
  EXPECT_EQ(au.Sequence(), "GetDb DbOpen DbClose DbRelease ");
  EXPECT_EQ(au->counter(kFakeLiveDbs), 0);
  au->clearAnswer(kFakeDbOpen);
  Close(Open("AU./bad"));
}

TEST_F(DatabaseSharingTest, AFailedSearcherDropsItsReferenceOnly)
{
  workspace.Configure({});
  const int holder = Open("AU./shared");
  au.Behave(kFakeGetSearcher, kFakeAnswerNull);
  EXPECT_EQ(pafOpenArfId2(0, "AU./shared"), -PAF_ERR_OUT_OF_MEMORY);
  EXPECT_EQ(au->refCount("/shared"), 1);
  EXPECT_EQ(pafOpenArfId2(0, "AU./alone"), -PAF_ERR_OUT_OF_MEMORY);
  EXPECT_EQ(au->refCount("/alone"), -1) << "its only reference was this one";
  EXPECT_EQ(au->counter(kFakeDbReleases), 1);
  au->clearAnswer(kFakeGetSearcher);
  Close(holder);
  EXPECT_EQ(au->counter(kFakeLiveDbs), 0);
}

TEST_F(DatabaseSharingTest, AResolvedNameIsRememberedWithItsCase)
{
  workspace.Configure({"ARF/AU/x=/first;OpenArf=Ram"});
  Close(Open("AU.x"));
  workspace.Configure({"ARF/AU/x=/second;OpenArf=Map"});
  fakes.ClearCalls();
  Close(Open("AU.x"));
  EXPECT_EQ(fakes.TheOpen().path, "/first");
  EXPECT_EQ(fakes.TheOpen().mode, 2);
  for (const char* other : {"au.x", "AU.X", "AUS.x"}) {
    fakes.ClearCalls();
    Close(Open(other));
    EXPECT_EQ(fakes.TheOpen().path, "/second") << other;
    EXPECT_EQ(fakes.TheOpen().mode, 3) << other;
  }
  workspace.RemoveConfiguration();
  fakes.ClearCalls();
  Close(Open("AU.x", 1));
  EXPECT_EQ(fakes.TheOpen().path, "/first") << "without any file";
}

TEST_F(DatabaseSharingTest, AFailedNameIsNotRemembered)
{
  workspace.Configure({});
  EXPECT_EQ(pafOpenArfId2(0, "AU.late"), -PAF_ERR_NOT_CONFIGURED);
  workspace.Configure({"ARF/AU/late=/now"});
  Close(Open("AU.late"));
  EXPECT_EQ(fakes.TheOpen().path, "/now");
}

TEST_F(DatabaseSharingTest, AWildCardNameIsRememberedToo)
{
  workspace.Configure({"ARF/AU=/wild/*"});
  Close(Open("AU.x"));
  workspace.Configure({"ARF/AU/x=/own"});
  fakes.ClearCalls();
  Close(Open("AU.x"));
  EXPECT_EQ(fakes.TheOpen().path, "/wild/x");
}

TEST_F(DatabaseSharingTest, BaseAndDefaultDirectoriesAreRemembered)
{
  workspace.MakeDatabase("old", "DATABASENAME=AU\n");
  workspace.MakeDatabase("new", "DATABASENAME=AU\n");
  workspace.Configure({"ArfBaseDir=/old", "PafDir=@/old"});
  Close(Open("AU.sub/"));
  Close(Open(""));
  workspace.Configure({"ArfBaseDir=/new", "PafDir=@/new"});
  fakes.ClearCalls();
  Close(Open("AU.other/"));
  EXPECT_EQ(fakes.TheOpen().path, "/old/other/");
  fakes.ClearCalls();
  Close(Open(""));
  EXPECT_EQ(fakes.TheOpen().path, workspace.Root() + "/old");
}

TEST_F(DatabaseSharingTest, OtherEditsTakeEffectAtTheNextLookup)
{
  workspace.Configure({"ARF/AU/x=/p", "OpenPaf=Ram"});
  Close(Open("AU.x"));
  workspace.Configure({"ARF/AU/x=/p", "OpenPaf=Map"});
  fakes.ClearCalls();
  Close(Open("AU.x"));
  EXPECT_EQ(fakes.TheOpen().mode, 3);
}

}  // namespace
}  // namespace blackbox
