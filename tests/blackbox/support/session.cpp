#include "blackbox/support/session.h"

#include "blackbox/support/guarded_buffer.h"

namespace blackbox {

std::string Describe(int code, int size)
{
  GuardedBuffer buffer(static_cast<size_t>(size));
  EXPECT_EQ(pafGetErrorDescription(buffer.data(), code, size), 0);
  EXPECT_TRUE(buffer.IsTerminated());
  return buffer.Text();
}

int Open(const std::string& name, int memoryMode)
{
  int id = 0;
  const int status = pafOpenArfId(&id, memoryMode, name.c_str());
  EXPECT_EQ(status, 0) << "opening " << name << ": " << Describe(status);
  EXPECT_GT(id, 0);
  return status == 0 ? id : 0;
}

BlockedCall::BlockedCall(Fake& fake, FakeOperation operation, std::function<int()> call)
    : fake_(fake), operation_(operation)
{
  fake_->block(operation);
  thread_ = std::thread([this, call] { status_ = call(); });
  EXPECT_GT(fake_->waitUntilBlocked(operation, 10000), 0) << "the call did not reach the plug-in";
}

BlockedCall::~BlockedCall()
{
  Finish();
}

int BlockedCall::Finish()
{
  fake_->unblock(operation_);
  if (thread_.joinable()) thread_.join();
  return status_;
}

BusyInstance::BusyInstance(Fake& fake, int id)
    : call_(fake, kFakeLookupAddress, [this, id] { return pafLookupAddress(id, text_, sizeof text_, 0); })
{
}

}  // namespace blackbox
