/** The usual setting of a test: a workspace, the fake of no particular country, and one instance open on it. */
#ifndef QXPAF_TESTS_BLACKBOX_SUPPORT_SESSION_H
#define QXPAF_TESTS_BLACKBOX_SUPPORT_SESSION_H

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "blackbox/support/fake.h"
#include "blackbox/support/workspace.h"
#include "qxpaf/paf.h"

namespace blackbox {

/** What pafGetErrorDescription answers on this thread; consumes the last error. */
std::string Describe(int code, int size = 512);

/** Opens an instance; a failure is reported as one of the test. @return its Id */
int Open(const std::string& name, int memoryMode = 0);

/** A fixture with one open instance `id` on the fake library "DLL:FakeTwo", whose country has no version gates. */
class SessionTest : public testing::Test
{
 protected:
  void SetUp() override { id = Open("DLL:FakeTwo;/session"); }
  void TearDown() override { pafClosePafId(id); }

  Workspace workspace{std::vector<std::string>{}};
  Fake fake{"libfaketwo.so"};
  int id = 0;
};

/** A call on a thread of its own that stands inside an operation of the plug-in until Finish. */
class BlockedCall
{
 public:
  BlockedCall(Fake& fake, FakeOperation operation, std::function<int()> call);
  ~BlockedCall();
  BlockedCall(const BlockedCall&) = delete;
  BlockedCall& operator=(const BlockedCall&) = delete;

  /** Lets the call go on and waits for its thread to end. @return its status */
  int Finish();

 private:
  Fake& fake_;
  FakeOperation operation_;
  int status_ = -1;
  std::thread thread_;
};

/** Holds an instance busy: a thread of its own stands inside the plug-in's LookupAddress until Finish. */
class BusyInstance
{
 public:
  BusyInstance(Fake& fake, int id);

  /** Lets the call go on. @return its status */
  int Finish() { return call_.Finish(); }
  /** What the call wrote into its buffer. */
  const char* Text() const { return text_; }

 private:
  char text_[64] = "1 High St";
  BlockedCall call_;
};

}  // namespace blackbox

#endif
