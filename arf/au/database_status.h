/** How the plug-in names the ways in which a database file can be refused. */
#ifndef QXPAF_ARF_AU_DATABASE_STATUS_H
#define QXPAF_ARF_AU_DATABASE_STATUS_H

#include <string_view>

#include "arf/format/database.h"

namespace arf {

struct DatabaseStatus
{
  OpenFailure failure;
  int status;              ///< what opening the file answers
  std::string_view words;  ///< what the property "ArfStatus:" answers
};

/** The row of a failure, OpenFailure::None included. */
const DatabaseStatus& StatusOf(OpenFailure failure);

}  // namespace arf

#endif
