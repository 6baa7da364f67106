// Opens one database and prints the status and its description, for tests that need an environment of their own.
#include <cstdio>

#include "qxpaf/paf.h"

int main(int argc, char** argv)
{
  if (argc != 2) return 2;
  int id = 0;
  const int status = pafOpenArfId(&id, 0, argv[1]);
  char text[600];
  pafGetErrorDescription(text, status, sizeof text);
  std::printf("%d\n%s\n", status, text);
  return 0;
}
