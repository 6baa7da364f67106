#include "api/library.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "api/instance_table.h"
#include "qxpaf/paf.h"

namespace {

using namespace qxpaf;

TEST(Library, HasStartedWhenMainRuns)
{
  EXPECT_EQ(0, LibraryStatus());
}

TEST(LibraryDeathTest, MayBeCalledAfterItsShutDown)
{
  EXPECT_EXIT(
      {
        int id = 0;
        PafInfo* info = nullptr;
        bool right = NewInstance(&id, info) == 0;
        {
          const DecrementUsageCountWhenFinished guard(info);
        }
        FinaliseLibrary();
        right = right && CountOpenInstances() == 0 && pafClosePafId(id) == PAF_ERR_INVALID_ID;
        char text[64];
        right = right && pafGetErrorDescription(text, 6405, sizeof text) == 0 && std::strlen(text) > 0;
        right = right && pafOpenArfId(&id, 0, "zz.nothing") == PAF_ERR_UNKNOWN_COUNTRY;
        std::_Exit(right ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST(LibraryDeathTest, LeavesBusyInstancesToTheirCalls)
{
  EXPECT_EXIT(
      {
        int id = 0;
        PafInfo* info = nullptr;
        NewInstance(&id, info);
        FinaliseLibrary();
        info->arfName = "still mine";  // the sanitizer would tell
        std::_Exit(info->arfName == "still mine" ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
