/** Names of the rows of table-driven tests: what the row's field `name` says. */
#ifndef QXPAF_TESTS_BLACKBOX_SUPPORT_ROW_NAME_H
#define QXPAF_TESTS_BLACKBOX_SUPPORT_ROW_NAME_H

#include <gtest/gtest.h>

#include <string>

namespace blackbox {

struct RowName
{
  template <class Row>
  std::string operator()(const testing::TestParamInfo<Row>& row) const
  {
    return row.param.name;
  }
};

}  // namespace blackbox

#endif
