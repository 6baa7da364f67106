/** Builds databases for tests. */
#ifndef QXPAF_TESTS_UNIT_ARF_BUILD_TEST_DATABASE_H
#define QXPAF_TESTS_UNIT_ARF_BUILD_TEST_DATABASE_H

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "arf/build/builder.h"
#include "arf/format/database.h"
#include "support/temp_dir.h"
#include "unit/arf/build/address_model.h"

namespace arf_test {

inline std::vector<std::uint8_t> ReadFile(const std::string& path)
{
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void WriteFile(const std::string& path, const std::vector<std::uint8_t>& bytes)
{
  std::ofstream file(path, std::ios::binary);
  std::copy(bytes.begin(), bytes.end(), std::ostreambuf_iterator<char>(file));
}

/** Writes `csv` into the directory and builds "db" beside it. */
inline arf::BuildReport BuildFrom(const test_support::TempDir& dir, const std::string& csv,
                                  arf::BuildOptions options = {})
{
  dir.Write("in.csv", csv);
  options.inputs = {dir.Path("in.csv")};
  if (options.outputDirectory.empty()) options.outputDirectory = dir.Path("db");
  return arf::BuildDatabase(options);
}

/** Builds a database that must succeed; "" and a failed test when it does not. */
inline std::string BuiltDirectory(const test_support::TempDir& dir, const std::string& csv)
{
  const arf::BuildReport report = BuildFrom(dir, csv);
  EXPECT_EQ(report.outcome, arf::BuildOutcome::Built);
  for (const std::string& error : report.errors) ADD_FAILURE() << error;
  return dir.Path("db");
}

inline std::unique_ptr<arf::Database> OpenOrFail(const std::string& directory, arf::OpenMode mode)
{
  arf::OpenResult result;
  std::unique_ptr<arf::Database> database = arf::Database::Open(directory, mode, result);
  EXPECT_EQ(result.failure, arf::OpenFailure::None) << result.message;
  EXPECT_EQ(database != nullptr, result.failure == arf::OpenFailure::None);
  return database;
}

}  // namespace arf_test

#endif
