#include "session.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "qxpaf/paf.h"

namespace pafd {
namespace {

using namespace std::chrono_literals;

constexpr auto kCloseRetryPause = 50ms;
constexpr int kCloseRetries = 100;
constexpr int kDelimiterSize = 8;

/** Closes an instance, waiting while a database update has it in hand. */
void Close(int id)
{
  for (int i = 0; pafClosePafId(id) == PAF_ERR_ID_IN_USE && i < kCloseRetries; ++i) {
    std::this_thread::sleep_for(kCloseRetryPause);
  }
}

bool HasRecord(const Request& request)
{
  return std::find(request.fields.begin(), request.fields.end(), Field::Record) != request.fields.end();
}

/** The text that an in-place call finds in its buffer: the request's last, which is its only one. */
const std::string& InitialText(const Request& request, const Arguments& arguments)
{
  static const std::string kEmpty;
  return request.shape == Shape::InPlace ? arguments.texts[0] : kEmpty;
}

}  // namespace

Session::~Session()
{
  for (const int id : instances_) {
    Close(id);
  }
}

Outcome Session::Serve(std::string_view line, std::string& reply)
{
  std::string_view name;
  const std::string_view fields = SplitName(line, name);
  const Request* request = FindRequest(name);
  if (request == nullptr) {
    WriteStatus(PAF_ERR_SERVER_UNKNOWN_CALL, reply);
    return {nullptr, PAF_ERR_SERVER_UNKNOWN_CALL};
  }
  const bool isJoined = ReadArguments(fields, request->fields, arguments_);
  answer_.Reset(InitialText(*request, arguments_));
  answer_.status = Refusal(*request);
  if (answer_.status == 0) {
    Call(*request, isJoined);
  }
  WriteReply(answer_, request->shape, reply);
  return {request, request->shape == Shape::Value ? 0 : answer_.status};
}

int Session::Refusal(const Request& request) const
{
  if (request.shape == Shape::Open && instances_.size() >= limits_.maxInstances) {
    return PAF_ERR_OUT_OF_MEMORY;
  }
  return request.refuse != nullptr && !limits_.isTrusted ? request.refuse(arguments_) : 0;
}

void Session::Call(const Request& request, bool isJoined)
{
  // The library answers for 0 as for any Id that is not open, whatever the request.
  arguments_.id = instances_.contains(arguments_.id) ? arguments_.id : 0;
  if (isJoined && HasRecord(request)) {
    RestoreRecord();
  }
  if (request.effect == Effect::UsesDefault) {
    NeedDefaultInstance();
  }
  request.call(arguments_, answer_);
  KeepAccount(request);
}

void Session::KeepAccount(const Request& request)
{
  if (request.shape == Shape::Open) {
    answer_.id = answer_.status == 0 ? answer_.id : 0;
    if (answer_.status == 0) {
      instances_.insert(answer_.id);
    }
  } else if (request.effect == Effect::Closes && answer_.status == 0) {
    instances_.erase(arguments_.id);
  }
}

/** On the way a record's TABs look as line feeds do. Where the instance's records have TABs, these were TABs. */
void Session::RestoreRecord()
{
  char delimiter[kDelimiterSize] = "";
  if (pafGetPropertiesId(arguments_.id, "Delimiter", delimiter, sizeof delimiter) == 0 && delimiter[0] == '\t') {
    std::replace(arguments_.texts[0].begin(), arguments_.texts[0].end(), '\n', '\t');
  }
}

void Session::NeedDefaultInstance()
{
  hasDefault_ = hasDefault_ || pafGet_FindStatus() != -1;
}

}  // namespace pafd
