// enumerate [-d DATABASE] LOCALITY...: lists the addresses of each locality, written as "Coober Pedy SA 5723", with
// their identifiers, and counts them.
#include <iostream>
#include <qxpaf/paf.hpp>

static void List(qxpaf::Session& session, const char* locality)
{
  int count = 0;
  qxpaf::Enumeration addresses = session.Addresses(locality);
  for (const std::string& record : addresses) {
    std::cout << record << '\n';
    ++count;
  }
  addresses.Status().OrThrow();
  std::cout << count << (count == 1 ? " address" : " addresses") << '\n';
}

int main(int argc, char** argv)
try {
  const bool named = argc > 2 && argv[1] == std::string_view("-d");
  qxpaf::Session session = qxpaf::Session::Open(named ? argv[2] : "AU").Value();
  session.SetProperty("OutputFields", "DPID;AddressLine1;AddressLine2").OrThrow();
  for (int i = named ? 3 : 1; i < argc; ++i) List(session, argv[i]);
  return 0;
} catch (const qxpaf::Error& error) {
  std::cout << error.what() << " (status " << error.Status().Code() << ")\n";
  return 1;
}
