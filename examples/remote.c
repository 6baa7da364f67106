/* remote [DATABASE]: looks up the addresses on standard input, all with one instance, which outlives the loss of the
   server that answers it. The configuration names the server: PindleSvr/TcpHost and PindleSvr/TcpPort. */
#include <qxpaf/paf.h>
#include <stdio.h>
#include <string.h>

enum
{
  MostAttempts = 5
};

/* From connecting, sending and receiving; then the library connects anew and opens the instance again. */
static int IsConnectionLost(int status)
{
  return (status >= 4200 && status <= 4299) || (status >= 4550 && status <= 4599);
}

static void Describe(int status)
{
  char reason[1024];
  pafGetErrorDescription(reason, status, sizeof reason);
  printf("%s (status %d)\n", reason, status);
}

/* A server that dies ends its connection in order; the call that meets that end gets status 0 and an empty text. */
static int LookUp(int id, const char* address, char* answer, int size)
{
  int status = 0;
  for (int attempt = 0; attempt < MostAttempts; ++attempt) {
    snprintf(answer, (size_t)size, "%s", address);
    status = pafLookupAddress(id, answer, size, 0);
    if (!IsConnectionLost(status) && !(status == 0 && *answer == '\0')) return status;
    printf("instance %d, the server is lost: ", id);
    if (status == 0) printf("an empty answer\n");
    if (status != 0) Describe(status);
  }
  return status;
}

int main(int argc, char** argv)
{
  char line[1024], answer[1024];
  int id;
  int status = pafOpenArfId(&id, 0, argc > 1 ? argv[1] : "AU");
  if (status != 0) {
    Describe(status);
    return 1;
  }
  while (fgets(line, sizeof line, stdin) != NULL) {
    line[strcspn(line, "\n")] = '\0';
    status = LookUp(id, line, answer, sizeof answer);
    printf("instance %d: %s: ", id, line);
    if (status == 0) printf("%s\n", answer);
    if (status != 0) Describe(status);
    fflush(stdout);
  }
  pafClosePafId(id);
  return status != 0;
}
