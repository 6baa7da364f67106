/** A session that also has an instance of the thread's own, for the functions without an Id. */
#ifndef QXPAF_TESTS_BLACKBOX_SUPPORT_DEFAULT_SESSION_H
#define QXPAF_TESTS_BLACKBOX_SUPPORT_DEFAULT_SESSION_H

#include "blackbox/support/session.h"

namespace blackbox {

/** Besides the instance `id`: the calling thread's default instance, open on the Australian fake `au`. */
class DefaultSessionTest : public SessionTest
{
 protected:
  void SetUp() override
  {
    SessionTest::SetUp();
    workspace.MakeDatabase("default", "DATABASENAME=AU\n");
    workspace.Configure({"PafDir=@/default"});
    ASSERT_EQ(pafOpenPaf(), 0);
    char out[255];
    ASSERT_EQ(pafGetNextAddress(out), 0) << "opens the default instance";
    au->clearCalls();
    fake->clearCalls();
  }

  void TearDown() override
  {
    EXPECT_EQ(pafClosePaf(), 0);
    SessionTest::TearDown();
  }

  Fake au{"libqxarfau.so"};
};

}  // namespace blackbox

#endif
