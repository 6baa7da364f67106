#include "unit/tools/scripted_session.h"

namespace tool_test {

SessionScript& Script()
{
  static SessionScript script;
  return script;
}

}  // namespace tool_test

namespace tool {

using tool_test::Script;

Session::~Session() = default;

Reply Session::Lookup(const std::string& address, bool strict)
{
  return Script().lookup(address, strict);
}

Reply Session::Address(long dpid)
{
  return Script().address(dpid);
}

int Session::FindStatus()
{
  return Script().findStatus;
}

Reply Session::SetProperty(const std::string& name, const std::string& value)
{
  return Script().setProperty(name, value);
}

Reply Session::FirstHint(const std::string& text, const std::string& place, int most)
{
  return Script().firstHint(text, place, most);
}

Reply Session::NextHint()
{
  return Script().nextHint();
}

}  // namespace tool
