/** Every virtual function notes its own slot and the arguments it got, and answers the slot where it answers an int. */
#include <cstring>
#include <mutex>
#include <string>

#include "fakes/frozen/frozen_contract.h"

namespace frozen {
namespace {

std::mutex mutex;
std::string calls;

std::string Show(const char* text)
{
  return text == nullptr ? "null" : std::string(1, '\'').append(text).append("'");
}
std::string Show(long number)
{
  return std::to_string(number);
}
std::string Show(int number)
{
  return std::to_string(number);
}

template <class... Arguments>
int Note(char kind, int slot, Arguments... arguments)
{
  std::string list;
  (list.append(list.empty() ? "" : ",").append(Show(arguments)), ...);
  std::lock_guard<std::mutex> lock(mutex);
  calls.append(1, kind).append(Show(slot)).append("(").append(list).append(") ");
  return slot;
}

/** An output buffer of at least `size` bytes gets the slot's number as text. */
void Put(char* out, int size, int slot)
{
  const std::string text = std::to_string(slot);
  if (size > static_cast<int>(text.size())) std::memcpy(out, text.c_str(), text.size() + 1);
}

class SlotDb : public IArfDb
{
 public:
  void Release() override
  {
    Note('D', 2);
    delete this;
  }
  const char* GetPath() override
  {
    Note('D', 3);
    return path_.c_str();
  }
  const char* GetCountry() override
  {
    Note('D', 4);
    return "XX";
  }
  int* RefCount() override
  {
    Note('D', 5);
    return &count_;
  }
  int GetOpenMode() override { return Note('D', 6); }
  int Open(const char* path, int mode, char* errText, int errSize) override
  {
    path_ = path;
    Note('D', 7, path, mode, errSize);
    if (path_ != "fail") return 0;
    Put(errText, errSize, 7);
    return 7;
  }
  void Close() override { Note('D', 8); }

 private:
  std::string path_;
  int count_ = 0;
};

class SlotSearcher : public IArfSearcher
{
 public:
  explicit SlotSearcher(IArfDb* db) : db_(db) {}

  void Release() override
  {
    Note('S', 2);
    delete this;
  }
  IArfDb* GetArfDb() override
  {
    Note('S', 3);
    return db_;
  }
  int LookupAddress(const char* a, char*, int size, int amas) override { return Note('S', 4, a, size, amas); }
  int FixLastLine(const char* a, char*, int size) override { return Note('S', 5, a, size); }
  int ValidatePartialAddress(const char* a, char*, int size) override { return Note('S', 6, a, size); }
  int GetAddress(const char* a, char*, int size) override { return Note('S', 7, a, size); }
  int GetNextAddress(char*, int size) override { return Note('S', 8, size); }
  int GetPopupHint(const char* a, const char* b, int n, char*, int size) override
  {
    return Note('S', 9, a, b, n, size);
  }
  int GetNextPopupHint(char*, int size) override { return Note('S', 10, size); }
  int GetAddressHint(const char* a, const char* b, char*, int size) override { return Note('S', 11, a, b, size); }
  int GetNextAddressHint(char*, int size) override { return Note('S', 12, size); }
  int GetFindStatus() override { return Note('S', 13); }
  int GetParsedInput(char*, int size) override { return Note('S', 14, size); }
  int GetProperties(const char* name, char*, int size) override { return Note('S', 15, name, size); }
  int SetProperties(const char* name, const char* value, char*, int size) override
  {
    return Note('S', 16, name, value, size);
  }
  int ValidateFullAddress(const char* a, char*, int size, int flags, char* flag) override
  {
    if (flag != nullptr) *flag = 'v';
    return Note('S', 17, a, size, flags);
  }
  int FormatAddress(const char* a, char*, long option, int size) override { return Note('S', 18, a, option, size); }
  int SetGeographicalCodes(const char* codes, char*, int size) override { return Note('S', 19, codes, size); }
  int BeginPolygonSearch(const char* a, const char* b) override { return Note('S', 20, a, b); }
  int GetNextAddressInPolygon(char*, int size) override { return Note('S', 21, size); }
  int GetSearchStatistics(const char* a, const char* b, const char* c, const char* d, char*, int size) override
  {
    return Note('S', 22, a, b, c, d, size);
  }
  void TakeOverFrom(IArfSearcher* previous) override { Note('S', 23, previous == this ? "itself" : "another"); }
  void GetErrorDescription(char* out, int code, int size) override
  {
    Put(out, size, 24);
    Note('S', 24, code, size);
  }
  int BeginGifConcordance(long a, long b, long c, long d, long e, int n) override
  {
    return Note('S', 25, a, b, c, d, e, n);
  }
  int GetNextGifConcordance(char*, int size1, char*, int size2, void* detail) override
  {
    return Note('S', 26, size1, size2, static_cast<const char*>(detail));
  }
  int BeginAddressSearch(const char* query) override { return Note('S', 27, query); }
  int GetNextAddressSearch(char*, int size) override { return Note('S', 28, size); }

 private:
  IArfDb* db_;
};

}  // namespace
}  // namespace frozen

IArfDb* GetDb()
{
  return new frozen::SlotDb;
}

IArfSearcher* GetSearcher(IArfDb* db)
{
  return new frozen::SlotSearcher(db);
}

int CanUnloadNow()
{
  return 0;
}

int GetOtherProperties(const char* request, char* out, int outSize)
{
  frozen::Put(out, outSize, 1);
  return frozen::Note('E', 1, request, outSize);
}

void frozen_calls(char* out, int size)
{
  std::lock_guard<std::mutex> lock(frozen::mutex);
  const std::string taken = frozen::calls.substr(0, static_cast<size_t>(size - 1));
  std::memcpy(out, taken.c_str(), taken.size() + 1);
  frozen::calls.clear();
}
