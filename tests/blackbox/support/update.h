/** pafUpdateArfs as tests use it, and the setting of such a test. */
#ifndef QXPAF_TESTS_BLACKBOX_SUPPORT_UPDATE_H
#define QXPAF_TESTS_BLACKBOX_SUPPORT_UPDATE_H

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <ostream>
#include <string>
#include <vector>

#include "blackbox/support/country_fakes.h"
#include "blackbox/support/session.h"
#include "blackbox/support/workspace.h"
#include "qxpaf/paf.h"

namespace blackbox {

/** What an update answered. */
struct Updated
{
  int status;
  int databases;
  int instances;

  bool operator==(const Updated& other) const = default;
  friend std::ostream& operator<<(std::ostream& out, const Updated& updated)
  {
    return out << "status " << updated.status << ", " << updated.databases << " databases, " << updated.instances
               << " instances";
  }
};

/** Updates with counters that do not hold 0 before. */
inline Updated Update()
{
  Updated updated{0, -5, -6};
  updated.status = pafUpdateArfs(&updated.databases, &updated.instances);
  return updated;
}

inline std::future<Updated> UpdateInBackground()
{
  return std::async(std::launch::async, Update);
}

/** How long a test looks whether something happens that must not; more than one wait of an update. */
constexpr auto kAWhile = std::chrono::milliseconds(700);
/** How long a test waits for what must happen. */
constexpr auto kLong = std::chrono::seconds(20);

inline bool IsReady(const std::future<Updated>& update, std::chrono::milliseconds time)
{
  return update.wait_for(time) == std::future_status::ready;
}

class UpdateTest : public testing::Test
{
 protected:
  /** The searcher that serves an instance. */
  static const void* SearcherOf(Fake& fake, int id)
  {
    EXPECT_EQ(pafGetFindStatusId(id), 0) << "Id " << id;
    return fake.Last(kFakeGetFindStatus).object;
  }

  static std::string OpenPaths()
  {
    char paths[512];
    EXPECT_EQ(pafGetPropertiesId(0, "OpenArfPaths", paths, sizeof paths), 0);
    return paths;
  }

  /** Another thread can open, ask and close: nothing is left locked. */
  static void ExpectUnlocked(const std::string& name)
  {
    std::async(std::launch::async, [&name] {
      const int id = Open(name);
      EXPECT_EQ(pafGetFindStatusId(id), 0);
      EXPECT_EQ(pafClosePafId(id), 0);
    }).get();
  }

  Workspace workspace{std::vector<std::string>{}};
  CountryFakes fakes;
  Fake& au = fakes["libqxarfau.so"];
};

}  // namespace blackbox

#endif
