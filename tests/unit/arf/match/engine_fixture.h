/** The small database of tests/unit/arf/data, built anew in a directory of the test's own. */
#ifndef QXPAF_TESTS_UNIT_ARF_MATCH_ENGINE_FIXTURE_H
#define QXPAF_TESTS_UNIT_ARF_MATCH_ENGINE_FIXTURE_H

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "arf/build/builder.h"
#include "arf/match/engine.h"
#include "support/temp_dir.h"

namespace arf_test {

inline std::string TestDataFile(const std::string& name)
{
  std::string path = ARF_TEST_DATA "/";
  path += name;
  return path;
}

/** Builds a database from a CSV file into "db" of a directory; returns its path. Throws when that fails. */
inline std::string BuildDatabaseFrom(const test_support::TempDir& dir, const std::string& csv, bool skipBadRows = false)
{
  arf::BuildOptions options;
  options.inputs = {csv};
  options.outputDirectory = dir.Path("db");
  options.info = {{"version", "test data 1"}};
  options.skipBadRows = skipBadRows;
  const arf::BuildReport report = arf::BuildDatabase(options);
  if (report.outcome != arf::BuildOutcome::Built)
    throw std::runtime_error(report.errors.empty() ? "the database was not built" : report.errors.front());
  return options.outputDirectory;
}

/** An engine over a database; throws when it cannot be opened. */
inline std::unique_ptr<const arf::Engine> OpenEngine(const std::string& directory)
{
  arf::OpenResult result;
  std::unique_ptr<const arf::Database> database = arf::Database::Open(directory, arf::OpenMode::Memory, result);
  if (!database) throw std::runtime_error(result.message);
  return std::make_unique<const arf::Engine>(std::move(database));
}

/** The engine over lookup_addresses.csv; one for the whole test program. */
inline const arf::Engine& SmallEngine()
{
  static const test_support::TempDir dir;
  static const std::unique_ptr<const arf::Engine> engine =
      OpenEngine(BuildDatabaseFrom(dir, TestDataFile("lookup_addresses.csv")));
  return *engine;
}

}  // namespace arf_test

#endif
