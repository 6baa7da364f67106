/** A database whose streets and localities have other names and neighbours, built from tables as a register has them.
 */
#ifndef QXPAF_TESTS_UNIT_ARF_MATCH_OTHER_NAMES_FIXTURE_H
#define QXPAF_TESTS_UNIT_ARF_MATCH_OTHER_NAMES_FIXTURE_H

#include <stdexcept>
#include <string>

#include "arf/build/builder.h"
#include "support/temp_dir.h"

namespace arf_test {

/**
 * ALDERTON, also ALDER TOWN and NEW ALDERTON, borders on BRAMLEY, and that on CRANFORD, also THE FORD. HIGH STREET in
 * ALDERTON and GREEN ROAD in BRAMLEY are called MAIN STREET too, and so is RIVER ROAD in CRANFORD, which also has
 * another MAIN STREET. BRAMLEY has two roads that are both called OLD ROAD.
 */
inline void WriteRegister(const test_support::TempDir& dir)
{
  const auto write = [&](const char* table, const std::string& text) {
    dir.Write(std::string("register/Standard/NSW_") + table + "_psv.psv", text);
  };
  dir.MakeDirectory("register/Standard");
  write("STATE", "STATE_PID|DATE_RETIRED|STATE_NAME|STATE_ABBREVIATION\n1||NEW SOUTH WALES|NSW\n");
  write("LOCALITY",
        "LOCALITY_PID|DATE_RETIRED|LOCALITY_NAME|PRIMARY_POSTCODE|STATE_PID\n"
        "L1||ALDERTON|2991|1\nL2||BRAMLEY|2992|1\nL3||CRANFORD|2993|1\n");
  write("STREET_LOCALITY",
        "STREET_LOCALITY_PID|DATE_RETIRED|STREET_NAME|STREET_TYPE_CODE|STREET_SUFFIX_CODE|LOCALITY_PID\n"
        "S1||HIGH|STREET||L1\nS2||MILL|LANE||L1\nS3||GREEN|ROAD||L2\nS4||QUARRY|ROAD||L2\nS5||MAIN|STREET||L3\n"
        "S6||RIVER|ROAD||L3\n");
  std::string addresses =
      "ADDRESS_DETAIL_PID|DATE_RETIRED|NUMBER_FIRST|STREET_LOCALITY_PID|LOCALITY_PID|ALIAS_PRINCIPAL|POSTCODE\n";
  const auto add = [&](const std::string& number, const std::string& street, const std::string& locality) {
    addresses.append("A_").append(street).append("_").append(number).append("||").append(number);
    addresses.append("|").append(street).append("|").append(locality).append("|P|\n");
  };
  for (const char* number : {"1", "5", "12"})
    for (const char* street : {"S1", "S2"}) add(number, street, "L1");
  for (const char* street : {"S3", "S4"}) add("5", street, "L2");
  add("7", "S3", "L2");
  add("1", "S5", "L3");
  for (const char* number : {"1", "9"}) add(number, "S6", "L3");
  write("ADDRESS_DETAIL", addresses);
  write("STREET_LOCALITY_ALIAS",
        "STREET_LOCALITY_ALIAS_PID|DATE_RETIRED|STREET_LOCALITY_PID|STREET_NAME|STREET_TYPE_CODE|STREET_SUFFIX_CODE\n"
        "1||S1|MAIN|STREET|\n2||S3|MAIN|STREET|\n3||S6|MAIN|STREET|\n4||S3|OLD|ROAD|\n5||S4|OLD|ROAD|\n");
  write("LOCALITY_ALIAS",
        "LOCALITY_ALIAS_PID|DATE_RETIRED|LOCALITY_PID|NAME\n1||L1|NEW ALDERTON\n2||L1|ALDER TOWN\n3||L3|THE FORD\n");
  write("LOCALITY_NEIGHBOUR",
        "LOCALITY_NEIGHBOUR_PID|DATE_RETIRED|LOCALITY_PID|NEIGHBOUR_LOCALITY_PID\n1||L1|L2\n2||L2|L1\n3||L2|L3\n");
}

/** Builds it into "db" of the directory; returns its path. Throws when that fails. */
inline std::string BuildRegister(const test_support::TempDir& dir)
{
  WriteRegister(dir);
  arf::BuildOptions options;
  options.inputs = {dir.Path("register")};
  options.outputDirectory = dir.Path("db");
  const arf::BuildReport report = arf::BuildDatabase(options);
  if (report.outcome != arf::BuildOutcome::Built || report.rowsSkipped != 0)
    throw std::runtime_error(report.errors.empty() ? "the register was not built" : report.errors.front());
  return options.outputDirectory;
}

}  // namespace arf_test

#endif
