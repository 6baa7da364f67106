/* Prints what the page on the C interface must name: "property NAME" for every property that the library lists, without
   an instance and with one on "AU", and "status CODE TEXT" for every status code that has a text of the library's. */
#include <qxpaf/paf.h>
#include <stdio.h>
#include <string.h>

static int PrintProperties(int id)
{
  char names[4096];
  const int status = pafGetPropertiesId(id, "Properties", names, sizeof names);
  for (char* name = strtok(names, ";"); name != NULL; name = strtok(NULL, ";")) printf("property %s\n", name);
  return status;
}

static void PrintStatusTexts(void)
{
  char text[256];
  for (int code = 1; code < 10000; ++code) {
    pafGetErrorDescription(text, code, sizeof text);
    if (text[0] != '\0') printf("status %d %s\n", code, text);
  }
}

int main(void)
{
  PrintStatusTexts();
  const int id = pafOpenArfId2(0, "AU");
  if (id <= 0) return 1;
  const int failed = PrintProperties(0) != 0 || PrintProperties(id) != 0;
  return pafClosePafId(id) != 0 || failed;
}
