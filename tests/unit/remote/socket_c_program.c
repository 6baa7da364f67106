/* The socket functions from C99: every one under its plain name, with its signature, and every constant. */
#include "qxpaf/socket.h"

/* One assignment a function; a wrong signature does not compile, a missing function does not link. */
static int (*const format)(char*, int, const char*, const char*, const char*) = FormatSocketError;
static int (*const library[])(void) = {InitSockets, SocketsInitialised};
static void (*const finish)(void) = FiniSockets;
static int (*const address)(const char*, const char*, struct sockaddr_in*, const char*, char*) = set_address;
static int (*const openers[])(int*, const char*, const char*, char*) = {tcp_client, tcp_server};
static int (*const sendOnce)(int, const char*, int) = SocketSendOnce;
static int (*const readers[])(int, char*, int, char*) = {readn, readline};
static int (*const lineReaders[])(int, char*, int, char*, char, unsigned long) = {readcrlf1, readcrlf};
static const int* const codes[] = {&ERR_SOCKET_SOCKET,        &ERR_SOCKET_SETSOCKOPT, &ERR_SOCKET_BIND,
                                   &ERR_SOCKET_LISTEN,        &ERR_SOCKET_CONNECT,    &ERR_SOCKET_GETHOSTNAME,
                                   &ERR_SOCKET_GETSERVBYNAME, &ERR_SOCKET_TIMEDOUT,   &ERR_SOCKET_SELECT};

int UseSocketsFromC(void);

/* How many calls did not answer what they answer for no socket at all. */
int UseSocketsFromC(void)
{
  char error[SOCKET_ERROR_SIZE];
  char buffer[8];
  struct sockaddr_in made;
  int sock = -1;
  int wrong = 0;
  int i;
  wrong += library[0]() != 0;
  wrong += library[1]() != 1;
  finish();
  wrong += format(error, 7, "message", 0, 0) != 7;
  wrong += address("127.0.0.1", "80", &made, "tcp", error) != 0 || made.sin_port != htons(80);
  wrong += sendOnce(-1, "", 0) != -1;
  for (i = 0; i < 2; ++i) {
    wrong += openers[i](&sock, "127.0.0.1", "no such service", error) != ERR_SOCKET_GETSERVBYNAME || sock != -1;
    wrong += readers[i](-1, buffer, 8, error) != -1;
    wrong += lineReaders[i](-1, buffer, 8, error, '\n', 0UL) != -1;
  }
  for (i = 0; i < 9; ++i) wrong += *codes[i] != 4200 + i;
  return wrong;
}
