/* A program as an application developer writes it: opens a database by the name of its plug-in and asks it something.
 */
#include <qxpaf/paf.h>
#include <stdio.h>

int main(void)
{
  int id = 0;
  char text[64] = "1 High St";
  int status = pafOpenArfId(&id, 0, "DLL:Consumer;/nowhere");
  if (status == 0) status = pafLookupAddress(id, text, sizeof text, 1);
  if (status != 0) pafGetErrorDescription(text, status, sizeof text);
  printf("%d %s\n", status, text);
  pafClosePafId(id);
  return 0;
}
