/**
 * The entry points of one fake library. Definitions on the compiler's command line make it one particular library:
 *
 *     FAKE_LIBRARY_NAME, FAKE_COUNTRY        what it is called and which country it answers
 *     FAKE_WITHOUT_GET_DB and so on          leaves an entry point out
 *     FAKE_ODD_OPERATION                     the operation, or kFakeOperationCount for all, that is odd from loading on
 *     FAKE_ODD_STATUS, FAKE_ODD_TEXT, FAKE_ODD_BEHAVIOUR   in which way
 */
#include <cstring>
#include <memory>

#include "fakes/fake_control.h"
#include "fakes/fake_objects.h"
#include "fakes/fake_state.h"

#ifndef FAKE_ODD_OPERATION
#define FAKE_ODD_OPERATION (-1)
#endif
#ifndef FAKE_ODD_STATUS
#define FAKE_ODD_STATUS 0
#endif
#ifndef FAKE_ODD_TEXT
#define FAKE_ODD_TEXT ""
#endif
#ifndef FAKE_ODD_BEHAVIOUR
#define FAKE_ODD_BEHAVIOUR kFakeCopy
#endif

namespace fake {

const Identity kIdentity = {FAKE_LIBRARY_NAME,
                            FAKE_COUNTRY,
                            FAKE_ODD_OPERATION,
                            {FAKE_ODD_STATUS, FAKE_ODD_TEXT, "", '\0', FAKE_ODD_BEHAVIOUR}};

namespace {

/** Brings the state to life while the library is being loaded. */
[[maybe_unused]] State& loaded = State::Get();

void CopyOut(const std::string& text, char* out, size_t size)
{
  if (size == 0) return;
  const size_t length = std::min(text.size(), size - 1);
  std::memcpy(out, text.data(), length);
  out[length] = '\0';
}

void SetAnswer(FakeOperation operation, const FakeAnswer* answer)
{
  State::Get().SetAnswer(operation, *answer);
}
void ClearAnswer(FakeOperation operation)
{
  State::Get().ClearAnswer(operation);
}
void Reset()
{
  State::Get().Reset();
}
void SetCountry(const char* country)
{
  State::Get().SetCountry(country);
}
void SetReportedPath(const char* path)
{
  State::Get().SetReportedPath(path);
}
void SetProperty(const char* name, const char* value, int status)
{
  State::Get().SetProperty(name, value, status);
}
void SetRecording(int on)
{
  State::Get().SetRecording(on != 0);
}
size_t CallCount(FakeOperation operation)
{
  return State::Get().CallCount(operation);
}
int GetCall(FakeOperation operation, size_t index, FakeCall* call)
{
  return State::Get().GetCall(operation, index, *call) ? 1 : 0;
}
void Sequence(char* out, size_t size)
{
  CopyOut(State::Get().Sequence(), out, size);
}
void ClearCalls()
{
  State::Get().ClearCalls();
}
void Block(FakeOperation operation)
{
  State::Get().Block(operation);
}
int WaitUntilBlocked(FakeOperation operation, int milliseconds)
{
  return State::Get().WaitUntilBlocked(operation, milliseconds);
}
void Unblock(FakeOperation operation)
{
  State::Get().Unblock(operation);
}
long Counter(FakeCounter counter)
{
  return State::Get().Counter(counter);
}
int RefCount(const char* path)
{
  return State::Get().RefCount(path);
}
size_t Violations(char* out, size_t size)
{
  size_t count = 0;
  CopyOut(State::Get().Violations(count), out, size);
  return count;
}

const FakeControl kControl = {FAKE_LIBRARY_NAME, OperationName,   Reset,       SetAnswer,    ClearAnswer,
                              SetCountry,        SetReportedPath, SetProperty, SetRecording, CallCount,
                              GetCall,           Sequence,        ClearCalls,  Block,        WaitUntilBlocked,
                              Unblock,           Counter,         RefCount,    Violations};

}  // namespace
}  // namespace fake

QXPAF_PLUGIN_ENTRY const FakeControl* fake_control()
{
  return &fake::kControl;
}

#ifndef FAKE_WITHOUT_GET_DB
IArfDb* GetDb()
{
  fake::Log("GetDb");
  fake::CallRecord record(kFakeGetDb, nullptr);
  if (fake::State::Get().Perform(record).behaviour == kFakeAnswerNull) return nullptr;
  return fake::State::Get().CreateDb();
}
#endif

#ifndef FAKE_WITHOUT_GET_SEARCHER
IArfSearcher* GetSearcher(IArfDb* db)
{
  fake::Log("GetSearcher");
  fake::CallRecord record(kFakeGetSearcher, nullptr);
  if (fake::State::Get().Perform(record.Pointer(db)).behaviour == kFakeAnswerNull) return nullptr;
  return fake::State::Get().CreateSearcher(db);
}
#endif

#ifndef FAKE_WITHOUT_CAN_UNLOAD_NOW
int CanUnloadNow()
{
  fake::Log("CanUnloadNow");
  fake::State& state = fake::State::Get();
  fake::CallRecord record(kFakeCanUnloadNow, nullptr);
  const fake::Answer answer = state.Perform(record);
  if (answer.programmed) return answer.status;
  return state.Counter(kFakeLiveDbs) == 0 && state.Counter(kFakeLiveSearchers) == 0 ? 1 : 0;
}
#endif

#ifndef FAKE_WITHOUT_GET_OTHER_PROPERTIES
int GetOtherProperties(const char* request, char* out, int outSize)
{
  fake::CallRecord record(kFakeGetOtherProperties, nullptr);
  const fake::Answer answer = fake::State::Get().Perform(record.Text(request).Pointer(out).Number(outSize));
  fake::WriteText(answer, answer.text, out, outSize);
  return answer.status;
}
#endif
