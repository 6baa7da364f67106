/** The plug-in's objects over the small database of tests/unit/arf/data, reached through its entry points. */
#ifndef QXPAF_TESTS_UNIT_ARF_AU_SEARCHER_FIXTURE_H
#define QXPAF_TESTS_UNIT_ARF_AU_SEARCHER_FIXTURE_H

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include "qxpaf/arf_au.h"
#include "qxpaf/arf_plugin.h"
#include "qxpaf/paf.h"
#include "unit/arf/match/engine_fixture.h"

namespace arf_test {

struct Releaser
{
  template <class Object>
  void operator()(Object* object) const
  {
    object->Release();
  }
};
using DatabasePointer = std::unique_ptr<IArfDb, Releaser>;
using SearcherPointer = std::unique_ptr<IArfSearcher, Releaser>;

/** The directory of the small database, built once for the test program. */
inline const std::string& SmallDirectory()
{
  static const test_support::TempDir dir;
  static const std::string path = BuildDatabaseFrom(dir, TestDataFile("lookup_addresses.csv"));
  return path;
}

/** Copies the small database, with its file changed. */
template <class Change>
std::string ChangedCopy(const test_support::TempDir& dir, Change change)
{
  std::filesystem::copy(arf_test::SmallDirectory(), dir.Path("copy"));
  const std::string path = dir.Path("copy/address.arf");
  std::ifstream in(path, std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  in.close();
  change(bytes);
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
  return dir.Path("copy");
}

inline DatabasePointer OpenSmall(int mode = 2)
{
  DatabasePointer database(GetDb());
  char error[255] = "";
  EXPECT_EQ(database->Open(SmallDirectory().c_str(), mode, error, sizeof error), 0) << error;
  return database;
}

/** A status with the text that came with it. */
struct Answer
{
  int status = 0;
  std::string text;
  friend bool operator==(const Answer&, const Answer&) = default;
};

inline std::ostream& operator<<(std::ostream& out, const Answer& answer)
{
  return out << answer.status << " \"" << answer.text << '"';
}

/** The operations with a buffer of 4096 bytes. */
class Searcher
{
 public:
  explicit Searcher(IArfDb& database) : searcher_(GetSearcher(&database)) {}

  IArfSearcher& operator*() { return *searcher_; }
  IArfSearcher* operator->() { return searcher_.get(); }

  Answer Lookup(const std::string& text, int amas = 1)
  {
    return Fill([&](char* out, int size) { return searcher_->LookupAddress(text.c_str(), out, size, amas); });
  }
  Answer Fix(const std::string& text)
  {
    return Fill([&](char* out, int size) { return searcher_->FixLastLine(text.c_str(), out, size); });
  }
  Answer Get(const std::string& query)
  {
    return Fill([&](char* out, int size) { return searcher_->GetAddress(query.c_str(), out, size); });
  }
  Answer Next()
  {
    return Fill([&](char* out, int size) { return searcher_->GetNextAddress(out, size); });
  }
  Answer Parsed()
  {
    return Fill([&](char* out, int size) { return searcher_->GetParsedInput(out, size); });
  }
  Answer Property(const std::string& name)
  {
    return Fill([&](char* out, int size) { return searcher_->GetProperties(name.c_str(), out, size); });
  }
  Answer SetProperty(const std::string& name, const std::string& value)
  {
    return Fill([&](char* out, int size) { return searcher_->SetProperties(name.c_str(), value.c_str(), out, size); });
  }
  std::string Description(int code)
  {
    return Fill([&](char* out, int size) {
             searcher_->GetErrorDescription(out, code, size);
             return 0;
           })
        .text;
  }

 private:
  template <class Operation>
  static Answer Fill(Operation operation)
  {
    std::string buffer(4096, '#');
    const int status = operation(buffer.data(), static_cast<int>(buffer.size()));
    const std::size_t end = buffer.find('\0');
    if (end == std::string::npos) ADD_FAILURE() << "not terminated";
    return {status, buffer.substr(0, end)};
  }

  SearcherPointer searcher_;
};

}  // namespace arf_test

#endif
