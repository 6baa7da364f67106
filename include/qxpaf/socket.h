/**
 * TCP over IPv4 in a few calls: connecting, serving, reading counted bytes and lines with time-outs. Remote mode is
 * built on it, and so are programs on the other side of its connections.
 *
 *     int sock = -1;
 *     char line[256];
 *     char error[SOCKET_ERROR_SIZE] = "";
 *     if (tcp_client(&sock, "127.0.0.1", "7070", error) == 0) {
 *       send(sock, "pafGetLocalityRecordCount\n", 26, MSG_NOSIGNAL);
 *       if (readcrlf(sock, line, sizeof line, error, '\n', 30) >= 0) puts(line); else puts(error);
 *     }
 *     if (sock >= 0) close(sock);
 *
 * Conventions, for every function unless it says otherwise
 *
 *  1. Sockets are plain descriptors of the system, of any value. Whoever was given one closes it.
 *  2. `errbuf` is a buffer of SOCKET_ERROR_SIZE bytes, terminator included, or null for no message. It is written when
 *     a function fails, and otherwise left as it is. A message ends in what the system says about errno, when that was
 *     not 0; a function that fails without a failure of the system adds what errno happened to hold before.
 *  3. Pointers to other buffers and texts must not be null. Texts are NUL-terminated.
 *  4. `capacity` and `count` are bytes; a capacity includes the terminator. Nothing is written behind them, and below 1
 *     nothing is written at all. A read that fails may leave the buffer without a terminator.
 *  5. A receive that a signal interrupts is repeated. Time-outs are whole seconds of silence, not of a whole line; 0
 *     waits without limit. A signal makes a wait begin anew. A time-out beyond what the system's clock holds fails as
 * if it had passed.
 *  6. The functions are reentrant and thread-safe, except readline. Two threads that read one socket share its bytes.
 *  7. No function throws, raises SIGPIPE in its caller or changes the handling of signals.
 */
#ifndef QXPAF_SOCKET_H
#define QXPAF_SOCKET_H

#include <netinet/in.h>

#include "qxpaf/export.h"

