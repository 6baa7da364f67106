#include "fakes/fake_state.h"

#include <pthread.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstring>
#include <new>
#include <stdexcept>

#include "fakes/event_log.h"
#include "fakes/fake_objects.h"

namespace fake {
namespace {

std::atomic<bool> stateAlive{false};

std::string Lower(const char* text)
{
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

}  // namespace

void Log(const std::string& event)
{
  LogEvent(kIdentity.libraryName, event.c_str());
}

const char* OperationName(FakeOperation operation)
{
  static const char* const kNames[] = {
#define QXPAF_FAKE_NAME(name) #name,
      QXPAF_FAKE_OPERATIONS(QXPAF_FAKE_NAME)
#undef QXPAF_FAKE_NAME
  };
  return operation >= 0 && operation < kFakeOperationCount ? kNames[operation] : "?";
}

void WriteText(const Answer& answer, const char* text, char* out, int size)
{
  if (out == nullptr || size < 1 || answer.behaviour == kFakeSilent) return;
  const size_t room = static_cast<size_t>(size) - 1;
  if (answer.behaviour == kFakeFill) {
    std::memset(out, 'x', room);
    out[room] = '\0';
    return;
  }
  const size_t length = std::min(std::strlen(text), room);
  std::memcpy(out, text, length);
  out[length] = '\0';
}

CallRecord::CallRecord(FakeOperation operation, const void* object) : recording_(State::Get().Recording())
{
  call_.operation = operation;
  call_.object = object;
  call_.thread = pthread_self();
}

FakeArgument& CallRecord::Next(FakeArgumentKind kind)
{
  FakeArgument& argument = call_.arguments[call_.argumentCount++];
  argument.kind = kind;
  return argument;
}

CallRecord& CallRecord::Text(const char* text)
{
  const int index = call_.argumentCount;
  FakeArgument& argument = Next(kFakeTextArgument);
  argument.pointer = text;
  if (text == nullptr || !recording_) return *this;
  texts_[static_cast<size_t>(index)] = text;
  argument.length = texts_[static_cast<size_t>(index)].size();
  return *this;
}

CallRecord& CallRecord::Number(long long number)
{
  Next(kFakeNumberArgument).number = number;
  return *this;
}

CallRecord& CallRecord::Pointer(const void* pointer)
{
  Next(kFakePointerArgument).pointer = pointer;
  return *this;
}

CallRecord& CallRecord::Buffer(const char* buffer, long long size)
{
  FakeArgument& argument = Next(kFakePointerArgument);
  argument.pointer = buffer;
  if (buffer != nullptr && size > 0) argument.number = static_cast<unsigned char>(*buffer);
  return *this;
}

/** Lives from the loading to the unloading of the library, but outlives the end of a process in which a thread still
    waits at a gate: destroying what it waits on would wait for it. */
class State::Home
{
 public:
  Home() : state_(new State) {}
  ~Home()
  {
    if (!state_->IsAnyoneWaiting()) delete state_;
  }
  Home(const Home&) = delete;
  Home& operator=(const Home&) = delete;

  State& Get() { return *state_; }

