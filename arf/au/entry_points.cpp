// The four symbols that the plug-in exports.
#include <new>

#include "arf/au/au_database.h"
#include "arf/au/au_searcher.h"
#include "arf/au/boundary.h"
#include "arf/au/properties.h"
#include "arf/match/bounded_text.h"

IArfDb* GetDb()
{
  return new (std::nothrow) arf::AuDatabase;
}

IArfSearcher* GetSearcher(IArfDb* db)
{
  auto* database = dynamic_cast<arf::AuDatabase*>(db);
  if (!database) return nullptr;
  IArfSearcher* searcher = nullptr;
  arf::Guarded([&] {
    searcher = new arf::AuSearcher(*database);
    return 0;
  });
  return searcher;
}

int CanUnloadNow()
{
  return arf::LiveObject::Exist() ? 0 : 1;
}

int GetOtherProperties(const char* request, char* out, int outSize)
{
  arf::BoundedText text(out, outSize);
  arf::BoundedText reason(nullptr, 0);
  int status = arf::Guarded([&] { return arf::ReadProperty(arf::TextOf(request), {}, text, reason); });
  if (status == PAF_AU_ERR_UNKNOWN_PROPERTY) status = PAF_ERR_NOT_IMPLEMENTED;
  if (status == 0 && !text.IsWhole()) status = PAF_ERR_BUFFER_TOO_SMALL;
  if (status != 0) text.Clear();
  return status;
}
