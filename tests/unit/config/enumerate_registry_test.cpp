#include <gtest/gtest.h>

#include <new>
#include <string>
#include <utility>
#include <vector>

#include "qxpaf/registry.h"
#include "support/config_sandbox.h"

namespace {

/** How many more arrays may be allocated without exceptions; negative: any number. */
thread_local int allocationsLeft = -1;

}  // namespace

/** Takes the place of the standard function in this program, so that allocations can be made to fail. */
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
  if (allocationsLeft == 0) return nullptr;
  if (allocationsLeft > 0) --allocationsLeft;
  try {
    return ::operator new[](size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

namespace {

using std::string;
using test_support::ConfigSandbox;

using Pairs = std::vector<std::pair<string, string>>;

/** The two lists of one call, released as a caller releases them. */
class Listing
{
 public:
  explicit Listing(const char* key) { EnumerateRegistry_(key, &names_, &values_); }

  ~Listing()
  {
    Release(names_);
    Release(values_);
  }

  Listing(const Listing&) = delete;
  Listing& operator=(const Listing&) = delete;

  bool IsNull() const { return names_ == nullptr && values_ == nullptr; }

  /** The entries up to the null pointers, which must stand at the same position. */
  Pairs Entries() const
  {
    Pairs entries;
    if (names_ == nullptr || values_ == nullptr) {
      ADD_FAILURE() << "no lists";
      return entries;
    }
    std::size_t i = 0;
    for (; names_[i] != nullptr && values_[i] != nullptr; ++i) entries.emplace_back(names_[i], values_[i]);
    EXPECT_EQ(names_[i], nullptr);
    EXPECT_EQ(values_[i], nullptr);
    return entries;
  }

 private:
  static void Release(char** list)
  {
    for (char** entry = list; entry != nullptr && *entry != nullptr; ++entry) delete[] * entry;
    delete[] list;
  }

  char** names_ = reinterpret_cast<char**>(-1);
  char** values_ = reinterpret_cast<char**>(-1);
};

class EnumerateRegistryTest : public testing::Test
{
 protected:
  ConfigSandbox sandbox_;
};

struct ListRow
{
  const char* content;
  const char* key;
  Pairs entries;
};

void PrintTo(const ListRow& row, std::ostream* out)
{
  *out << row.content << " [" << row.key << "]";
}

class EnumerateRows : public EnumerateRegistryTest, public testing::WithParamInterface<ListRow>
{
};

TEST_P(EnumerateRows, ListTheValuesDirectlyInTheKey)
{
  sandbox_.Configure(GetParam().content);
  EXPECT_EQ(Listing(GetParam().key).Entries(), GetParam().entries);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, EnumerateRows,
    testing::Values(ListRow{"k/a=1\nk/b=2\n", "k", {{"a", "1"}, {"b", "2"}}},
                    ListRow{"K/B=1\r\n k/a=2\r\n", "k", {{"B", "1"}, {"a", "2"}}},
                    ListRow{"k/l/a=1\n", "k\\l", {{"a", "1"}}}, ListRow{"k/l/a=1\n", "k/l", {{"a", "1"}}},
                    ListRow{"k/l/a=1\nk/b=2\nk/m/c=3\n", "k", {{"b", "2"}}}, ListRow{"k/l/a=1\n", "k", {}},
                    ListRow{"k/a=1\n", "k\\", {}}, ListRow{"k//a=1\n", "k/", {{"a", "1"}}},
                    ListRow{"k//a=1\n", "k", {}}, ListRow{"k/a=1\nk/A=2\n", "k", {{"a", "1"}, {"A", "2"}}},
                    ListRow{"k/=1\nk/a=\n", "k", {{"", "1"}, {"a", ""}}}, ListRow{"k/a\nk/\nk\nk=1\n", "k", {}},
                    ListRow{"k/a=b=c/d\n", "k", {{"a", "b=c/d"}}}, ListRow{"k/a =1 \n", "k", {{"a ", "1 "}}},
                    ListRow{"kk/a=1\n", "k", {}}, ListRow{"a=1\n", "", {}}, ListRow{"/a=1\nb=2\n", "", {{"a", "1"}}},
                    ListRow{"", "k", {}}, ListRow{"k/\xC3\xA9=\xFF\n", "k", {{"\xC3\xA9", "\xFF"}}},
                    ListRow{"other=1\n\nk/a=1", "k", {{"a", "1"}}}));

TEST_F(EnumerateRegistryTest, MissingOutputsAreHarmless)
{
  sandbox_.Configure("k/a=1\n");
  char** list = reinterpret_cast<char**>(-1);
  EnumerateRegistry_("k", nullptr, nullptr);
  EnumerateRegistry_("k", &list, nullptr);
  EnumerateRegistry_("k", nullptr, &list);
  EXPECT_EQ(list, reinterpret_cast<char**>(-1));
}

TEST_F(EnumerateRegistryTest, KeysHaveAtMost254Characters)
{
  const string longest(254, 'k');
  sandbox_.Configure(longest + "/a=1\n");
  EXPECT_EQ(Listing(longest.c_str()).Entries(), Pairs{}) << "the line is split behind the separator";
  EXPECT_TRUE(Listing((longest + "k").c_str()).IsNull());
  EXPECT_TRUE(Listing(nullptr).IsNull());
  const string shorter(252, 'k');
  sandbox_.Configure(shorter + "/a=1\n");
  EXPECT_EQ(Listing(shorter.c_str()).Entries(), (Pairs{{"a", ""}})) << "the line is split behind the equals sign";
}

TEST_F(EnumerateRegistryTest, WithoutAFileThereAreNoLists)
{
  if (ConfigSandbox::MachineHasConfig()) GTEST_SKIP() << "this machine has a configuration file";
  EXPECT_TRUE(Listing("k").IsNull());
}

TEST_F(EnumerateRegistryTest, ADirectoryInTheFilesPlaceGivesEmptyLists)
{
  sandbox_.Dir().MakeDirectory("work/.morvex");
  EXPECT_EQ(Listing("k").Entries(), Pairs{});
}

TEST_F(EnumerateRegistryTest, LongLinesAreSplitAfter255Characters)
{
  sandbox_.Configure("k/a=" + string(251, 'v') + " k/b=2\nk/c=3\n");
  EXPECT_EQ(Listing("k").Entries(), (Pairs{{"a", string(251, 'v')}, {"b", "2"}, {"c", "3"}}));
}

TEST_F(EnumerateRegistryTest, ListsAreAsLongAsTheFileNeeds)
{
  string content;
  Pairs expected;
  for (int i = 0; i < 1000; ++i) {
    const string number = std::to_string(i);
    content += "k/n" + number + "=" + number + "\nk/sub/n=" + number + "\n";
    expected.emplace_back("n" + number, number);
  }
  sandbox_.Configure(content);
  EXPECT_EQ(Listing("k").Entries(), expected);
}

/** One row for each allocation of a listing with two values. */
struct FailureRow
{
  int allocations;
  bool lists;
  std::size_t entries;
};

TEST_F(EnumerateRegistryTest, WithoutMemoryTheListsEndEarlyOrAreMissing)
{
  sandbox_.Configure("k/a=1\nk/b=2\n");
  for (const FailureRow& row :
       {FailureRow{0, false, 0}, FailureRow{1, false, 0}, FailureRow{2, true, 0}, FailureRow{3, true, 0},
        FailureRow{4, true, 1}, FailureRow{5, true, 1}, FailureRow{6, true, 2}}) {
    allocationsLeft = row.allocations;
    const Listing listing("k");
    allocationsLeft = -1;
    EXPECT_EQ(listing.IsNull(), !row.lists) << row.allocations;
    if (!row.lists) continue;
    EXPECT_EQ(listing.Entries().size(), row.entries) << row.allocations;
  }
}

TEST_F(EnumerateRegistryTest, SubKeysAreNotListed)
{
  sandbox_.Configure("k/l/a=1\n");
  EXPECT_EQ(EnumerateRegistryKeys_("k"), 0);
  EXPECT_EQ(EnumerateRegistryKeys_(nullptr), 0);
}

}  // namespace
