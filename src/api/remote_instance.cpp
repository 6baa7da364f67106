#include "api/remote_instance.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/ascii.h"
#include "qxpaf/paf.h"
#include "qxpaf/remote.h"

namespace qxpaf {
namespace {

/** Of an instance that the server lost and that could not be opened again: no server gives it out. */
constexpr int kLostServerId = -1;

constexpr char kAssign = '=';

void SetRemoteName(PafInfo& info, int memoryMode, const char* arfName)
{
  std::string copy = arfName;
  const QXScopedLock lock(InstanceTableLock(), true);
  info.remoteArfName = std::move(copy);
  info.remoteMemoryMode = memoryMode;
}

void ClearProperties(PafInfo& info)
{
  SetRemoteName(info, 0, "");
  info.remoteProperties.clear();
}

/** Takes the notice of a broken connection, once, to every instance. */
void SpreadBrokenConnection()
{
  if (!IsSocketBroken()) return;
  const QXScopedLock lock(InstanceTableLock(), true);
  if (!IsSocketBroken()) return;  // another thread took it: instances may be back already
  for (PafInfo* const info : InstancesLocked()) {
    if (info != nullptr) info->reconnectNeeded = true;
  }
  AcknowlegeSocketIsBroken();
}

bool NeedsReconnection(const PafInfo& info)
{
  const QXScopedLock lock(InstanceTableLock(), true);
  return info.reconnectNeeded;
}

void SetNeedsReconnection(PafInfo& info, bool needed)
{
  const QXScopedLock lock(InstanceTableLock(), true);
  info.reconnectNeeded = needed;
}

/** Takes the notice of a broken connection, which does not concern an instance that is only about to be opened. */
void PrepareToOpen(PafInfo& info)
{
  ReconnectIfBroken(info);
  SetNeedsReconnection(info, false);
}

/** Sets what the instance had on the server that it lost, in the order in which it was first set. */
int ReplayProperties(const PafInfo& info)
{
  for (const std::string& entry : info.remoteProperties) {
    const std::size_t assign = entry.find(kAssign);
    const std::string name = entry.substr(0, assign);
    const int status = SetPropertiesIdViaSocket(info.serverId, name.c_str(), entry.c_str() + assign + 1);
    if (status != 0) return status;
  }
  return PAF_OK;
}

int OpenAgain(PafInfo& info)
{
  // Taken back before the request, not after it: the connection may break again in between.
  SetNeedsReconnection(info, false);
  info.serverId = 0;
  const int status = OpenArfIdViaSocket(&info.serverId, info.remoteMemoryMode, info.remoteArfName.c_str());
  if (status != 0) {
    info.serverId = kLostServerId;
    SetNeedsReconnection(info, true);
    return status;
  }
  return ReplayProperties(info);
}

/** True when the entry is for this name, or for one with which this name begins: callers rely on that too. */
bool IsFor(std::string_view entry, std::string_view name)
{
  const std::string_view entryName = entry.substr(0, entry.find(kAssign));
  return StartsWithIgnoringCase(name, entryName);
}

}  // namespace

int OpenRemote(PafInfo& info, int memoryMode, const char* arfName)
{
  ClearProperties(info);
  PrepareToOpen(info);
  const int status = OpenArfIdViaSocket(&info.serverId, memoryMode, arfName);
  if (status == 0) SetRemoteName(info, memoryMode, arfName);
  return status;
}

int OpenRemoteDefault(PafInfo& info, int memoryMode)
{
  PrepareToOpen(info);
  const int status = OpenPafMemIdViaSocket(&info.serverId, memoryMode);
  ClearProperties(info);
  SetRemoteName(info, memoryMode, "");
  return status;
}

int ChangeRemote(PafInfo& info, int memoryMode, const char* arfName)
{
  if (info.remoteArfName == arfName) return PAF_OK;
  if (const int status = ReconnectIfBroken(info); status != 0) return status;
  int fresh = 0;
  if (const int status = OpenArfIdViaSocket(&fresh, memoryMode, arfName); status != 0) return status;
  ClosePafIdViaSocket(info.serverId);
  ClearProperties(info);
  info.serverId = fresh;
  SetRemoteName(info, memoryMode, arfName);
  return PAF_OK;
}

int CloseRemote(PafInfo& info)
{
  int status = PAF_OK;
  if (!NeedsReconnection(info) && !IsSocketBroken()) status = ClosePafIdViaSocket(info.serverId);
  info.serverId = 0;
  ClearProperties(info);
  return status;
}

int ReconnectIfBroken(PafInfo& info)
{
  SpreadBrokenConnection();
  return info.serverId != 0 && NeedsReconnection(info) ? OpenAgain(info) : static_cast<int>(PAF_OK);
}

void RememberProperty(PafInfo& info, const char* name, const char* value)
{
  auto& entries = info.remoteProperties;
  std::string fresh = std::string(name) + kAssign + value;
  const auto same =
      std::find_if(entries.begin(), entries.end(), [name](const std::string& entry) { return IsFor(entry, name); });
  if (same == entries.end()) {
    entries.push_back(std::move(fresh));
  } else if (!EqualIgnoringCase(std::string_view(*same).substr(same->find(kAssign) + 1), value)) {
    *same = std::move(fresh);
  }
}

}  // namespace qxpaf
