// lookup [-d DATABASE] ADDRESS...: prints the delivery point identifier and the full address of each, or the reason.
#include <iostream>
#include <qxpaf/paf.hpp>
#include <sstream>

static int Complain(const qxpaf::Status& status)
{
  std::cout << status.Text() << " (status " << status.Code() << ")\n";
  return 1;
}

// The fields of a record are separated by TAB: three address lines, locality, state, postcode, and then more.
static void PrintAddress(const std::string& record)
{
  std::istringstream fields(record);
  const char* separator = "  ";
  std::string text;
  for (int field = 1; field <= 6 && std::getline(fields, text, '\t'); ++field) {
    if (!text.empty()) std::cout << separator << text;
    if (!text.empty()) separator = field < 4 ? ", " : " ";
  }
  std::cout << '\n';
}

static int LookUp(qxpaf::Session& session, const char* address)
{
  const qxpaf::Result<std::string> dpid = session.LookupAddress(address);
  if (!dpid) return Complain(dpid.Status());
  const qxpaf::Result<std::string> record = session.DpidToAddress(std::stol(*dpid));
  if (!record) return Complain(record.Status());
  std::cout << *dpid;
  PrintAddress(*record);
  return 0;
}

int main(int argc, char** argv)
{
  const bool named = argc > 2 && argv[1] == std::string_view("-d");
  qxpaf::Result<qxpaf::Session> session = qxpaf::Session::Open(named ? argv[2] : "AU");
  if (!session) return Complain(session.Status());
  int failures = 0;
  for (int i = named ? 3 : 1; i < argc; ++i) failures += LookUp(*session, argv[i]);
  return failures > 0 ? 1 : 0;
}
