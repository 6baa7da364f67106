// Requests about databases that need not be open.
#include <memory>
#include <string>

#include "arf/au/database_status.h"
#include "arf/au/property_request.h"
#include "arf/format/layout.h"

namespace arf {
namespace {

/** Opens and verifies a database as an instance would. */
std::unique_ptr<Database> Open(std::string_view path, OpenResult& result)
{
  return Database::Open(std::string(path), OpenMode::Disk, result);
}

void AppendVersion(const Database& database, BoundedText& out)
{
  out.Word(database.Info("name")).Word(database.Info("version"));
  out.Gap() << "(format " << std::uint32_t{layout::kMajorVersion} << ", " << database.PointCount()
            << (database.PointCount() == 1 ? " address)" : " addresses)");
}

}  // namespace

int ReadArfVersion(const PropertyRequest& request)
{
  OpenResult result;
  const std::unique_ptr<Database> database = Open(request.argument, result);
  if (!database) {
    request.reason << result.message << '.';
    return StatusOf(result.failure).status;
  }
  AppendVersion(*database, request.out);
  return 0;
}

/** Programs ask for it without a database too. */
int ReadVersionInfo(const PropertyRequest& request)
{
  const Database* const database = request.source.database;
  if (!database) return 0;
  if (const std::string_view version = database->Info("version"); !version.empty()) {
    request.out << version;
  } else {
    AppendVersion(*database, request.out);
  }
  return 0;
}

int ReadArfStatus(const PropertyRequest& request)
{
  OpenResult result;
  Open(request.argument, result);
  request.out << StatusOf(result.failure).words;
  return 0;
}

}  // namespace arf
