/** Calls every accessor of a database, for files whose contents may say anything. */
#ifndef QXPAF_TESTS_FAULTS_EXERCISE_H
#define QXPAF_TESTS_FAULTS_EXERCISE_H

#include <cstdint>

#include "arf/format/database.h"

namespace arf_test {

/** Reads everything there is, to the last byte of each text. Returns a sum of it, so that nothing is optimised away. */
std::uint64_t Exercise(const arf::Database& database);

}  // namespace arf_test

#endif
