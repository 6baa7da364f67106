#include "blackbox/support/fake.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace blackbox {
namespace {

[[noreturn]] void Fail(const char* libraryName, const char* reason)
{
  std::fprintf(stderr, "fake plug-in %s: %s\n(is LD_LIBRARY_PATH set to a folder of lib-fakes?)\n", libraryName,
               reason);
  std::exit(2);
}

Call ToCall(const FakeCall& raw)
{
  Call call{raw.operation, raw.object, raw.thread, {}};
  for (int i = 0; i < raw.argumentCount; ++i) {
    const FakeArgument& argument = raw.arguments[i];
    call.arguments.push_back({argument, argument.bytes == nullptr ? std::string() : std::string(argument.bytes)});
  }
  return call;
}

bool IsDatabaseGetter(const std::string& name)
{
  return name == "DbGetPath" || name == "DbGetCountry" || name == "DbRefCount" || name == "DbGetOpenMode";
}

}  // namespace

Fake::Fake(const char* libraryName) : handle_(dlopen(libraryName, RTLD_NOW))
{
  if (handle_ == nullptr) Fail(libraryName, dlerror());
  const auto function = reinterpret_cast<FakeControlFunction>(dlsym(handle_, "fake_control"));
  if (function == nullptr) Fail(libraryName, "no symbol fake_control");
  control_ = function();
}

Fake::~Fake()
{
  EXPECT_EQ(Violations(), "") << "the library broke the plug-in contract";
  dlclose(handle_);
}

void Fake::Answer(FakeOperation operation, int status, const char* text, const char* text2, char flag)
{
  const FakeAnswer answer = {status, text, text2, flag, kFakeCopy};
  control_->setAnswer(operation, &answer);
}

void Fake::Behave(FakeOperation operation, FakeBehaviour behaviour, int status)
{
  const FakeAnswer answer = {status, "", "", '\0', behaviour};
  control_->setAnswer(operation, &answer);
}

std::vector<Call> Fake::Calls(FakeOperation operation) const
{
  std::vector<Call> calls;
  FakeCall raw;
  while (control_->getCall(operation, calls.size(), &raw) != 0) calls.push_back(ToCall(raw));
  return calls;
}

Call Fake::Last(FakeOperation operation) const
{
  const size_t count = Count(operation);
  FakeCall raw;
  if (count != 0 && control_->getCall(operation, count - 1, &raw) != 0) return ToCall(raw);
  ADD_FAILURE() << control_->operationName(operation) << " was not called";
  return {};
}

std::string Fake::Sequence() const
{
  std::string all(1 << 16, '\0');
  control_->sequence(all.data(), all.size());
  std::istringstream names(all.c_str());
  std::string kept;
  for (std::string name; names >> name;) {
    if (!IsDatabaseGetter(name)) kept.append(name).append(" ");
  }
  return kept;
}

std::string Fake::Violations() const
{
  std::string text(4096, '\0');
  control_->violations(text.data(), text.size());
  return text.c_str();
}

bool IsLibraryLoaded(const char* libraryName)
{
  void* handle = dlopen(libraryName, RTLD_LAZY | RTLD_NOLOAD);
  if (handle == nullptr) {
    dlerror();
    return false;
  }
  dlclose(handle);
  return true;
}

}  // namespace blackbox
