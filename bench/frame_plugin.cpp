// A plug-in whose operations do next to nothing, so that what the library adds around them can be measured.
#include <cstring>

#include "qxpaf/arf_plugin.h"

namespace {

struct EmptyDb : IArfDb
{
  int references = 0;

  void Release() override { delete this; }
  const char* GetPath() override { return ""; }
  const char* GetCountry() override { return "XX"; }
  int* RefCount() override { return &references; }
  int GetOpenMode() override { return 1; }
  int Open(const char*, int, char*, int) override { return 0; }
  void Close() override {}
};

int Put(char* out)
{
  std::memcpy(out, "30000001", 9);
  return 0;
}

struct EmptySearcher : IArfSearcher
{
  explicit EmptySearcher(IArfDb* database) : db(database) {}

  IArfDb* db;

  void Release() override { delete this; }
  IArfDb* GetArfDb() override { return db; }
  int LookupAddress(const char*, char* out, int, int) override { return Put(out); }
  int FixLastLine(const char*, char* out, int) override { return Put(out); }
  int ValidatePartialAddress(const char*, char* out, int) override { return Put(out); }
  int GetAddress(const char*, char* out, int) override { return Put(out); }
  int GetNextAddress(char* out, int) override { return Put(out); }
  int GetPopupHint(const char*, const char*, int, char* out, int) override { return Put(out); }
  int GetNextPopupHint(char* out, int) override { return Put(out); }
  int GetAddressHint(const char*, const char*, char* out, int) override { return Put(out); }
  int GetNextAddressHint(char* out, int) override { return Put(out); }
  int GetFindStatus() override { return 1; }
  int GetParsedInput(char* out, int) override { return Put(out); }
  int GetProperties(const char*, char* out, int) override { return *out = '\0', 0; }
  int SetProperties(const char*, const char*, char*, int) override { return 0; }
  int ValidateFullAddress(const char*, char* out, int, int, char*) override { return Put(out); }
  int FormatAddress(const char*, char* out, long, int) override { return Put(out); }
  int SetGeographicalCodes(const char*, char*, int) override { return 0; }
  int BeginPolygonSearch(const char*, const char*) override { return 0; }
  int GetNextAddressInPolygon(char* out, int) override { return Put(out); }
  int GetSearchStatistics(const char*, const char*, const char*, const char*, char* out, int) override
  {
    return Put(out);
  }
  void TakeOverFrom(IArfSearcher*) override {}
  void GetErrorDescription(char* out, int, int) override { Put(out); }
  int BeginGifConcordance(std::intptr_t, std::intptr_t, std::intptr_t, std::intptr_t, std::intptr_t, int) override
  {
    return 0;
  }
  int GetNextGifConcordance(char* out, int, char*, int, void*) override { return Put(out); }
  int BeginAddressSearch(const char*) override { return 0; }
  int GetNextAddressSearch(char* out, int) override { return Put(out); }
};

}  // namespace

IArfDb* GetDb()
{
  return new EmptyDb;
}
IArfSearcher* GetSearcher(IArfDb* db)
{
  return new EmptySearcher(db);
}
int CanUnloadNow()
{
  return 1;
}
int GetOtherProperties(const char*, char* out, int)
{
  return Put(out);
}
