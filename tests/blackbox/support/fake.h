/** The test's end of a fake plug-in: loads the same library that libqxpaf.so will load, and reads its records. */
#ifndef QXPAF_TESTS_BLACKBOX_SUPPORT_FAKE_H
#define QXPAF_TESTS_BLACKBOX_SUPPORT_FAKE_H

#include <string>
#include <vector>

#include "fakes/fake_control.h"

namespace blackbox {

/** One recorded argument; the comparisons fail when the kind is another. */
struct Argument
{
  FakeArgument raw;
  std::string text;

  bool operator==(const std::string& expected) const { return raw.kind == kFakeTextArgument && text == expected; }
  bool operator==(const char* expected) const { return *this == std::string(expected); }
  bool operator==(long long expected) const { return raw.kind == kFakeNumberArgument && raw.number == expected; }
  bool Is(const void* expected) const { return raw.kind == kFakePointerArgument && raw.pointer == expected; }
};

/** One recorded call. */
struct Call
{
  FakeOperation operation;
  const void* object;
  unsigned long thread;
  std::vector<Argument> arguments;
};

class Fake
{
 public:
  /** Loads a library by its file name as the loader finds it; a fault ends the process with a message. */
  explicit Fake(const char* libraryName);
  /** Reports breaches of the contract as test failures and lets go of the library. */
  ~Fake();
  Fake(const Fake&) = delete;
  Fake& operator=(const Fake&) = delete;

  const FakeControl* operator->() const { return control_; }

  void Answer(FakeOperation operation, int status, const char* text = "", const char* text2 = "", char flag = '\0');
  void Behave(FakeOperation operation, FakeBehaviour behaviour, int status = 0);

  std::vector<Call> Calls(FakeOperation operation) const;
  /** The last call of an operation; a test failure and an empty call when there was none. */
  Call Last(FakeOperation operation) const;
  size_t Count(FakeOperation operation) const { return control_->callCount(operation); }
  /** The recorded calls in order, "GetDb DbOpen …", each followed by a blank; without the getters of a database. */
  std::string Sequence() const;
  std::string Violations() const;

 private:
  void* handle_;
  const FakeControl* control_;
};

/** Whether the loader has a library of this file name in the process. */
bool IsLibraryLoaded(const char* libraryName);

}  // namespace blackbox

#endif
