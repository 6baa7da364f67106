/** The state behind the control functions: programmed answers, recorded calls, gates and counters. */
#ifndef QXPAF_TESTS_FAKES_FAKE_STATE_H
#define QXPAF_TESTS_FAKES_FAKE_STATE_H

#include <array>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "fakes/fake_control.h"
#include "qxpaf/arf_plugin.h"

namespace fake {

/** How this library differs from a well-behaved one from the moment of loading, and what it is called. */
struct Identity
{
  const char* libraryName;
  const char* country;
  int oddOperation;  // -1: none, kFakeOperationCount: all
  FakeAnswer oddAnswer;
};

/** Defined by the entry points of each fake library. */
extern const Identity kIdentity;

/** Collects one call's arguments; texts are copied only while recording. */
class CallRecord
{
 public:
  CallRecord(FakeOperation operation, const void* object);
  CallRecord& Text(const char* text);
  CallRecord& Number(long long number);
  CallRecord& Pointer(const void* pointer);
  /** A buffer that must arrive with defined contents: keeps its first byte. */
  CallRecord& Buffer(const char* buffer, long long size);

 private:
  friend class State;
  FakeArgument& Next(FakeArgumentKind kind);

  FakeCall call_{};
  std::array<std::string, kFakeMaxArguments> texts_;
  bool recording_;
};

/** A programmed or default answer. Texts stay valid as long as the library is loaded. */
struct Answer
{
  bool programmed = false;
  int status = 0;
  const char* text = "";
  const char* text2 = "";
  char flag = '\0';
  FakeBehaviour behaviour = kFakeCopy;
};

class FakeDb;
class FakeSearcher;

class State
{
 public:
  static State& Get();
  /** False before construction and after destruction, when Get must not be called. */
  static bool IsAlive();

  ~State();
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  /** Records a call, waits at a closed gate, throws if so programmed, and otherwise gives the answer. */
  Answer Perform(CallRecord& record);
  bool PropertyAnswer(const char* name, Answer& answer);
  const char* Country() const { return country_.load(); }
  const char* ReportedPath() const { return reportedPath_.load(); }
  bool Recording() const { return recording_.load(std::memory_order_relaxed); }

  void Count(FakeCounter counter, long change) { counters_[counter].fetch_add(change, std::memory_order_relaxed); }
  void Violation(const std::string& sentence);

  /** Objects belong to the state from creation to unloading; Release only marks them dead, so that a later use is
      noticed instead of crashing. */
  FakeDb* CreateDb();
  FakeSearcher* CreateSearcher(IArfDb* db);

  void Reset();
  void SetAnswer(FakeOperation operation, const FakeAnswer& answer);
  void ClearAnswer(FakeOperation operation);
  void SetCountry(const char* country);
  void SetReportedPath(const char* path);
  void SetProperty(const char* name, const char* value, int status);
  void SetRecording(bool on) { recording_ = on; }
  size_t CallCount(FakeOperation operation);
  bool GetCall(FakeOperation operation, size_t index, FakeCall& call);
  std::string Sequence();
  void ClearCalls();
  void Block(FakeOperation operation);
  int WaitUntilBlocked(FakeOperation operation, int milliseconds);
  void Unblock(FakeOperation operation);
  long Counter(FakeCounter counter) const { return counters_[counter].load(); }
  int RefCount(const char* path);
  std::string Violations(size_t& count);

 private:
  class Home;
  struct Gate
  {
    std::atomic<bool> closed{false};
    int waiting = 0;
  };

  State();
  const char* InternLocked(const char* text);
  void StoreLocked(CallRecord& record);
  void ProgramLocked(FakeOperation operation, const FakeAnswer& answer);
  void ProgramOddityLocked();
  void WaitAtGate(FakeOperation operation);
  bool IsAnyoneWaiting();

  std::mutex mutex_;  // guards everything that is not atomic; never held while a call waits or after Perform returns
  std::condition_variable changed_;
  std::array<std::atomic<const Answer*>, kFakeOperationCount> answers_{};
  std::array<Gate, kFakeOperationCount> gates_;
  std::array<std::atomic<long>, kFakeCounterCount> counters_{};
  std::atomic<bool> recording_{true};
  std::atomic<const char*> country_{nullptr};
  std::atomic<const char*> reportedPath_{nullptr};

  std::deque<Answer> keptAnswers_;
  std::deque<std::string> keptTexts_;
  std::map<std::string, Answer> properties_;
  struct StoredCall
  {
    FakeCall call;
    std::array<std::string, kFakeMaxArguments> texts;
  };
  std::deque<StoredCall> calls_;
  std::vector<std::string> violations_;
  std::vector<std::unique_ptr<FakeDb>> dbs_;
  std::vector<std::unique_ptr<FakeSearcher>> searchers_;
};

/** Appends "<library> <event>" to the life-cycle log, if there is one. Works before and after State lives. */
void Log(const std::string& event);

/** "LookupAddress" for kFakeLookupAddress and so on. */
const char* OperationName(FakeOperation operation);

/** Writes an answer's text as its behaviour says. Nothing is written when size is below 1. */
void WriteText(const Answer& answer, const char* text, char* out, int size);

}  // namespace fake

#endif
