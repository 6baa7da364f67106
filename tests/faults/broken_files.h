/**
 * Database files with one defect each, made from a good one.
 */
#ifndef QXPAF_TESTS_FAULTS_BROKEN_FILES_H
#define QXPAF_TESTS_FAULTS_BROKEN_FILES_H

#include <string>
#include <vector>

#include "arf/format/database.h"
#include "faults/file_surgery.h"

namespace arf_test {

struct BrokenFile
{
  std::string name;          ///< fit for a file name: "section_streets_missing"
  arf::OpenFailure failure;  ///< None: the file opens, but its contents contradict themselves
  std::string message;       ///< what the refusal says, behind the name of the file
  Bytes bytes;
};

/** All of them. `good` is a database with attributes, postal boxes and a street of several blocks. */
std::vector<BrokenFile> BreakFile(const Bytes& good);

}  // namespace arf_test

#endif
