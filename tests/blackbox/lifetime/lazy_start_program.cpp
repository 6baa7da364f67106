// Uses the functions without an Id before libqxpaf.so has started. Ends with 0 when it works.
#include <cstring>

#include "blackbox/lifetime/bracket_library.h"
#include "blackbox/lifetime/require.h"
#include "qxpaf/paf.h"

void BeforeStartUp()
{
  char out[255];
  Require(pafOpenPafMem(0) == PAF_ERR_NOT_INITIALISED, "opening the database does not start the library");
  Require(pafOpenPaf() == PAF_ERR_NOT_INITIALISED, "nor does opening it in the configured mode");
  Require(pafGetProperties("UseSockets", out, sizeof out) == 0 && std::strcmp(out, "False") == 0,
          "what concerns the process is told");
  Require(pafSetProperties("TcpPort", "1") == 0, "and set");
  Require(pafReadPointRecord(1L, out, 8) == PAF_ERR_NOT_IMPLEMENTED, "functions without work do none");
  Require(pafOpenPaf() == PAF_ERR_NOT_INITIALISED, "none of these starts the library");
  Require(pafGetAddress("q", out) == PAF_ERR_NOT_OPEN, "a call that needs the instance does");
  Require(pafOpenPaf() == 0, "opening works then");
  Require(pafGetAddress("q", out) == 0, "and querying");
}

void AfterShutDown() {}

int main()
{
  char out[255];
  Require(pafGetAddress("q", out) == 0, "querying works after the library's own start-up");
  Require(pafClosePaf() == 0, "closing works");
  Require(pafGetAddress("q", out) == PAF_ERR_NOT_OPEN, "the database is closed");
  return 0;
}
