/** Each row of a table runs against the folder of fakes that holds its kind of library (see CMakeLists.txt). */
#include "plugins/geocoding_library.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

#include "api/library.h"
#include "support/guarded_buffer.h"
#include "support/temp_dir.h"

namespace {

using namespace qxpaf;

constexpr const char* kFile = "libqxlumo.so";

bool IsLoaded()
{
  void* const handle = dlopen(kFile, RTLD_LAZY | RTLD_NOLOAD);
  if (handle != nullptr) dlclose(handle);
  return handle != nullptr;
}

struct Kind
{
  const char* name;
};

std::string KindName(const testing::TestParamInfo<Kind>& row)
{
  return row.param.name;
}

class Geocoding : public testing::TestWithParam<Kind>
{
 protected:
  /** What happened to the library, one line an event. */
  std::string Events() const
  {
    std::ifstream file(dir_.Path("log"));
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
  }

  LumoWrapper library_;

 private:
  test_support::TempDir dir_;
  test_support::EnvValue log_{"QXPAF_FAKE_LOG", dir_.Path("log")};
};

class GeocodingThere : public Geocoding
{
};

INSTANTIATE_TEST_SUITE_P(Library, GeocodingThere, testing::Values(Kind{"Whole"}), KindName);

TEST_P(GeocodingThere, IsLoadedOnceAndUnloaded)
{
  ASSERT_FALSE(IsLoaded());
  EXPECT_EQ(0, library_.Load(nullptr, 0));
  EXPECT_EQ(0, library_.Load(nullptr, 0));
  EXPECT_TRUE(IsLoaded());
  library_.Unload();
  EXPECT_FALSE(IsLoaded()) << "the second Load loaded it another time";
  EXPECT_EQ("libqxlumo.so load\nlibqxlumo.so unload\n", Events());
}

TEST_P(GeocodingThere, IsLoadedAgainAfterItWasUnloaded)
{
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(0, library_.Load(nullptr, 0));
    EXPECT_TRUE(IsLoaded());
    library_.Unload();
    EXPECT_FALSE(IsLoaded());
  }
}

TEST_P(GeocodingThere, UnloadingWhatIsNotLoadedDoesNothing)
{
  library_.Unload();
  ASSERT_EQ(0, library_.Load(nullptr, 0));
  library_.Unload();
  library_.Unload();
  EXPECT_EQ("libqxlumo.so load\nlibqxlumo.so unload\n", Events());
}

TEST_P(GeocodingThere, LetsGoOfAllFilesWithZero)
{
  ASSERT_EQ(0, library_.Load(nullptr, 0));
  library_.UnloadGeocodeFiles();
  EXPECT_EQ("libqxlumo.so load\nlibqxlumo.so qxgUnloadGeocodeFiles 0\n", Events());
  library_.Unload();
}

TEST_P(GeocodingThere, LoadingClearsTheErrorText)
{
  for (int time = 0; time < 2; ++time) {  // the second one finds it loaded
    test_support::GuardedBuffer text(8);
    EXPECT_EQ(0, library_.Load(text.Data(), text.Size()));
    EXPECT_STREQ("", text.Data());
    EXPECT_TRUE(text.Intact());
  }
  library_.Unload();
}

TEST_P(GeocodingThere, AnErrorTextOfNoBytesIsLeftAlone)
{
  char text[] = "before";
  EXPECT_EQ(0, library_.Load(text, 0));
  EXPECT_STREQ("before", text);
  library_.Unload();
}

TEST_P(GeocodingThere, OfAnotherUserStaysLoaded)
{
  void* const handle = dlopen(kFile, RTLD_LAZY);
  ASSERT_NE(nullptr, handle) << dlerror();
  ASSERT_EQ(0, library_.Load(nullptr, 0));
  library_.Unload();
  EXPECT_TRUE(IsLoaded());
  dlclose(handle);
  EXPECT_FALSE(IsLoaded());
}

TEST_P(GeocodingThere, StaysLoadedWhenTheProcessEnds)
{
  ASSERT_EQ(0, library_.Load(nullptr, 0));
  SetProcessDetach();
  library_.Unload();
  EXPECT_TRUE(IsLoaded());
  EXPECT_EQ("libqxlumo.so load\n", Events());
}

TEST_P(GeocodingThere, StaysLoadedAfterTheShutDownOfThisLibrary)
{
  EXPECT_EXIT(
      {
        const bool loaded = library_.Load(nullptr, 0) == 0;
        FinaliseLibrary();
        library_.Unload();
        std::_Exit(loaded && IsLoaded() ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

class GeocodingIncomplete : public Geocoding
{
};

INSTANTIATE_TEST_SUITE_P(Library, GeocodingIncomplete,
                         testing::Values(Kind{"LacksFirst"}, Kind{"LacksMiddle"}, Kind{"LacksLast"}), KindName);

TEST_P(GeocodingIncomplete, IsUnloadedAgain)
{
  for (int time = 0; time < 2; ++time) {
    test_support::GuardedBuffer text(256);
    EXPECT_EQ(4471, library_.Load(text.Data(), text.Size()));
    EXPECT_STREQ("", text.Data());
    EXPECT_FALSE(IsLoaded());
  }
  EXPECT_EQ(4471, library_.Load(nullptr, 0));
  const std::string once = "libqxlumo.so load\nlibqxlumo.so unload\n";
  EXPECT_EQ(once + once + once, Events());
}

TEST_P(GeocodingIncomplete, StaysLoadedWhenTheProcessEnds)
{
  SetProcessDetach();
  EXPECT_EQ(4471, library_.Load(nullptr, 0));
  EXPECT_TRUE(IsLoaded());
}

class GeocodingMissing : public Geocoding
{
 protected:
  /** The loader's words for the same fault. */
  static std::string LoaderText()
  {
    EXPECT_EQ(nullptr, dlopen(kFile, RTLD_LAZY));
    return dlerror();
  }
};

INSTANTIATE_TEST_SUITE_P(Library, GeocodingMissing, testing::Values(Kind{"None"}, Kind{"NoLibrary"}), KindName);

TEST_P(GeocodingMissing, TellsTheLoadersWordsAndTheNameAsFarAsEachFitsWhole)
{
  const std::string words = LoaderText();
  const std::string all = words + " qxlumo";
  ASSERT_LT(all.size(), 255U);
  const struct
  {
    std::size_t size;
    std::string text;
  } kRows[] = {{1, ""},
               {2, ""},
               {words.size(), ""},
               {words.size() + 1, words},
               {words.size() + 6, words},
               {words.size() + 7, words},
               {words.size() + 8, all},
               {words.size() + 9, all},
               {255, all},
               {1000, all}};
  for (const auto& row : kRows) {
    test_support::GuardedBuffer text(row.size);
    EXPECT_EQ(4470, library_.Load(text.Data(), row.size));
    EXPECT_EQ(row.text, std::string(text.Data(), strnlen(text.Data(), row.size))) << row.size << " bytes";
    EXPECT_TRUE(text.Intact());
  }
}

TEST_P(GeocodingMissing, WritesNothingWhereThereIsNoRoom)
{
  char text[] = "before";
  EXPECT_EQ(4470, library_.Load(text, 0));
  EXPECT_STREQ("before", text);
  EXPECT_EQ(4470, library_.Load(nullptr, 255));
  EXPECT_EQ(4470, library_.Load(nullptr, 0));
}

TEST_P(GeocodingMissing, NothingIsThereToUnload)
{
  EXPECT_EQ(4470, library_.Load(nullptr, 0));
  library_.Unload();
  EXPECT_FALSE(IsLoaded());
}

}  // namespace
