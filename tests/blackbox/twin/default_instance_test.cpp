// The functions without an Id, with and without a server.
#include <gtest/gtest.h>

#include <cstring>
#include <thread>

#include "blackbox/twin/twin.h"
#include "qxpaf/arf_au.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

constexpr const char* kAddress = "6 macquarie st, sydney";

Answer Lookup()
{
  return InBuffer(64, kAddress, [](char* text, int size) { return pafGetDpidNonAmas(text, size - 1); });
}

Answer Get(const char* name)
{
  return IntoBuffer(256, [name](char* text, int size) { return pafGetProperties(name, text, size); });
}

Answer Set(const char* name, const char* value)
{
  return Say(pafSetProperties(name, value));
}

Answer Bsp(const char* postcode)
{
  return InBuffer(21, postcode, [](char* text, int size) { return pafPostcodeToBsp(text, size - 1); });
}

Answer Formatted()
{
  return InBuffer(256, kAddress, [](char* text, int size) { return pafFormatAddressS(text, size - 1); });
}

Answer OnOwnThread(Answer (*call)())
{
  Answer answer;
  std::thread([&] { answer = call(); }).join();
  return answer;
}

Rule Always(Answer answer)
{
  return [answer](const Answers&) { return answer; };
}

/** What it answers without a server, but for the words and the status 6413: there nothing has to be opened first. */
Rule OpensItself(const std::string& name, const std::string& opened)
{
  return [name, opened](const Answers& local) {
    EXPECT_NE(local[name], local[opened]) << name;
    return local[opened];
  };
}

TEST(TwinDefaultInstance, BeforeOpening)
{
  Twin twin;
  twin.Same("count", [] { return Get("ClientCount"); });
  twin.Same("version", [] { return Get("ArfLibVersion"); });
  twin.Same("format",
            [] { return IntoBuffer(250, [](char* text, int) { return pafFormatAddress(kAddress, text, 0); }); });
  twin.Differs(
      "close", "there is no database to close", [] { return Say(pafClosePaf()); },
      Always({PAF_ERR_INVALID_ID, "", "Invalid Id passed to function"}));
  twin.Check();
}

TEST(TwinDefaultInstance, OpensItselfOnTheServer)
{
  const char* const why = "the server opens what is needed";
  Twin twin;
  twin.Differs("format at once", why, Formatted, OpensItself("format at once", "format when open"));
  twin.Differs(
      "lookup at once", why, [] { return OnOwnThread(Lookup); }, OpensItself("lookup at once", "lookup when open"));
  twin.Differs(
      "sort plan at once", why, [] { return OnOwnThread([] { return Bsp("2000"); }); },
      OpensItself("sort plan at once", "sort plan when open"));
  twin.Differs(
      "find status at once", why, [] { return OnOwnThread([] { return Number(pafGet_FindStatus()); }); },
      OpensItself("find status at once", "find status when open"));
  twin.Same("open", [] { return Say(pafOpenPaf()); });
  twin.Same("lookup when open", [] { return OnOwnThread(Lookup); });
  twin.Same("sort plan when open", [] { return OnOwnThread([] { return Bsp("2000"); }); });
  twin.Same("find status when open", [] { return OnOwnThread([] { return Number(pafGet_FindStatus()); }); });
  twin.Same("lookup on this thread", Lookup);
  twin.Same("format when open", Formatted);
  twin.Check();
}

TEST(TwinDefaultInstance, FromOpeningToClosing)
{
  Twin twin;
  twin.Same("open", [] { return Say(pafOpenPafMem(2)); });
  twin.Differs(
      "count", "opening makes the thread's instance", [] { return Get("ClientCount"); }, Always({0, "1", ""}));
  twin.Same("open again", [] { return Say(pafOpenPaf()); });
  twin.Same("lookup", Lookup);
  twin.Same("one instance", [] { return Get("ClientCount"); });
  twin.Same("find status", [] { return Number(pafGet_FindStatus()); });
  twin.Same("parsed", [] { return IntoBuffer(255, [](char* text, int) { return pafGet_ParsedInput(text); }); });
  twin.Same("strict", [] {
    return InBuffer(64, "6 macquarie st, sydney", [](char* text, int size) { return pafGetDpid(text, size - 1); });
  });
  twin.Same("cut", [] { return InBuffer(5, kAddress, [](char* text, int) { return pafGetDpid(text, 4); }); });
  twin.Same("last line", [] {
    return InBuffer(64, "sydney 2000", [](char* text, int size) { return pafFixLastLine(text, size - 1); });
  });
  twin.Same("fields", [] { return Set("OutputFields", "AddressLine1"); });
  twin.Same("no fields", [] { return Set("OutputFields", "Colour"); });
  twin.Same("of a DPID",
            [] { return IntoBuffer(64, [](char* text, int size) { return pafDpidToAddress(30000250, text, size); }); });
  twin.Same("first",
            [] { return IntoBuffer(255, [](char* text, int) { return pafGetAddress("Coober Pedy SA 5723", text); }); });
  for (int i = 0; i < 4; ++i) {
    twin.Same("next " + std::to_string(i),
              [] { return IntoBuffer(255, [](char* text, int) { return pafGetNextAddress(text); }); });
  }
  twin.Same("sort plan", [] { return Bsp("2000"); });
  twin.Same("no sort plan", [] { return Bsp("9999"); });
  twin.Same("a property", [] { return Get("OutputFields"); });
  twin.Same("barcode",
            [] { return InBuffer(72, "30000001", [](char* text, int) { return pafDpidToBarcode(text, 70); }); });
  twin.Same("close", [] { return Say(pafClosePaf()); });
  // Without a server the other opening is left; with one the thread had one instance, and keeps its closed Id.
  twin.Differs("after one of two", "the thread keeps the closed Id", Lookup, [](const Answers& local) {
    EXPECT_EQ(local["after one of two"].status, 0);
    return Answer{PAF_ERR_INVALID_ID, kAddress, "Invalid Id passed to function"};
  });
  twin.Differs(
      "close again", "it is closed", [] { return Say(pafClosePaf()); },
      Always({PAF_ERR_INVALID_ID, "", "Invalid Id passed to function"}));
  twin.Differs("after closing", "the thread keeps the closed Id", Lookup, [](const Answers& local) {
    EXPECT_EQ(local["after closing"].status, PAF_ERR_NOT_OPEN);
    return Answer{PAF_ERR_INVALID_ID, kAddress, "Invalid Id passed to function"};
  });
  twin.Check();
}

}  // namespace
}  // namespace blackbox
