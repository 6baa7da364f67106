/** The two objects of the contract, answering whatever the state says and watching how they are used. */
#ifndef QXPAF_TESTS_FAKES_FAKE_OBJECTS_H
#define QXPAF_TESTS_FAKES_FAKE_OBJECTS_H

#include <atomic>
#include <string>

#include "fakes/fake_state.h"
#include "qxpaf/arf_plugin.h"

namespace fake {

class FakeDb : public IArfDb
{
 public:
  FakeDb();
  ~FakeDb() override;

  void Release() override;
  const char* GetPath() override;
  const char* GetCountry() override;
  int* RefCount() override;
  int GetOpenMode() override;
  int Open(const char* path, int mode, char* errText, int errSize) override;
  void Close() override;

  bool IsOpen() const { return open_; }
  const std::string& OpenedPath() const { return path_; }
  int Count() const { return count_; }
  void SearcherCreated() { ++searchers_; }
  void SearcherReleased() { --searchers_; }

 private:
  void CheckAlive(FakeOperation operation) const;

  std::string path_;
  int mode_ = 0;
  int count_ = 0;
  std::atomic<int> searchers_{0};
  std::atomic<bool> open_{false};
  bool openCalled_ = false;
  bool closeCalled_ = false;          // since the last Open
  bool mayCloseAgain_ = false;        // it was opened again in vain, or Close threw
  bool closedUnderSearcher_ = false;  // a fault unless it is opened again
  std::atomic<bool> dead_{false};
};

class FakeSearcher : public IArfSearcher
{
 public:
  explicit FakeSearcher(FakeDb& db);
  ~FakeSearcher() override;

  void Release() override;
  IArfDb* GetArfDb() override;
  int LookupAddress(const char* address, char* out, int outSize, int amas) override;
  int FixLastLine(const char* input, char* out, int outSize) override;
  int ValidatePartialAddress(const char* input, char* out, int outSize) override;
  int GetAddress(const char* query, char* out, int outSize) override;
  int GetNextAddress(char* out, int outSize) override;
  int GetPopupHint(const char* text1, const char* text2, int number, char* out, int outSize) override;
  int GetNextPopupHint(char* out, int outSize) override;
  int GetAddressHint(const char* text1, const char* text2, char* out, int outSize) override;
  int GetNextAddressHint(char* out, int outSize) override;
  int GetFindStatus() override;
  int GetParsedInput(char* out, int outSize) override;
  int GetProperties(const char* name, char* out, int outSize) override;
  int SetProperties(const char* name, const char* value, char* errText, int errSize) override;
  int ValidateFullAddress(const char* input, char* out, int outSize, int flags, char* resultFlag) override;
  int FormatAddress(const char* input, char* out, long formatOption, int outSize) override;
  int SetGeographicalCodes(const char* codes, char* errText, int errSize) override;
  int BeginPolygonSearch(const char* text1, const char* text2) override;
  int GetNextAddressInPolygon(char* out, int outSize) override;
  int GetSearchStatistics(const char* text1, const char* text2, const char* text3, const char* text4, char* out,
                          int outSize) override;
  void TakeOverFrom(IArfSearcher* previous) override;
  void GetErrorDescription(char* out, int code, int outSize) override;
  int BeginGifConcordance(std::intptr_t a, std::intptr_t b, std::intptr_t c, std::intptr_t d, std::intptr_t e,
                          int n) override;
  int GetNextGifConcordance(char* out1, int size1, char* out2, int size2, void* detail) override;
  int BeginAddressSearch(const char* query) override;
  int GetNextAddressSearch(char* out, int outSize) override;

 private:
  class Inside;
  CallRecord Record(FakeOperation operation) const { return CallRecord(operation, this); }
  Answer Do(CallRecord& record, FakeOperation operation);
  int DoWithText(CallRecord& record, FakeOperation operation, char* out, int outSize);
  int DoNext(FakeOperation operation, char* out, int outSize);

  FakeDb& db_;
  std::atomic<bool> inside_{false};
  std::atomic<bool> dead_{false};
  // Not atomic on purpose: consecutive calls from different threads must be ordered by the library.
  unsigned long entries_ = 0;
};

}  // namespace fake

#endif
