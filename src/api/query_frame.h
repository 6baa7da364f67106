/** The frame around every operation on an instance. */
#ifndef QXPAF_SRC_API_QUERY_FRAME_H
#define QXPAF_SRC_API_QUERY_FRAME_H

#include "api/instance_table.h"
#include "api/remote_instance.h"
#include "errors/boundary.h"
#include "errors/thread_data.h"

namespace qxpaf {

/** Whether a remote instance whose connection broke is opened again before the call, or keeps its lost state. */
enum class Reconnect
{
  First,
  Never
};

/** The remote call of operations for which there is no request. */
struct NoRequest
{
  int operator()(PafInfo& /*info*/) const { return PAF_ERR_NOT_IMPLEMENTED; }
};

/** Status of a searcher's operation, recorded with its detail (may be null) when it is a failure. */
inline int RecordFailure(int status, int id, const char* text)
{
  return status == 0 ? status : SetInstanceError(status, id, text);
}

/**
 * Runs one operation on an instance: takes it, brings a remote one back or not, calls `remote` with it or `local`
 * with its searcher, and lets it go on every path. Failures that the frame finds itself are not recorded;
 * `local` records its own. Allocates nothing.
 */
template <class Remote, class Local>
int WithInstance(int id, Reconnect reconnect, Remote&& remote, Local&& local)
{
  PafInfo* info = nullptr;
  const DecrementUsageCountWhenFinished guard(info);
  if (const int status = AcquireInstance(id, info); status != 0) return status;
  if (info->serverId != 0) {
    if (reconnect == Reconnect::First) {
      if (const int status = ReconnectIfBroken(*info); status != 0) return status;
    }
    return remote(*info);
  }
  if (info->searcher == nullptr) return PAF_ERR_NO_SEARCHER;
  return local(*info->searcher);
}

/**
 * WithInstance for an operation that is one request to the server, given its Id there, or one call of the searcher
 * without a detail to record.
 */
template <class Remote, class Operation>
int Query(int id, Reconnect reconnect, Remote&& remote, Operation&& operation)
{
  return AtBoundary([&] {
    return WithInstance(
        id, reconnect, [&](PafInfo& info) { return remote(info.serverId); },
        [&](auto& searcher) { return RecordFailure(operation(searcher), id, nullptr); });
  });
}

}  // namespace qxpaf

#endif