 private:
  State* state_;
};

State& State::Get()
{
  static Home home;
  return home.Get();
}

bool State::IsAnyoneWaiting()
{
  std::lock_guard<std::mutex> lock(mutex_);
  return std::any_of(gates_.begin(), gates_.end(), [](const Gate& gate) { return gate.waiting != 0; });
}

bool State::IsAlive()
{
  return stateAlive;
}

State::State()
{
  OpenEventLog();
  stateAlive = true;
  Reset();
  Log("load");
}

State::~State()
{
  stateAlive = false;
  Log("unload");
}

void State::WaitAtGate(FakeOperation operation)
{
  Gate& gate = gates_[operation];
  if (!gate.closed.load(std::memory_order_relaxed)) return;
  std::unique_lock<std::mutex> lock(mutex_);
  ++gate.waiting;
  changed_.notify_all();
  changed_.wait(lock, [&] { return !gate.closed; });
  --gate.waiting;
}

Answer State::Perform(CallRecord& record)
{
  const FakeOperation operation = record.call_.operation;
  if (!stateAlive) {
    Log(std::string("VIOLATION call after unloading: ") + OperationName(operation));
    return {};
  }
  if (record.recording_) {
    std::lock_guard<std::mutex> lock(mutex_);
    StoreLocked(record);
  }
  WaitAtGate(operation);
  const Answer* answer = answers_[operation].load(std::memory_order_acquire);
  if (answer == nullptr) return {};
  switch (answer->behaviour) {
    case kFakeThrowBadAlloc:
      throw std::bad_alloc();
    case kFakeThrowError:
      throw std::runtime_error("thrown by the fake plug-in");
    case kFakeThrowInt:
      throw 42;
    default:
      return *answer;
  }
}

void State::StoreLocked(CallRecord& record)
{
  calls_.push_back({record.call_, std::move(record.texts_)});
  StoredCall& stored = calls_.back();
  for (size_t i = 0; i < stored.texts.size(); ++i) stored.call.arguments[i].bytes = stored.texts[i].c_str();
}

bool State::PropertyAnswer(const char* name, Answer& answer)
{
  if (name == nullptr) return false;
  std::lock_guard<std::mutex> lock(mutex_);
  const auto found = properties_.find(Lower(name));
  if (found == properties_.end()) return false;
  answer = found->second;
  return true;
}

void State::Violation(const std::string& sentence)
{
  Log("VIOLATION " + sentence);
  if (!stateAlive) return;
  std::lock_guard<std::mutex> lock(mutex_);
  violations_.push_back(sentence);
}

FakeDb* State::CreateDb()
{
  auto db = std::make_unique<FakeDb>();
  std::lock_guard<std::mutex> lock(mutex_);
  dbs_.push_back(std::move(db));
  return dbs_.back().get();
}

FakeSearcher* State::CreateSearcher(IArfDb* db)
{
  auto searcher = std::make_unique<FakeSearcher>(*static_cast<FakeDb*>(db));
  if (!static_cast<FakeDb*>(db)->IsOpen()) Violation("GetSearcher called with a database that is not open");
  std::lock_guard<std::mutex> lock(mutex_);
  searchers_.push_back(std::move(searcher));
  return searchers_.back().get();
}

const char* State::InternLocked(const char* text)
{
  keptTexts_.emplace_back(text == nullptr ? "" : text);
  return keptTexts_.back().c_str();
}

void State::ProgramLocked(FakeOperation operation, const FakeAnswer& answer)
{
  keptAnswers_.push_back(
      {true, answer.status, InternLocked(answer.text), InternLocked(answer.text2), answer.flag, answer.behaviour});
  answers_[operation].store(&keptAnswers_.back(), std::memory_order_release);
}

void State::ProgramOddityLocked()
{
  for (int operation = 0; operation < kFakeOperationCount; ++operation) {
    if (kIdentity.oddOperation == operation || kIdentity.oddOperation == kFakeOperationCount)
      ProgramLocked(static_cast<FakeOperation>(operation), kIdentity.oddAnswer);
  }
}

void State::Reset()
{
  std::lock_guard<std::mutex> lock(mutex_);
  for (auto& answer : answers_) answer = nullptr;
  for (auto& gate : gates_) gate.closed = false;
  changed_.notify_all();
  recording_ = true;
  country_ = kIdentity.country;
  reportedPath_ = nullptr;
  properties_.clear();
  calls_.clear();
  violations_.clear();
  ProgramOddityLocked();
}

void State::SetAnswer(FakeOperation operation, const FakeAnswer& answer)
{
  std::lock_guard<std::mutex> lock(mutex_);
  ProgramLocked(operation, answer);
}

void State::ClearAnswer(FakeOperation operation)
{
  answers_[operation] = nullptr;
}

void State::SetCountry(const char* country)
{
  std::lock_guard<std::mutex> lock(mutex_);
  country_ = InternLocked(country);
}

void State::SetReportedPath(const char* path)
{
  std::lock_guard<std::mutex> lock(mutex_);
  reportedPath_ = path == nullptr ? nullptr : InternLocked(path);
}

void State::SetProperty(const char* name, const char* value, int status)
{
  std::lock_guard<std::mutex> lock(mutex_);
  Answer answer;
  answer.programmed = true;
  answer.status = status;
  answer.text = InternLocked(value);
  if (value == nullptr) answer.behaviour = kFakeSilent;
  properties_[Lower(name)] = answer;
}

size_t State::CallCount(FakeOperation operation)
{
  std::lock_guard<std::mutex> lock(mutex_);
  return static_cast<size_t>(std::count_if(
      calls_.begin(), calls_.end(), [&](const StoredCall& stored) { return stored.call.operation == operation; }));
}

bool State::GetCall(FakeOperation operation, size_t index, FakeCall& call)
{
  std::lock_guard<std::mutex> lock(mutex_);
  for (const StoredCall& stored : calls_) {
    if (stored.call.operation != operation || index-- != 0) continue;
    call = stored.call;
    return true;
  }
  return false;
}

std::string State::Sequence()
{
  std::lock_guard<std::mutex> lock(mutex_);
  std::string names;
  for (const StoredCall& stored : calls_) names.append(OperationName(stored.call.operation)).append(" ");
  return names;
}

void State::ClearCalls()
{
  std::lock_guard<std::mutex> lock(mutex_);
  calls_.clear();
}

void State::Block(FakeOperation operation)
{
  std::lock_guard<std::mutex> lock(mutex_);
  gates_[operation].closed = true;
}

int State::WaitUntilBlocked(FakeOperation operation, int milliseconds)
{
  std::unique_lock<std::mutex> lock(mutex_);
  const auto limit = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
  changed_.wait_until(lock, limit, [&] { return gates_[operation].waiting > 0; });
  return gates_[operation].waiting;
}

void State::Unblock(FakeOperation operation)
{
  std::lock_guard<std::mutex> lock(mutex_);
  gates_[operation].closed = false;
  changed_.notify_all();
}

int State::RefCount(const char* path)
{
  std::lock_guard<std::mutex> lock(mutex_);
  for (const auto& db : dbs_) {
    if (db->IsOpen() && db->OpenedPath() == path) return db->Count();
  }
  return -1;
}

std::string State::Violations(size_t& count)
{
  std::lock_guard<std::mutex> lock(mutex_);
  count = violations_.size();
  std::string lines;
  for (const std::string& sentence : violations_) lines.append(sentence).append("\n");
  return lines;
}

}  // namespace fake
