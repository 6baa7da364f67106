#include "arf/au/last_failure.h"

#include "arf/au/status_text.h"
#include "arf/match/failure_text.h"

namespace arf {

int LastFailure::Record(int code, const Failure& failure)
{
  code_ = code;
  remedy_ = {};
  failure_ = failure;
  detail_.Clear();
  return code;
}

int LastFailure::Record(int code, std::string_view detail)
{
  code_ = code;
  remedy_ = {};
  failure_ = {};
  detail_ = FixedText<200>(detail);
  return code;
}

void LastFailure::Describe(int code, const Database* database, BoundedText& text) const
{
  const StatusText* status = FindStatusText(code);
  if (!status) return;
  const bool isLast = code == code_;
  if (isLast && !detail_.Empty())
    text << detail_.View();
  else if (isLast && database && failure_.fault != Fault::None)
    AppendFailure(text, *database, failure_);
  else
    text << status->meaning;
  text.Word(isLast && !remedy_.empty() ? remedy_ : status->remedy);
}

}  // namespace arf
