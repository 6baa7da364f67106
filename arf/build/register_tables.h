/** The tables of the national address file, as it is published in files divided by vertical bars, as inputs. */
#ifndef QXPAF_ARF_BUILD_REGISTER_TABLES_H
#define QXPAF_ARF_BUILD_REGISTER_TABLES_H

#include <memory>
#include <string>
#include <vector>

#include "arf/build/input.h"

namespace arf {

/**
 * Finds the tables below a directory: "<STATE>_<TABLE>_psv.psv", one input a state, and
 * "Authority_Code_<TABLE>_AUT_psv.psv". Throws BuildError when none are there, or a state lacks one that is needed:
 * ADDRESS_DETAIL, STREET_LOCALITY, LOCALITY and STATE. All others may be missing.
 */
std::vector<std::unique_ptr<Input>> OpenRegisterTables(const std::string& directory, unsigned threads);

}  // namespace arf

#endif
