// A plug-in as its author writes it: from the installed contract header alone, in C++17. It finds every address.
#include <qxpaf/arf_plugin.h>

#include <cstring>
#include <string>

namespace {

constexpr int kNotOffered = 6408;

class Database : public IArfDb
{
 public:
  void Release() override { delete this; }
  const char* GetPath() override { return path_.c_str(); }
  const char* GetCountry() override { return "XX"; }
  int* RefCount() override { return &users_; }
  int GetOpenMode() override { return mode_; }
  int Open(const char* path, int mode, char*, int) override
  {
    path_ = path;
    mode_ = mode;
    return 0;
  }
  void Close() override {}

 private:
  std::string path_;
  int mode_ = 0;
  int users_ = 0;
};

class Searcher : public IArfSearcher
{
 public:
  explicit Searcher(IArfDb* database) : database_(database) {}
  void Release() override { delete this; }
  IArfDb* GetArfDb() override { return database_; }
  int LookupAddress(const char* address, char* out, int outSize, int) override
  {
    const std::string answer = "found " + std::string(address);
    if (static_cast<int>(answer.size()) >= outSize) return kNotOffered;
    std::memcpy(out, answer.c_str(), answer.size() + 1);
    return 0;
  }
  int FixLastLine(const char*, char*, int) override { return kNotOffered; }
  int ValidatePartialAddress(const char*, char*, int) override { return kNotOffered; }
  int GetAddress(const char*, char*, int) override { return kNotOffered; }
  int GetNextAddress(char*, int) override { return kNotOffered; }
  int GetPopupHint(const char*, const char*, int, char*, int) override { return kNotOffered; }
  int GetNextPopupHint(char*, int) override { return kNotOffered; }
  int GetAddressHint(const char*, const char*, char*, int) override { return kNotOffered; }
  int GetNextAddressHint(char*, int) override { return kNotOffered; }
  int GetFindStatus() override { return 0; }
  int GetParsedInput(char*, int) override { return kNotOffered; }
  int GetProperties(const char*, char*, int) override { return kNotOffered; }
  int SetProperties(const char*, const char*, char*, int) override { return kNotOffered; }
  int ValidateFullAddress(const char*, char*, int, int, char*) override { return kNotOffered; }
  int FormatAddress(const char*, char*, long, int) override { return kNotOffered; }
  int SetGeographicalCodes(const char*, char*, int) override { return kNotOffered; }
  int BeginPolygonSearch(const char*, const char*) override { return kNotOffered; }
  int GetNextAddressInPolygon(char*, int) override { return kNotOffered; }
  int GetSearchStatistics(const char*, const char*, const char*, const char*, char*, int) override
  {
    return kNotOffered;
  }
  void TakeOverFrom(IArfSearcher*) override {}
  void GetErrorDescription(char* out, int, int outSize) override
  {
    if (outSize > 0) *out = '\0';
  }
  int BeginGifConcordance(std::intptr_t, std::intptr_t, std::intptr_t, std::intptr_t, std::intptr_t, int) override
  {
    return kNotOffered;
  }
  int GetNextGifConcordance(char*, int, char*, int, void*) override { return kNotOffered; }
  int BeginAddressSearch(const char*) override { return kNotOffered; }
  int GetNextAddressSearch(char*, int) override { return kNotOffered; }

 private:
  IArfDb* database_;
};

}  // namespace

IArfDb* GetDb()
{
  return new Database;
}
IArfSearcher* GetSearcher(IArfDb* db)
{
  return new Searcher(db);
}
int CanUnloadNow()
{
  return 0;
}
