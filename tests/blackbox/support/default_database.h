/** A workspace whose default database is an Australian one, for the functions without an Id. */
#ifndef QXPAF_TESTS_BLACKBOX_SUPPORT_DEFAULT_DATABASE_H
#define QXPAF_TESTS_BLACKBOX_SUPPORT_DEFAULT_DATABASE_H

#include <gtest/gtest.h>

#include <string>

#include "blackbox/support/fake.h"
#include "blackbox/support/workspace.h"

namespace blackbox {

class DefaultDatabaseTest : public testing::Test
{
 protected:
  void SetUp() override { path = workspace.MakeDatabase("paf", "DATABASENAME=AUSTRALIA\n"); }

  Workspace workspace{{"PafDir=@/paf", "ARF/AU/one=/one", "ARF/NZ/other=/nz"}};
  Fake au{"libqxarfau.so"};
  std::string path;  ///< of the default database
};

}  // namespace blackbox

#endif
