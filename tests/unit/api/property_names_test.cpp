#include "api/property_names.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

#include "errors/thread_data.h"
#include "qxpaf/paf.h"
#include "support/guarded_buffer.h"
#include "unit/api/stand_in.h"

namespace {

using namespace qxpaf;
using test_support::GuardedBuffer;

constexpr const char* kNames[] = {
    "OpenARF",          "ClientCount",     "PafMachine",      "CountryCode", "ArfLibVersion", "ArfLibVersionAu",
    "ArfLibVersionNz",  "ArfLibVersionUs", "ArfLibVersionUk", "ARFs",        "DefaultArf",    "OutputFields",
    "PafEngineVersion", "PafLibVersion",   "PafVersionInfo",  "SortPlanDate"};

const std::string kLibraryList =
    "OpenARF;ClientCount;PafMachine;CountryCode;ArfLibVersion;ArfLibVersionAu;ArfLibVersionNz;ArfLibVersionUs;"
    "ArfLibVersionUk;ARFs;DefaultArf;";
const std::string kDefaultList = "OutputFields;PafEngineVersion;PafLibVersion;PafVersionInfo;SortPlanDate";

/** Expects the text at its exact size and 6406 with an unchanged buffer at every smaller one. */
template <class Call>
void ExpectWhole(const std::string& expected, Call call)
{
  GuardedBuffer exact(expected.size() + 1);
  EXPECT_EQ(0, call(exact.Data(), static_cast<int>(exact.Size())));
  EXPECT_STREQ(expected.c_str(), exact.Data());
  EXPECT_TRUE(exact.Intact());
  for (const std::size_t size : {std::size_t{0}, std::size_t{1}, expected.size()}) {
    if (size > expected.size()) continue;
    GuardedBuffer small(size);
    const std::string before = small.Bytes();
    EXPECT_EQ(PAF_ERR_BUFFER_TOO_SMALL, call(small.Data(), static_cast<int>(size))) << size;
    EXPECT_EQ(before, small.Bytes()) << size;
    EXPECT_TRUE(small.Intact()) << size;
  }
}

/** Answers "Properties" and the numbered names by filling the buffer, terminator and all. */
struct FillingSearcher : StandInSearcher
{
  std::string asked;
  int size = 0;

  int GetProperties(const char* name, char* out, int outSize) override
  {
    asked = name;
    size = outSize;
    std::memset(out, 'x', static_cast<std::size_t>(outSize));
    return status;
  }
};

TEST(PropertyNames, AreNumbered)
{
  for (int n = 1; n <= 16; ++n) {
    ExpectWhole(kNames[n - 1], [n](char* out, int size) { return GetPropertyNameByIndex(nullptr, 0, n, out, size); });
  }
  for (const int n : {0, -1, 17, INT_MAX, INT_MIN}) {
    ExpectWhole("", [n](char* out, int size) { return GetPropertyNameByIndex(nullptr, 0, n, out, size); });
  }
}

TEST(PropertyNames, OfASearcherFollowTheLibrarys)
{
  StandInSearcher searcher;
  searcher.text = "Own";
  for (int n = 1; n <= 11; ++n) {
    ExpectWhole(kNames[n - 1], [&](char* out, int size) { return GetPropertyNameByIndex(&searcher, 0, n, out, size); });
  }
  for (const int n : {12, 16, 17, INT_MAX}) {
    ExpectWhole("Own", [&](char* out, int size) { return GetPropertyNameByIndex(&searcher, 0, n, out, size); });
  }
  for (const int n : {0, -1, INT_MIN}) {
    ExpectWhole("", [&](char* out, int size) { return GetPropertyNameByIndex(&searcher, 0, n, out, size); });
  }
}

TEST(PropertyNames, AskTheSearcherByItsOwnNumbers)
{
  FillingSearcher searcher;
  char out[4096];
  for (const int n : {12, 99, INT_MAX}) {
    EXPECT_EQ(0, GetPropertyNameByIndex(&searcher, 0, n, out, sizeof out));
    EXPECT_EQ("PropertyName" + std::to_string(n - 11), searcher.asked);
    EXPECT_EQ(std::string(static_cast<std::size_t>(searcher.size) - 1, 'x'), out) << "also without its terminator";
  }
  EXPECT_EQ(0, ListPropertyNames(&searcher, 0, out, sizeof out));
  EXPECT_EQ("Properties", searcher.asked);
  EXPECT_EQ(2048, searcher.size);
  EXPECT_EQ(kLibraryList + std::string(2047, 'x'), out);
}

TEST(PropertyNames, AreListed)
{
  ExpectWhole(kLibraryList + kDefaultList,
              [](char* out, int size) { return ListPropertyNames(nullptr, 0, out, size); });
  StandInSearcher searcher;
  for (const char* own : {"", "One", "One;Two;"}) {
    searcher.text = own;
    ExpectWhole(kLibraryList + own, [&](char* out, int size) { return ListPropertyNames(&searcher, 0, out, size); });
  }
}

TEST(PropertyNames, PassASearchersFailureOn)
{
  StandInSearcher searcher;
  searcher.status = 77;
  searcher.text = "not this";
  char out[512] = "before";
  for (const int id : {3, 4}) {
    SetErrorDescription(1, "before");
    EXPECT_EQ(77, id == 3 ? ListPropertyNames(&searcher, id, out, sizeof out)
                          : GetPropertyNameByIndex(&searcher, id, 12, out, sizeof out));
    EXPECT_STREQ("before", out);
    ThreadData* record = nullptr;
    ASSERT_EQ(0, GetThreadData(false, record));
    EXPECT_EQ(77, record->lastError.code);
    EXPECT_EQ(id, record->lastError.id);
    EXPECT_STREQ("", record->lastError.text);
  }
  EXPECT_EQ(0, GetPropertyNameByIndex(&searcher, 3, 11, out, sizeof out)) << "it is not asked for the library's";
}

TEST(PropertyNames, OfTheDefaultPluginAreKnown)
{
  for (int n = 1; n <= 16; ++n) EXPECT_EQ(n > 11, IsDefaultPluginProperty(kNames[n - 1])) << kNames[n - 1];
  for (const char* name : {"outputfields", "PAFENGINEVERSION", "pafLIBversion", "PafVersioninfo", "sortplanDATE"}) {
    EXPECT_TRUE(IsDefaultPluginProperty(name)) << name;
  }
  for (const char* name : {"", "OutputField", "OutputFields ", "OutputFieldsX", "PafLib"}) {
    EXPECT_FALSE(IsDefaultPluginProperty(name)) << name;
  }
}

}  // namespace
