#include "errors/boundary.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <stdexcept>

#include "qxpaf/platform/thread.h"

namespace {

using qxpaf::AtBoundary;

TEST(Boundary, PassesStatusesThrough)
{
  EXPECT_EQ(0, AtBoundary([] { return 0; }));
  EXPECT_EQ(-17, AtBoundary([] { return -17; }));
}

TEST(Boundary, TurnsExceptionsIntoStatuses)
{
  EXPECT_EQ(PAF_ERR_OUT_OF_MEMORY, AtBoundary([]() -> int { throw std::bad_alloc(); }));
  EXPECT_EQ(PAF_ERR_OUT_OF_MEMORY, AtBoundary([]() -> int { throw std::bad_array_new_length(); }));
  EXPECT_EQ(PAF_ERR_PLUGIN_SYSTEM, AtBoundary([]() -> int { throw std::runtime_error("x"); }));
  EXPECT_EQ(PAF_ERR_PLUGIN_SYSTEM, AtBoundary([]() -> int { throw QX_Thread_lock_exception(22); }));
  EXPECT_EQ(PAF_ERR_PLUGIN_SYSTEM, AtBoundary([]() -> int { throw 5; }));
}

TEST(Boundary, LetsAThreadEndInside)
{
  static bool cameBack = false;
  static bool unwound = false;
  pthread_t thread;
  const auto body = [](void*) -> void* {
    AtBoundary([]() -> int {
      struct Guard
      {
        ~Guard() { unwound = true; }
      } guard;
      pthread_exit(nullptr);
    });
    cameBack = true;
    return nullptr;
  };
  ASSERT_EQ(0, pthread_create(&thread, nullptr, body, nullptr));
  ASSERT_EQ(0, pthread_join(thread, nullptr));
  EXPECT_TRUE(unwound);
  EXPECT_FALSE(cameBack);
}

}  // namespace
