/* lookup [-d DATABASE] ADDRESS...: prints the delivery point identifier and the full address of each, or the reason. */
#include <qxpaf/paf.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static int Complain(int status)
{
  char reason[1024];
  pafGetErrorDescription(reason, status, sizeof reason);
  printf("%s (status %d)\n", reason, status);
  return 1;
}

/* The fields of a record are separated by TAB: three address lines, locality, state, postcode, and then more. */
static void PrintAddress(const char* record)
{
  const char* separator = "  ";
  for (int field = 1; field <= 6; ++field) {
    const int length = (int)strcspn(record, "\t");
    if (length > 0) printf("%s%.*s", separator, length, record);
    if (length > 0) separator = field < 4 ? ", " : " ";
    record += length + (record[length] != '\0');
  }
  printf("\n");
}

static int LookUp(int id, const char* address)
{
  char text[2048], record[1024];
  snprintf(text, sizeof text, "%s", address); /* the same buffer takes the answer */
  int status = pafLookupAddress(id, text, sizeof text, 0);
  if (status == 0) status = pafDpidToAddressId(id, atol(text), record, sizeof record);
  if (status != 0) return Complain(status);
  printf("%s", text);
  PrintAddress(record);
  return 0;
}

int main(int argc, char** argv)
{
  const int named = argc > 2 && strcmp(argv[1], "-d") == 0;
  int id, failures = 0;
  const int status = pafOpenArfId(&id, 0, named ? argv[2] : "AU");
  if (status != 0) return Complain(status);
  for (int i = named ? 3 : 1; i < argc; ++i) failures += LookUp(id, argv[i]);
  pafClosePafId(id);
  return failures > 0;
}
