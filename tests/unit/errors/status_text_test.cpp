#include "errors/status_text.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using qxpaf::RegistryErrorToPafError;
using qxpaf::StatusText;

/** Texts are compared in the tests of pafGetErrorDescription; here: which codes have one, of all near them. */
TEST(StatusText, ExistsForTheLibrarysCodesOnly)
{
  const std::set<int> known = {601,  4100, 4200, 4201, 4202, 4203, 4204, 4205, 4206, 4207, 4208, 4500, 4501, 4502,
                               4503, 4504, 4550, 4551, 4555, 4556, 6400, 6401, 6402, 6403, 6404, 6405, 6406, 6408,
                               6409, 6410, 6411, 6412, 6413, 6414, 6415, 6493, 6494, 6495, 6496, 6497, 6498, 6499};
  for (int code = -10; code < 10000; ++code) EXPECT_EQ(known.contains(code), StatusText(code) != nullptr) << code;
}

TEST(RegistryErrorToPafError, MapsTheStoresCodes)
{
  EXPECT_EQ(6498, RegistryErrorToPafError(1301));
  EXPECT_EQ(6498, RegistryErrorToPafError(1303));
  EXPECT_EQ(6499, RegistryErrorToPafError(1300));
  EXPECT_EQ(6499, RegistryErrorToPafError(1302));
  for (const int other : {0, 1, -1, 1299, 1304, 1320, 1321, 1322, 6498}) {
    EXPECT_EQ(other, RegistryErrorToPafError(other));
  }
}

}  // namespace
