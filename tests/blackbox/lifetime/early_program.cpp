// Uses the instance that another library's constructor has opened. Ends with 0 when it works.
#include <cstdio>

#include "blackbox/lifetime/early_library.h"
#include "qxpaf/paf.h"

int main()
{
  const bool good = pafGetFindStatusId(EarlyId()) == 0 && pafOpenArfId2(0, "DLL:FakeTwo;/p") == 2 &&
                    pafClosePafId(EarlyId()) == 0 && pafClosePafId(EarlyId()) == PAF_ERR_INVALID_ID;
  if (!good) std::printf("the instance opened before main does not work\n");
  return good ? 0 : 1;
}
