// Takes all per-thread keys of the process before libqxpaf.so starts. Ends with 0 when the library says so everywhere.
#include <pthread.h>

#include <cstring>

#include "blackbox/lifetime/bracket_library.h"
#include "blackbox/lifetime/require.h"
#include "qxpaf/paf.h"

namespace {

char out[255];

struct Query
{
  const char* name;
  int (*call)();
};

const Query kQueries[] = {{"pafOpenPaf", pafOpenPaf},
                          {"pafOpenPafMem", [] { return pafOpenPafMem(2); }},
                          {"pafGetDpid", [] { return pafGetDpid(out, 63); }},
                          {"pafGetDpidNonAmas", [] { return pafGetDpidNonAmas(out, 63); }},
                          {"pafFixLastLine", [] { return pafFixLastLine(out, 63); }},
                          {"pafGetAddress", [] { return pafGetAddress("q", out); }},
                          {"pafGetNextAddress", [] { return pafGetNextAddress(out); }},
                          {"pafGetPopupHint", [] { return pafGetPopupHint("a", "b", 1, out, 64); }},
                          {"pafGetNextPopupHint", [] { return pafGetNextPopupHint(out, 64); }},
                          {"pafDpidToAddress", [] { return pafDpidToAddress(1L, out, 64); }},
                          {"pafGetAddressHint", [] { return pafGetAddressHint("a", "b", out); }},
                          {"pafGetNextAddressHint", [] { return pafGetNextAddressHint(out); }},
                          {"pafGet_ParsedInput", [] { return pafGet_ParsedInput(out); }},
                          {"pafValidateFullAddress", [] { return pafValidateFullAddress("a", out, 64, 0, nullptr); }},
                          {"pafFormatAddress", [] { return pafFormatAddress("a", out, 0L); }},
                          {"pafSetProperties", [] { return pafSetProperties("name", "value"); }},
                          {"pafGetProperties", [] { return pafGetProperties("ClientCount", out, 64); }}};

}  // namespace

void BeforeStartUp()
{
  pthread_key_t key;
  while (pthread_key_create(&key, nullptr) == 0) {
  }
}

void AfterShutDown() {}

int main()
{
  for (const Query& query : kQueries) Require(query.call() == PAF_ERR_THREAD_KEY, query.name);
  Require(pafGet_FindStatus() == -1, "pafGet_FindStatus");
  std::strcpy(out, "1 High St");
  Require(pafFormatAddressS(out, 63) == 0 && out[0] == '\0', "pafFormatAddressS");
  Require(pafGetProperties("TcpHost", out, 1) == 0, "what concerns the process is told");
  Require(pafSetProperties("TcpHost", "host") == 0, "and set");
  Require(pafClosePaf() == 0, "closing finds nothing");
  Require(pafGetLocalityRecordCount() == 0, "functions without work do none");
  const int id = pafOpenArfId2(0, "DLL:FakeTwo;/p");
  Require(id == 1 && pafGetFindStatusId(id) == 0 && pafClosePafId(id) == 0, "functions with an Id need no key");
  Require(pafGetPropertiesId(0, "ClientCount", out, 64) == 0 && std::strcmp(out, "0") == 0, "properties neither");
  return 0;
}
