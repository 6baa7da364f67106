#include "fakes/fake_objects.h"

#include <utility>

namespace fake {
namespace {

std::string Sentence(FakeOperation operation, const char* what)
{
  return std::string(OperationName(operation)) + " " + what;
}

}  // namespace

FakeDb::FakeDb()
{
  State::Get().Count(kFakeLiveDbs, 1);
}

FakeDb::~FakeDb()
{
  if (State::IsAlive()) State::Get().Violation("the destructor of a database was called");
}

void FakeDb::CheckAlive(FakeOperation operation) const
{
  if (dead_) State::Get().Violation(Sentence(operation, "called on a released database"));
}

void FakeDb::Release()
{
  CheckAlive(kFakeDbRelease);
  Log("DbRelease " + path_);
  if (openCalled_ && !closeCalled_) State::Get().Violation("database released without Close");
  if (closedUnderSearcher_) State::Get().Violation("a database was closed under a live searcher");
  if (!dead_.exchange(true)) {
    State::Get().Count(kFakeLiveDbs, -1);
    State::Get().Count(kFakeDbReleases, 1);
  }
  CallRecord record(kFakeDbRelease, this);
  State::Get().Perform(record);  // last, because it may throw: a database that throws in Release is gone all the same
}

const char* FakeDb::GetPath()
{
  CheckAlive(kFakeDbGetPath);
  CallRecord record(kFakeDbGetPath, this);
  State::Get().Perform(record);
  const char* reported = State::Get().ReportedPath();
  return reported != nullptr ? reported : path_.c_str();
}

const char* FakeDb::GetCountry()
{
  CheckAlive(kFakeDbGetCountry);
  CallRecord record(kFakeDbGetCountry, this);
  State::Get().Perform(record);
  return State::Get().Country();
}

int* FakeDb::RefCount()
{
  CheckAlive(kFakeDbRefCount);
  CallRecord record(kFakeDbRefCount, this);
  State::Get().Perform(record);
  return &count_;
}

int FakeDb::GetOpenMode()
{
  CheckAlive(kFakeDbGetOpenMode);
  CallRecord record(kFakeDbGetOpenMode, this);
  State::Get().Perform(record);
  return mode_;
}

int FakeDb::Open(const char* path, int mode, char* errText, int errSize)
{
  CheckAlive(kFakeDbOpen);
  if (openCalled_ && !closeCalled_) State::Get().Violation("a database was opened twice");
  mayCloseAgain_ = openCalled_;
  openCalled_ = true;
  closeCalled_ = false;
  closedUnderSearcher_ = false;
  path_ = path;
  mode_ = mode;
  Log("DbOpen " + path_);
  State::Get().Count(kFakeOpens, 1);
  CallRecord record(kFakeDbOpen, this);
  record.Text(path).Number(mode).Buffer(errText, errSize).Number(errSize);
  const Answer answer = State::Get().Perform(record);
  if (answer.status != 0) WriteText(answer, answer.text, errText, errSize);
  open_ = answer.status == 0;
  mayCloseAgain_ = mayCloseAgain_ && !open_;
  return answer.status;
}

void FakeDb::Close()
{
  CheckAlive(kFakeDbClose);
  Log("DbClose " + path_);
  if (!openCalled_) State::Get().Violation("Close without Open");
  if (closeCalled_ && !mayCloseAgain_) State::Get().Violation("a database was closed twice");
  closedUnderSearcher_ = searchers_ != 0;
  closeCalled_ = true;
  open_ = false;
  State::Get().Count(kFakeCloses, 1);
  CallRecord record(kFakeDbClose, this);
  const bool openedInVain = std::exchange(mayCloseAgain_, true);
  State::Get().Perform(record);
  mayCloseAgain_ = openedInVain;
}

/** Notices calls on dead searchers and two threads in one searcher. */
class FakeSearcher::Inside
{
 public:
  Inside(FakeSearcher& searcher, FakeOperation operation) : searcher_(searcher)
  {
    if (searcher.dead_) State::Get().Violation(Sentence(operation, "called on a released searcher"));
    if (searcher.inside_.exchange(true, std::memory_order_relaxed))
      State::Get().Violation(Sentence(operation, "entered while another operation of the searcher runs"));
    ++searcher.entries_;
  }
  ~Inside() { searcher_.inside_.store(false, std::memory_order_relaxed); }
  Inside(const Inside&) = delete;
  Inside& operator=(const Inside&) = delete;

