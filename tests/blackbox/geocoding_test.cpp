// The optional geocoding library during an update of the databases. Each row of a table runs against the folder of
// fakes that holds its kind of library.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>

#include "blackbox/support/fake.h"
#include "blackbox/support/row_name.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

constexpr const char* kLibrary = "libqxlumo.so";

struct Kind
{
  const char* name;
};

class GeocodingTest : public testing::TestWithParam<Kind>
{
 protected:
  void SetUp() override
  {
    workspace.Configure({"ARF/AU/a=/old"});
    id = Open("AU.a");
  }

  /** Moves the database and updates. */
  void ExpectUpdate()
  {
    workspace.Configure({"ARF/AU/a=/new" + std::to_string(++updates)});
    int databases = -5;
    int instances = -5;
    EXPECT_EQ(pafUpdateArfs(&databases, &instances), 0);
    EXPECT_EQ(databases, 1);
    EXPECT_EQ(instances, 1);
    EXPECT_EQ(fake->refCount(("/new" + std::to_string(updates)).c_str()), 1);
  }

  /** The events that concern the geocoding library, and the openings of databases, in their order. */
  std::vector<std::string> Events() const
  {
    std::vector<std::string> events;
    std::ifstream file(workspace.Root() + "/log");
    for (std::string line; std::getline(file, line);) {
      if (line.find(kLibrary) == 0) events.push_back(line.substr(std::string(kLibrary).size() + 1));
      if (line.find("DbOpen") != std::string::npos) events.push_back(line.substr(line.find("DbOpen")));
    }
    return events;
  }

  Workspace workspace{std::vector<std::string>{}};
  bool logging = setenv("QXPAF_FAKE_LOG", (workspace.Root() + "/log").c_str(), 1) == 0;
  Fake fake{"libqxarfau.so"};
  int id = 0;
  int updates = 0;
};

class GeocodingThere : public GeocodingTest
{
};

INSTANTIATE_TEST_SUITE_P(Library, GeocodingThere, testing::Values(Kind{"Whole"}), RowName());

TEST_P(GeocodingThere, LetsGoOfItsFilesBeforeTheDatabasesAreOpenedAndIsUnloadedEachTime)
{
  std::vector<std::string> expected{"DbOpen /old"};
  for (int round = 1; round <= 3; ++round) {
    ExpectUpdate();
    EXPECT_FALSE(IsLibraryLoaded(kLibrary));
    for (const std::string event : {"load", "qxgUnloadGeocodeFiles 0", "unload"}) expected.push_back(event);
    expected.push_back("DbOpen /new" + std::to_string(round));
  }
  EXPECT_EQ(Events(), expected);
}

TEST_P(GeocodingThere, LetsGoOfItsFilesAlsoWhenNoDatabaseMoved)
{
  EXPECT_EQ(pafUpdateArfs(nullptr, nullptr), 0);
  ASSERT_EQ(pafClosePafId(id), 0);
  EXPECT_EQ(pafUpdateArfs(nullptr, nullptr), 0);
  const std::vector<std::string> expected{
      "DbOpen /old", "load", "qxgUnloadGeocodeFiles 0", "unload", "load", "qxgUnloadGeocodeFiles 0", "unload"};
  EXPECT_EQ(Events(), expected);
}

TEST_P(GeocodingThere, OfTheApplicationStaysLoaded)
{
  void* const handle = dlopen(kLibrary, RTLD_LAZY);
  ASSERT_NE(handle, nullptr) << dlerror();
  ExpectUpdate();
  EXPECT_TRUE(IsLibraryLoaded(kLibrary));
  dlclose(handle);
  EXPECT_FALSE(IsLibraryLoaded(kLibrary)) << "the update kept it";
  EXPECT_EQ(Events().back(), "unload");
}

TEST_P(GeocodingThere, IsLeftAloneInRemoteMode)
{
  ASSERT_EQ(pafSetPropertiesId(0, "UseSockets", "True"), 0);
  EXPECT_EQ(pafUpdateArfs(nullptr, nullptr), PAF_ERR_NOT_IMPLEMENTED);
  EXPECT_EQ(Events(), std::vector<std::string>{"DbOpen /old"});
}

class GeocodingUseless : public GeocodingTest
{
};

INSTANTIATE_TEST_SUITE_P(Library, GeocodingUseless,
                         testing::Values(Kind{"None"}, Kind{"NoLibrary"}, Kind{"LacksFirst"}, Kind{"LacksMiddle"},
                                         Kind{"LacksLast"}),
                         RowName());

TEST_P(GeocodingUseless, ChangesNothing)
{
  ExpectUpdate();
  ExpectUpdate();
  EXPECT_FALSE(IsLibraryLoaded(kLibrary));
  const bool loads = std::string(GetParam().name).find("Lacks") == 0;
  std::vector<std::string> expected{"DbOpen /old"};
  for (const char* const open : {"DbOpen /new1", "DbOpen /new2"}) {
    if (loads) expected.insert(expected.end(), {"load", "unload"});
    expected.push_back(open);
  }
  EXPECT_EQ(Events(), expected);
  for (const int status : {4470, 4471}) EXPECT_EQ(Describe(status), "") << "no error is left behind";
}

}  // namespace
}  // namespace blackbox