#ifdef __cplusplus
extern "C" {
#endif

enum
{
  /** Bytes of every error buffer, terminator included. */
  SOCKET_ERROR_SIZE = 256
};

/* Status codes, also in enum PafStatus of qxpaf/paf.h; pafGetErrorDescription has a text for each. 0 is success. */

/** 4200: the system gave no socket. */
QXPAF_API extern const int ERR_SOCKET_SOCKET;
/** 4201: setting a socket option failed. */
QXPAF_API extern const int ERR_SOCKET_SETSOCKOPT;
/** 4202: the address is in use, or not this machine's. */
QXPAF_API extern const int ERR_SOCKET_BIND;
/** 4203: listening failed. */
QXPAF_API extern const int ERR_SOCKET_LISTEN;
/** 4204: nobody serves at the address, or it cannot be reached. */
QXPAF_API extern const int ERR_SOCKET_CONNECT;
/** 4205: the host's name is not known. */
QXPAF_API extern const int ERR_SOCKET_GETHOSTNAME;
/** 4206: the service is neither a number nor in the system's list of services. */
QXPAF_API extern const int ERR_SOCKET_GETSERVBYNAME;
/** 4207: nothing arrived in time. Not given by the functions below: their results tell of it. */
QXPAF_API extern const int ERR_SOCKET_TIMEDOUT;
/** 4208: waiting for a socket failed. Not given by the functions below: their results tell of it. */
QXPAF_API extern const int ERR_SOCKET_SELECT;

/**
 * Writes a message about a failure: `message`, `extra1`, a space and `extra2`, then ": (number) text" for the value
 * that errno has on entry, unless that is 0:
 *
 *     socket connect error to 10.0.0.5 7070: (111) Connection refused
 *
 * A piece that does not fit whole is left out: without `extra1` there is no `extra2`, without the number no text. A
 * message that does not fit itself leaves the buffer untouched.
 *
 * @param errbuf          receives at most 255 characters and the terminator; may be null
 * @param code            what to return
 * @param extra1, extra2  may be null; extra2 is ignored when extra1 is null
 * @return code; errno is as it was
 */
QXPAF_API int FormatSocketError(char* errbuf, int code, const char* message, const char* extra1, const char* extra2);

/** For portable programs, which call it before the first use of sockets; there is nothing to set up. @return 0 */
QXPAF_API int InitSockets(void);

/** For portable programs, which call it after the last use of sockets; does nothing. */
QXPAF_API void FiniSockets(void);

/** @return 1: sockets can be used */
QXPAF_API int SocketsInitialised(void);

/**
 * Makes an IPv4 address out of texts.
 *
 * @param host      a dotted address, which asks nobody, or a name to be resolved, whose first address is taken; null is
 *                  INADDR_ANY
 * @param service   a number as in C (0x1F90 is 8080, 010 is 8), of which the low 16 bits count and which may be empty
 *                  (0); or the name of a service in the system's list
 * @param address   filled: family, port and address in network order, all other bytes zero
 * @param protocol  the protocol for which the service is looked up: "tcp"
 * @return 0, ERR_SOCKET_GETHOSTNAME or ERR_SOCKET_GETSERVBYNAME
 */
QXPAF_API int set_address(const char* host, const char* service, struct sockaddr_in* address, const char* protocol,
                          char* errbuf);

/**
 * Opens a connection. Host and service are as for set_address.
 *
 * @param sock  receives the socket, which is the caller's, also when connecting failed (ERR_SOCKET_CONNECT); a negative
 *              value with ERR_SOCKET_SOCKET; untouched when the address is at fault. The socket is inherited by
 * programs that this one turns into.
 * @return 0, ERR_SOCKET_GETHOSTNAME, ERR_SOCKET_GETSERVBYNAME, ERR_SOCKET_SOCKET or ERR_SOCKET_CONNECT; the last also
 *         when a signal interrupted connecting
 */
QXPAF_API int tcp_client(int* sock, const char* host, const char* service, char* errbuf);

/**
 * Opens a socket that listens, with at most 128 connections waiting to be accepted, at an address that may have been in
 * use until just now. Host and service are as for set_address: null listens on every network of the machine, service 0
 * on a port that the system chooses.
 *
 * @param sock    receives the socket, which is the caller's, also when what followed its creation failed; a negative
 *                value with ERR_SOCKET_SOCKET; untouched when the address is at fault
 * @param errbuf  emptied on success
 * @return 0, ERR_SOCKET_GETHOSTNAME, ERR_SOCKET_GETSERVBYNAME, ERR_SOCKET_SOCKET, ERR_SOCKET_SETSOCKOPT,
 *         ERR_SOCKET_BIND or ERR_SOCKET_LISTEN
 */
QXPAF_API int tcp_server(int* sock, const char* host, const char* service, char* errbuf);

/**
 * Sends a last message and closes the socket.
 *
 * @param length  bytes of data; below 1 nothing is sent
 * @return 0 with the socket closed, whether or not the data could be sent; -1 with the socket untouched when the
 *         descriptor cannot be written to or is not open, or memory is short
 */
QXPAF_API int SocketSendOnce(int sock, const char* data, int length);

/**
 * Receives a fixed number of bytes, without a limit in time and without terminating them.
 *
 * @param buffer  at least count bytes
 * @return count; fewer when the stream ended before; -1 when receiving failed. A count below 1 gives 0.
 */
QXPAF_API int readn(int sock, char* buffer, int count, char* errbuf);

/**
 * Receives a line byte by byte, so that nothing behind it is received. The terminator is not stored, and neither is a
 * carriage return just before it; before that, the carriage return needs a place.
 *
 * What arrived of a line that does not fit is lost: bytes are received and thrown away until a chunk of at most 256
 * ends in a line feed (whatever `terminator` is), the stream ends, receiving fails or the time-out passes.
 *
 * @param buffer    receives the terminated line, or what there was of one when the stream ends
 * @param capacity  bytes of buffer: a line of capacity - 1 fits
 * @return the line's length, which may be 0; 0 also at the end of the stream, be it orderly or a reset, whatever is in
 *         the buffer; -1 when receiving failed, the time-out passed or the line is too long (errno is EMSGSIZE then)
 */
QXPAF_API int readcrlf1(int sock, char* buffer, int capacity, char* errbuf, char terminator,
                        unsigned long timeoutSeconds);

/**
 * Receives a line in as large chunks as come, for peers that send nothing behind a line before they are asked: only the
 * last byte of a chunk is looked at, so a terminator within a chunk counts as part of the line. The terminator is
 * removed; a carriage return before it only when both came in one chunk. Otherwise as readcrlf1.
 */
QXPAF_API int readcrlf(int sock, char* buffer, int capacity, char* errbuf, char terminator,
                       unsigned long timeoutSeconds);

/**
 * Receives a line that ends in a line feed, which stays in it, through a read-ahead buffer of 1500 bytes. There is one
 * such buffer for the whole process, without a lock: only one thread may read lines so, and only from one socket until
 * that has ended. Other functions do not see what is in the buffer. A program that uses another library's function of
 * this name gets only one of them.
 *
 * What follows the first capacity - 1 bytes of a longer line is left for the next call.
 *
 * @param buffer    receives the line, terminated; not terminated when the result is below 1
 * @param capacity  bytes of buffer; below 2 nothing is received
 * @return the line's length with its line feed; 0 at the end of the stream, also when the buffer has the beginning of a
 *         line; -1 when receiving failed (a reset included) or the line is too long (errno is EMSGSIZE then)
 */
QXPAF_API int readline(int sock, char* buffer, int capacity, char* errbuf);

#ifdef __cplusplus
}
#endif

#endif