 private:
  FakeSearcher& searcher_;
};

FakeSearcher::FakeSearcher(FakeDb& db) : db_(db)
{
  State::Get().Count(kFakeLiveSearchers, 1);
  db_.SearcherCreated();
}

FakeSearcher::~FakeSearcher()
{
  if (State::IsAlive()) State::Get().Violation("the destructor of a searcher was called");
}

Answer FakeSearcher::Do(CallRecord& record, FakeOperation operation)
{
  Inside inside(*this, operation);
  return State::Get().Perform(record);
}

int FakeSearcher::DoWithText(CallRecord& record, FakeOperation operation, char* out, int outSize)
{
  const Answer answer = Do(record.Pointer(out).Number(outSize), operation);
  WriteText(answer, answer.text, out, outSize);
  return answer.status;
}

int FakeSearcher::DoNext(FakeOperation operation, char* out, int outSize)
{
  CallRecord record = Record(operation);
  return DoWithText(record, operation, out, outSize);
}

void FakeSearcher::Release()
{
  Log("Release");
  Inside inside(*this, kFakeRelease);
  if (!dead_.exchange(true)) {
    db_.SearcherReleased();
    State::Get().Count(kFakeLiveSearchers, -1);
    State::Get().Count(kFakeSearcherReleases, 1);
  }
  CallRecord record = Record(kFakeRelease);
  State::Get().Perform(record);  // last, as in FakeDb::Release
}

IArfDb* FakeSearcher::GetArfDb()
{
  if (dead_) State::Get().Violation("GetArfDb called on a released searcher");
  CallRecord record = Record(kFakeGetArfDb);
  const Answer answer = State::Get().Perform(record);
  return answer.behaviour == kFakeAnswerNull ? nullptr : &db_;
}

int FakeSearcher::LookupAddress(const char* address, char* out, int outSize, int amas)
{
  CallRecord record = Record(kFakeLookupAddress);
  const Answer answer = Do(record.Text(address).Pointer(out).Number(outSize).Number(amas), kFakeLookupAddress);
  WriteText(answer, answer.text, out, outSize);
  return answer.status;
}

int FakeSearcher::FixLastLine(const char* input, char* out, int outSize)
{
  CallRecord record = Record(kFakeFixLastLine);
  return DoWithText(record.Text(input), kFakeFixLastLine, out, outSize);
}

int FakeSearcher::ValidatePartialAddress(const char* input, char* out, int outSize)
{
  CallRecord record = Record(kFakeValidatePartialAddress);
  return DoWithText(record.Text(input), kFakeValidatePartialAddress, out, outSize);
}

int FakeSearcher::GetAddress(const char* query, char* out, int outSize)
{
  CallRecord record = Record(kFakeGetAddress);
  return DoWithText(record.Text(query), kFakeGetAddress, out, outSize);
}

int FakeSearcher::GetNextAddress(char* out, int outSize)
{
  return DoNext(kFakeGetNextAddress, out, outSize);
}

int FakeSearcher::GetPopupHint(const char* text1, const char* text2, int number, char* out, int outSize)
{
  CallRecord record = Record(kFakeGetPopupHint);
  return DoWithText(record.Text(text1).Text(text2).Number(number), kFakeGetPopupHint, out, outSize);
}

int FakeSearcher::GetNextPopupHint(char* out, int outSize)
{
  return DoNext(kFakeGetNextPopupHint, out, outSize);
}

int FakeSearcher::GetAddressHint(const char* text1, const char* text2, char* out, int outSize)
{
  CallRecord record = Record(kFakeGetAddressHint);
  return DoWithText(record.Text(text1).Text(text2), kFakeGetAddressHint, out, outSize);
}

int FakeSearcher::GetNextAddressHint(char* out, int outSize)
{
  return DoNext(kFakeGetNextAddressHint, out, outSize);
}

int FakeSearcher::GetFindStatus()
{
  CallRecord record = Record(kFakeGetFindStatus);
  return Do(record, kFakeGetFindStatus).status;
}

int FakeSearcher::GetParsedInput(char* out, int outSize)
{
  return DoNext(kFakeGetParsedInput, out, outSize);
}

int FakeSearcher::GetProperties(const char* name, char* out, int outSize)
{
  CallRecord record = Record(kFakeGetProperties);
  Answer answer = Do(record.Text(name).Pointer(out).Number(outSize), kFakeGetProperties);
  State::Get().PropertyAnswer(name, answer);
  WriteText(answer, answer.text, out, outSize);
  return answer.status;
}

int FakeSearcher::SetProperties(const char* name, const char* value, char* errText, int errSize)
{
  CallRecord record = Record(kFakeSetProperties);
  record.Text(name).Text(value).Buffer(errText, errSize).Number(errSize);
  const Answer answer = Do(record, kFakeSetProperties);
  if (answer.status != 0) WriteText(answer, answer.text, errText, errSize);
  return answer.status;
}

int FakeSearcher::ValidateFullAddress(const char* input, char* out, int outSize, int flags, char* resultFlag)
{
  CallRecord record = Record(kFakeValidateFullAddress);
  record.Text(input).Pointer(out).Number(outSize).Number(flags).Buffer(resultFlag, 1);
  const Answer answer = Do(record, kFakeValidateFullAddress);
  WriteText(answer, answer.text, out, outSize);
  if (resultFlag != nullptr && answer.programmed && answer.behaviour != kFakeSilent) *resultFlag = answer.flag;
  return answer.status;
}

int FakeSearcher::FormatAddress(const char* input, char* out, long formatOption, int outSize)
{
  CallRecord record = Record(kFakeFormatAddress);
  const Answer answer = Do(record.Text(input).Pointer(out).Number(formatOption).Number(outSize), kFakeFormatAddress);
  WriteText(answer, answer.text, out, outSize);
  return answer.status;
}

int FakeSearcher::SetGeographicalCodes(const char* codes, char* errText, int errSize)
{
  CallRecord record = Record(kFakeSetGeographicalCodes);
  const Answer answer = Do(record.Text(codes).Buffer(errText, errSize).Number(errSize), kFakeSetGeographicalCodes);
  if (answer.status != 0) WriteText(answer, answer.text, errText, errSize);
  return answer.status;
}

int FakeSearcher::BeginPolygonSearch(const char* text1, const char* text2)
{
  CallRecord record = Record(kFakeBeginPolygonSearch);
  return Do(record.Text(text1).Text(text2), kFakeBeginPolygonSearch).status;
}

int FakeSearcher::GetNextAddressInPolygon(char* out, int outSize)
{
  return DoNext(kFakeGetNextAddressInPolygon, out, outSize);
}

int FakeSearcher::GetSearchStatistics(const char* text1, const char* text2, const char* text3, const char* text4,
                                      char* out, int outSize)
{
  CallRecord record = Record(kFakeGetSearchStatistics);
  record.Text(text1).Text(text2).Text(text3).Text(text4);
  return DoWithText(record, kFakeGetSearchStatistics, out, outSize);
}

void FakeSearcher::TakeOverFrom(IArfSearcher* previous)
{
  CallRecord record = Record(kFakeTakeOverFrom);
  Do(record.Pointer(previous), kFakeTakeOverFrom);
}

void FakeSearcher::GetErrorDescription(char* out, int code, int outSize)
{
  CallRecord record = Record(kFakeGetErrorDescription);
  const Answer answer = Do(record.Pointer(out).Number(code).Number(outSize), kFakeGetErrorDescription);
  const std::string usual = "fake text for " + std::to_string(code);
  WriteText(answer, answer.programmed ? answer.text : usual.c_str(), out, outSize);
}

int FakeSearcher::BeginGifConcordance(std::intptr_t a, std::intptr_t b, std::intptr_t c, std::intptr_t d,
                                      std::intptr_t e, int n)
{
  CallRecord record = Record(kFakeBeginGifConcordance);
  return Do(record.Number(a).Number(b).Number(c).Number(d).Number(e).Number(n), kFakeBeginGifConcordance).status;
}

int FakeSearcher::GetNextGifConcordance(char* out1, int size1, char* out2, int size2, void* detail)
{
  CallRecord record = Record(kFakeGetNextGifConcordance);
  record.Pointer(out1).Number(size1).Pointer(out2).Number(size2).Pointer(detail);
  const Answer answer = Do(record, kFakeGetNextGifConcordance);
  WriteText(answer, answer.text, out1, size1);
  WriteText(answer, answer.text2, out2, size2);
  return answer.status;
}

int FakeSearcher::BeginAddressSearch(const char* query)
{
  CallRecord record = Record(kFakeBeginAddressSearch);
  return Do(record.Text(query), kFakeBeginAddressSearch).status;
}

int FakeSearcher::GetNextAddressSearch(char* out, int outSize)
{
  return DoNext(kFakeGetNextAddressSearch, out, outSize);
}

}  // namespace fake
