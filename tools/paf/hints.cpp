#include "hints.h"

#include "record.h"

namespace tool {
namespace {

std::string KindOf(const std::string& letter)
{
  switch (letter.empty() ? ' ' : letter.front()) {
    case 'L':
      return "locality";
    case 'S':
      return "street";
    case 'B':
      return "building";
    case 'A':
      return "address";
    default:
      return letter;
  }
}

Hint HintOf(const Record& record)
{
  return {record.Field(1), KindOf(record.Field(2)), record.Field(3), record.Field(4)};
}

}  // namespace

Reply ReadHints(Session& session, const std::string& text, const std::string& place, int most, std::vector<Hint>& hints)
{
  hints.clear();
  for (Reply reply = session.FirstHint(text, place, most);; reply = session.NextHint()) {
    const Record record(reply.text);
    if (reply.status != 0 || record.Field(1).empty()) {
      return reply;
    }
    hints.push_back(HintOf(record));
  }
}

}  // namespace tool
