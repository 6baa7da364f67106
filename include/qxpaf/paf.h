/**
 * The flat C interface: open an instance on an address database, ask it, close it.
 *
 *     int id;
 *     char text[256] = "1 Macquarie St Sydney NSW";
 *     if (pafOpenArfId(&id, 0, "AU.Main") == 0) {
 *       int status = pafLookupAddress(id, text, sizeof text, 0);
 *       if (status != 0) pafGetErrorDescription(text, status, sizeof text);
 *       puts(text);
 *       pafClosePafId(id);
 *     }
 *
 * Conventions, for every function unless it says otherwise
 *
 *  1. The result is a status code: 0 for success, one of enum PafStatus, or a plug-in's own code.
 *     pafGetErrorDescription turns any of them into text. No C++ exception leaves a function.
 *  2. Text is 8-bit and NUL-terminated. What its encoding is, is between the application and the plug-in; the
 *     Australian plug-in reads and writes UTF-8.
 *  3. Every `size` is the number of bytes of the caller's buffer, terminator included, as a signed int.
 *  4. "Cuts" means: a result that does not fit is cut to size - 1 characters and the status is 0; with a size below 1
 *     nothing is written. "Refuses" means: a result that does not fit gives 6406 and the buffer is not changed.
 *     "Direct" means: the plug-in writes into the caller's buffer under the caller's size and decides itself.
 *  5. Pointers to text and buffers must not be null. Out-arguments that may be null say so.
 *  6. An Id is a positive int. Ids of closed instances are used again, the lowest first.
 *  7. Any function may be called from any thread at any time; calls on different Ids run in parallel. An Id serves one
 *     call at a time: a second one is refused with 6412 at once. The exceptions are pafForceCloseAll and
 *     pafUnloadPlugins, which must not run beside other calls, and pafClosePaf, which must not run beside calls of
 *     other threads on their default instances.
 *  8. A status that comes from the plug-in's search object is remembered for the calling thread, so that
 *     pafGetErrorDescription can give the plug-in's words for it. Statuses that the library finds itself (6405, 6406,
 *     6411, 6412 and so on) are not remembered.
 *
 * Every function with an Id can return, besides what it lists: 6405 (no such Id), 6412 (the Id is in use by another
 * call), 6411 (the instance has lost its search object, after pafForceCloseAll), 6404 (out of memory), 6408 (the
 * instance is remote and the operation cannot be carried out there), 6494 (the plug-in broke its contract by throwing)
 * and any status of the plug-in.
 */
#ifndef QXPAF_PAF_H
#define QXPAF_PAF_H

#include <stdint.h>

#include "qxpaf/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Status codes with a text in the library. Behind each: what the caller can do about it. */
enum PafStatus
{
  PAF_OK = 0,

  PAF_ERR_SHORT_BUFFER = 601,        /* generic short buffer: pass a larger one */
  PAF_ERR_LIBRARY_NOT_LOADED = 990,  /* a plug-in could not be loaded: install it where the loader looks */
  PAF_ERR_ENTRY_POINT_MISSING = 991, /* a library is there but is no plug-in, or too old: replace it */

  PAF_ERR_SERVER_CALL = 4100,              /* the socket server did not recognise the call: update the server */
  PAF_ERR_SOCKET_CREATE = 4200,            /* remote mode: the system gave no socket */
  PAF_ERR_SOCKET_OPTION = 4201,            /* remote mode: setting a socket option failed */
  PAF_ERR_SOCKET_BIND = 4202,              /* server: the address is in use or not ours */
  PAF_ERR_SOCKET_LISTEN = 4203,            /* server: listening failed */
  PAF_ERR_SOCKET_CONNECT = 4204,           /* remote mode: no server at the configured host and port */
  PAF_ERR_SOCKET_HOST = 4205,              /* remote mode: unknown host name */
  PAF_ERR_SOCKET_SERVICE = 4206,           /* remote mode: unknown service or port */
  PAF_ERR_SOCKET_TIMEOUT = 4207,           /* remote mode: no answer in time */
  PAF_ERR_SOCKET_SELECT = 4208,            /* remote mode: waiting for the socket failed */
  PAF_ERR_SERVER_UNKNOWN_CALL = 4500,      /* server: call not recognised */
  PAF_ERR_SERVER_ACCEPT = 4501,            /* server: accepting a connection failed */
  PAF_ERR_SERVER_INPUT_TOO_LONG = 4502,    /* server: request line too long: shorten the texts */
  PAF_ERR_SERVER_CREATE_THREAD = 4503,     /* server: no thread for the connection: try later */
  PAF_ERR_SERVER_THREAD_LIMIT = 4504,      /* server: too many connections: try later */
  PAF_ERR_SOCKET_READLINE = 4550,          /* remote mode: reading the answer failed; the next call reconnects */
  PAF_ERR_SOCKET_SEND = 4551,              /* remote mode: sending failed; the next call reconnects */
  PAF_ERR_SOCKET_RESPONSE_TOO_LONG = 4555, /* remote mode: the answer does not fit the client's buffer */
  PAF_ERR_SOCKET_BROKEN = 4556,            /* remote mode: the connection is broken; the next call reconnects */

  PAF_ERR_NOT_INITIALISED = 6400,  /* the library's start-up has not run */
  PAF_ERR_THREAD_VALUE_GET = 6401, /* the per-thread record could not be read */
  PAF_ERR_THREAD_VALUE_SET = 6402, /* the per-thread record could not be stored */
  PAF_ERR_THREAD_KEY = 6403,       /* the per-thread key could not be created: too many in this process */
  PAF_ERR_OUT_OF_MEMORY = 6404,
  PAF_ERR_INVALID_ID = 6405,         /* unknown, out of range or closed: open an instance first */
  PAF_ERR_BUFFER_TOO_SMALL = 6406,   /* pass a larger buffer */
  PAF_ERR_NOT_IMPLEMENTED = 6408,    /* not offered by this plug-in or in this mode */
  PAF_ERR_TIMED_OUT = 6409,          /* instances stayed busy: try again */
  PAF_ERR_HAS_SEARCHER = 6410,       /* an instance about to be freed still has its search object */
  PAF_ERR_NO_SEARCHER = 6411,        /* the instance has no search object (any more): close it, open a new one */
  PAF_ERR_ID_IN_USE = 6412,          /* another call on the same Id is in progress: serialise or retry */
  PAF_ERR_NOT_OPEN = 6413,           /* the default database is not open */
  PAF_ERR_NO_DATABASE_OBJECT = 6414, /* a plug-in without a database object or a searcher factory */
  PAF_ERR_BARCODE = 6415,            /* barcode request failed */
  PAF_ERR_DEFAULT_NOT_AU = 6493,     /* the default database ("PafDir") must be an Australian one */
  PAF_ERR_PLUGIN_SYSTEM = 6494,      /* no plug-in for the country, or a plug-in that threw an exception */
  PAF_ERR_OPEN_FILE = 6495,          /* a file of the database cannot be opened; the description names it */
  PAF_ERR_PLUGIN_MEMORY = 6496,      /* the plug-in gave no database object */
  PAF_ERR_UNKNOWN_COUNTRY = 6497,    /* "xx.name" with an unknown country */
  PAF_ERR_CONFIGURATION = 6498,      /* no configuration file found, or it cannot be read */
  PAF_ERR_NOT_CONFIGURED = 6499      /* the database name is not in the configuration file */
};

/* ---- Errors ------------------------------------------------------------------------------------------------------ */

/**
 * Puts the text of a status code into a buffer.
 *
 * Codes of enum PafStatus (990 and 991 aside) have a fixed text; when the calling thread's last recorded failure had
 * this code and carries a detail of the library's own (why a database could not be opened), ". " and the detail follow
 * if all of it fits. For other codes the text is the plug-in's, from the instance whose call failed last on this thread
 * with this code; empty when there was none. Asking consumes the thread's last error, whatever code was asked for.
 *
 * @param buffer  receives the text, cut to size - 1 characters, always terminated; untouched when size is below 1
 * @param code    a status code
 * @param size    bytes of buffer
 * @return always 0
 */
QXPAF_API int pafGetErrorDescription(char* buffer, int code, int size);

/* ---- Opening and closing ----------------------------------------------------------------------------------------- */

/**
 * Opens an instance on a named database.
 *
 * @param id          receives the Id. On failure it may have been written too, and then names no instance.
 * @param memoryMode  0 as configured, 1 disk, 2 memory, 3 mapped; passed on to the plug-in
 * @param arfName     "" for the configured default database; a configured name ("AU.Main", "AU", "Main"); a path; or
 *                    "DLL:Base;path" to name plug-in and path directly
 * @return 0; 6498, 6499, 6497, 6494, 6495, 6496, 990, 991, 6414, 6404; 4200 to 4206, 4550, 4551, 4555, 4556 (remote
 *         mode: the exchange with the server failed); 1320 (the configuration file cannot be read to its end); 1321 (a
 * relative path with "/" in it: give an absolute one); or the plug-in's status. When the plug-in gave a reason,
 * pafGetErrorDescription tells it.
 */
QXPAF_API int pafOpenArfId(int* id, int memoryMode, const char* arfName);

/** As pafOpenArfId. @return the Id (> 0), or the negated status code */
QXPAF_API int pafOpenArfId2(int memoryMode, const char* arfName);

/** pafOpenArfId on the default database. */
QXPAF_API int pafOpenPafMemId(int* id, int memoryMode);

/** pafOpenArfId on the default database in the configured mode. */
QXPAF_API int pafOpenPafId(int* id);

/** As pafOpenPafId. @return the Id (> 0), or the negated status code */
QXPAF_API int pafOpenPafId2(void);

/**
 * Closes an instance and frees its Id; the database is closed with its last instance.
 *
 * @return 0; 6405; 6412 (busy: nothing is closed); 6411 (no search object: the Id stays allocated)
 */
QXPAF_API int pafClosePafId(int id);

/**
 * Emergency release of every search object and every named database, whatever their use. Ids stay allocated; calls on
 * them give 6411. Takes no lock: no other call may run.
 *
 * @return 0
 */
QXPAF_API int pafForceCloseAll(void);

/**
 * Unloads every plug-in library that has nothing open. Takes no lock: no other call may run.
 *
 * @return 0
 */
QXPAF_API int pafUnloadPlugins(void);

/* ---- Looking up and correcting ----------------------------------------------------------------------------------- */

/**
 * Finds the delivery point identifier of an address. In and out through one buffer.
 *
 * @param address  the address; replaced by the result on success (cuts), unchanged on failure
 * @param size     bytes of address
 * @param amas     non-zero: by the strict addressing rules; 0: lenient
 */
QXPAF_API int pafLookupAddress(int id, char* address, int size, int amas);

/** pafLookupAddress with amas 1. */
QXPAF_API int pafGetDpidId(int id, char* address, int size);

/** pafLookupAddress with amas 0. */
QXPAF_API int pafGetDpidNonAmasId(int id, char* address, int size);

/** Corrects a last line (locality, state, postcode) in place (cuts; at most 511 characters). */
QXPAF_API int pafFixLastLineId(int id, char* lastLine, int size);

/** Judges an incomplete address in place (cuts; at most 9 characters). */
QXPAF_API int pafValidatePartialAddressId(int id, char* address, int size);

/**
 * Validates a whole address.
 *
 * @param address     the address
 * @param out         the corrected address (direct)
 * @param flags       passed to the plug-in
 * @param resultFlag  receives the plug-in's one-character verdict, NUL if it gave none; may be null
 */
QXPAF_API int pafValidateFullAddressId(int id, const char* address, char* out, int size, int flags, char* resultFlag);

/** Formats an address (direct). formatOption is the plug-in's. */
QXPAF_API int pafFormatAddressId(int id, const char* address, char* out, long formatOption, int size);

/* ---- Addresses and hints ----------------------------------------------------------------------------------------- */

/**
 * Starts an enumeration of the addresses that match a record query and gives the first (direct).
 *
 * @param query  a record: fields separated by the plug-in's "Delimiter"
 */
QXPAF_API int pafGetAddressId(int id, const char* query, char* out, int size);

/** The next address of the instance's enumeration (direct). How its end looks is the plug-in's. */
QXPAF_API int pafGetNextAddressId(int id, char* out, int size);

/** The address of a delivery point identifier (refuses; at most 1023 characters). */
QXPAF_API int pafDpidToAddressId(int id, long dpid, char* out, int size);

/** Starts an enumeration of type-ahead hints and gives the first (direct). The texts and number are the plug-in's. */
QXPAF_API int pafGetPopupHintId(int id, const char* text1, const char* text2, int number, char* out, int size);

/** The next type-ahead hint (direct). */
QXPAF_API int pafGetNextPopupHintId(int id, char* out, int size);

/** Starts an enumeration of address hints and gives the first (direct). The texts are the plug-in's. */
QXPAF_API int pafGetAddressHintId(int id, const char* text1, const char* text2, char* out, int size);

/** The next address hint (direct). */
QXPAF_API int pafGetNextAddressHintId(int id, char* out, int size);

/**
 * How the instance's last search went.
 *
 * @return the plug-in's find status, which is not a status code; -1 when the Id is unknown or busy or the instance has
 *         no search object
 */
QXPAF_API int pafGetFindStatusId(int id);

/** The components into which the instance's last input was taken apart (direct). */
QXPAF_API int pafGetParsedInputId(int id, char* out, int size);

/** Restricts the instance to geographical codes. The plug-in's reason for a refusal is remembered (convention 8). */
QXPAF_API int pafSetGeographicalCodesId(int id, const char* codes);

/* ---- Searches ---------------------------------------------------------------------------------------------------- */

/** Starts an enumeration of the addresses in a polygon. The texts are the plug-in's. */
QXPAF_API int pafBeginPolygonSearch(int id, const char* text1, const char* text2);

/** The next address in the polygon (direct). @return also 6406 when size is below 1, before the Id is looked up */
QXPAF_API int pafGetNextAddressInPolygon(int id, char* out, int size);

/** Counts what a search would find (direct). @return also 6406 when size is below 1, before the Id is looked up */
QXPAF_API int pafGetSearchStatistics(int id, const char* text1, const char* text2, const char* text3, const char* text4,
                                     char* out, int size);

/**
 * Starts an enumeration of GIF concordances. All arguments behind the Id go to the plug-in unchanged.
 *
 * @return also 6408 when the instance is remote or the plug-in is too old
 */
QXPAF_API int pafBeginGifConcordance(int id, intptr_t a, intptr_t b, intptr_t c, intptr_t d, intptr_t e, int n);

/**
 * The next GIF concordance (direct); `detail` goes to the plug-in unchanged.
 *
 * @return also 6406 when either size is below 1, before the Id is looked up; 6408 as for pafBeginGifConcordance
 */
QXPAF_API int pafGetNextGifConcordance(int id, char* out1, int size1, char* out2, int size2, void* detail);

/** Starts a free-text search. @return also 6408 when the instance is remote or the plug-in is too old */
QXPAF_API int pafBeginAddressSearch(int id, const char* query);

/**
 * The next address of the free-text search (direct).
 *
 * @return also 6406 when size is below 1, before the Id is looked up; 6408 as for pafBeginAddressSearch
 */
QXPAF_API int pafGetNextAddressSearch(int id, char* out, int size);

/* ---- Properties -------------------------------------------------------------------------------------------------- */

/**
 * Reads a property (refuses). Names are compared ignoring case, and so are the prefixes, which end in ":".
 *
 * The Id may be 0 or any other that names no idle instance: the library's own names are answered all the same, the
 * names that the Australian plug-in answers without a database go to it, and all others are empty with status 0.
 *
 * Answered by the library: "UseSockets", "TcpHost", "TcpPort" (remote mode), "OpenArfs" (the database names of all
 * instances, each followed by ";"), "OpenArfPaths", "OpenARF" (the instance's database name), "ClientCount" and
 * "ClientCount2" (open instances), "PafMachine" (host name), "ArfLibVersion" (of this library), "ArfLibVersionAu",
 * "...Nz",
 * "...Us" and "...Uk" (of the plug-ins; empty when not installed), "ARFs" (the configured databases, joined by ";"),
 * "DefaultArf" (the one that the setting PafDir names), "iPindle:" and the path of a setting, "Properties" (all names,
 * joined by ";"), "PropertyName" and a number from 1 on (the name with that number), "CountryCode", "TestProperty".
 * "ArfVersion:" and "ArfStatus:", each followed by a database name, go to the plug-in with the name resolved to its
 * path; "ArfStatus:" of a name that is not configured answers "ARF Not Registered". Every other name is the plug-in's.
 *
 * @param out  receives the answer; emptied first, and left empty by 6406. The plug-in's own answers are direct.
 * @return 0; 6406 also when out is null or size is below 1; the plug-in's status; 990 and 991 when the Australian
 * plug-in is needed and cannot be had
 */
QXPAF_API int pafGetPropertiesId(int id, const char* name, char* out, int size);

/**
 * Sets a property. "UseSockets" switches remote mode on ("True", in any case) or off (anything else), "TcpHost" and
 * "TcpPort" name the server: these three concern the whole process and look no Id up. "OpenARF" moves the instance to
 * another database in the configured mode; when the new one opens but gives no search object, the instance has none any
 * more (6411). Every other name is the plug-in's, whose reason for a refusal is remembered (convention 8).
 */
QXPAF_API int pafSetPropertiesId(int id, const char* name, const char* value);

/* ---- Database update --------------------------------------------------------------------------------------------- */

/**
 * Moves all running instances onto newly installed databases: after the configuration was changed to name other paths,
 * every instance whose database has moved gets a new search object, which takes over the settings of the old one. No
 * call is interrupted; busy instances are waited for, up to 15 seconds for each database.
 *
 * @param databasesUpdated   receives the number of databases that were switched; may be null
 * @param instancesUpdated   receives the number of instances that were switched; may be null
 * @return 0; 6408 in remote mode; 6409 when instances stayed busy (those switched before stay switched: call again);
 * the status of a database that could not be opened, whose reason pafGetErrorDescription tells
 */
QXPAF_API int pafUpdateArfs(int* databasesUpdated, int* instancesUpdated);

/* ---- Without an Id: the calling thread's default instance -------------------------------------------------------- */

/*
 * Every thread has a default instance, opened by its first call that needs it, on the one default database that
 * pafOpenPaf opened for all threads, which must be an Australian one. It is closed by pafClosePaf on that thread or
 * when the thread ends.
 *
 * Each function does what the function with "Id" in its name does. Besides its statuses: 6413 (pafOpenPaf was not
 * called), 6403 (the library could not start). Functions that do not open the default instance, as their comment says,
 * answer 6405 before some other function did.
 *
 * "length" is the size of the buffer less 1. Functions that take neither length nor size assume a buffer of 255 bytes.
 */

/**
 * Opens the default database; further calls share it, and each needs its pafClosePaf. memoryMode as for pafOpenArfId.
 * In remote mode the thread's default instance is opened on the server instead.
 *
 * @return 0; 6493 (the default database is not Australian); otherwise as pafOpenArfId
 */
QXPAF_API int pafOpenPafMem(int memoryMode);

/** pafOpenPafMem in the configured mode. */
QXPAF_API int pafOpenPaf(void);

/**
 * Closes the thread's default instance, and the default database with the last call. Other threads' default instances
 * must not be used any more then.
 *
 * @return 0; in remote mode the server's status, or 6405 without a default instance
 */
QXPAF_API int pafClosePaf(void);

QXPAF_API int pafGetDpid(char* address, int length);
QXPAF_API int pafGetDpidNonAmas(char* address, int length);
QXPAF_API int pafFixLastLine(char* lastLine, int length);
QXPAF_API int pafGetAddress(const char* query, char* out);
QXPAF_API int pafGetNextAddress(char* out);
QXPAF_API int pafGetPopupHint(const char* text1, const char* text2, int number, char* out, int size);
QXPAF_API int pafGetNextPopupHint(char* out, int size);
QXPAF_API int pafDpidToAddress(long dpid, char* out, int size);
QXPAF_API int pafGetAddressHint(const char* text1, const char* text2, char* out);
QXPAF_API int pafGetNextAddressHint(char* out);

/** @return the find status; -1 also when there is no default instance and none can be opened */
QXPAF_API int pafGet_FindStatus(void);

QXPAF_API int pafGet_ParsedInput(char* out);

/** As pafGetPropertiesId; does not open the default instance, so it may be called at any time. */
QXPAF_API int pafGetProperties(const char* name, char* out, int size);

QXPAF_API int pafSetProperties(const char* name, const char* value);
QXPAF_API int pafValidateFullAddress(const char* address, char* out, int size, int flags, char* resultFlag);

/** Does not open the default instance. `out` has 250 bytes. */
QXPAF_API int pafFormatAddress(const char* address, char* out, long formatOption);

/**
 * Formats an address in place with format option 0, cut to `length` characters. Does not open the default instance.
 *
 * @return 0, also on failure: the address is then empty
 */
QXPAF_API int pafFormatAddressS(char* address, int length);

/* ---- Barcodes and sort plans ------------------------------------------------------------------------------------- */

/*
 * The barcode functions ask the Australian plug-in, also in remote mode, and need no database. Each tells the plug-in
 * `size` + 1 bytes: the buffer must hold one byte more than `size` says.
 */

/**
 * Turns a delivery point identifier into the digits of its barcode, in place.
 *
 * @param text  eight digits; fewer digits alone and anything behind eight digits go to the plug-in as they are
 * @param size  at least 37
 * @return 0; 6415 when something other than digits comes before the eighth digit; 6406; 990; 991; the plug-in's status
 */
QXPAF_API int pafDpidToBarcode(char* text, int size);

/**
 * Turns customer information into the digits of a barcode, in place: a delivery point identifier alone (at most 8
 * characters), or 8 characters, a format control code and the information (more than 10). The codes are written as 52
 * and 67, the number of bars, and become 59 and 62. A text of 9 or 10 characters goes to the plug-in as a property
 * name.
 *
 * @return 0; 6415 for another code, or when the plug-in gave no barcode; 990; 991; the plug-in's status
 */
QXPAF_API int pafCustInfoBarcode(char* text, int size);

/**
 * Turns identifier, format control code, "N" or "C" and customer information, written one behind the other, into the
 * digits of a barcode, in place.
 *
 * @return 0, also on failure: the text is then empty
 */
QXPAF_API int pafGenerateBarcode(char* text, int size);

/**
 * pafGenerateBarcode from separate parts.
 *
 * @param a          format control code; two characters count
 * @param b          delivery point identifier; eight characters count
 * @param c          customer information; 15 characters count
 * @param flag       non-zero: the information is digits, encoded as such ("N"); 0: characters ("C")
 * @param out        at least 68 bytes, receives the digits; may be null
 * @param lengthOut  receives the number of digits; may be null
 * @return 0; 6415 when the plug-in gave no barcode or one of more than 67 digits; 990; 991; the plug-in's status
 */
QXPAF_API int pafBuildBarcode_(const char* a, const char* b, const char* c, int flag, char* out, int* lengthOut);

/**
 * Turns a postcode into its barcode sort plan, in place, by the calling thread's default instance, which is opened if
 * need be. An answer of exactly `size` characters is copied too: the buffer must hold one byte more than `size` says.
 *
 * @return 0, also on failure: the text is then empty
 */
QXPAF_API int pafPostcodeToBsp(char* text, int size);

/** pafPostcodeToBsp for the other sort plan, "NPSP". */
QXPAF_API int pafPostcodeToNpsp(char* text, int size);

/* ---- Everything through one buffer ------------------------------------------------------------------------------- */

/**
 * Carries out a command that stands in a buffer and puts the answer in its place, for hosts that can exchange a single
 * text: the command's name, ";", parameters ("Key=value;") in the command's order, then the data.
 *
 *     OpenArf;Database=AU.Main;                   CloseArf;Id=1;
 *     LookupAddress;Id=1;Lenient=True;<address>   FixLastLine;Id=1;<last line>
 *
 * @param text  receives the answer; the input is used up
 * @param size  the characters that the answer may take: the buffer must hold size + 1 bytes
 * @return the status of the operation; 0 for an unknown command (the buffer is empty then) and always for OpenArf,
 * whose failures answer "Error:" and a description, and for PostcodeToBsp and PostcodeToNpsp, which answer nothing
 */
QXPAF_API int pafCallPafFromBrimo(char* text, int size);

/* ---- Kept for old callers ---------------------------------------------------------------------------------------- */

/* These do no work: the Id is not looked up, nothing is written, and the result is always 6408 (the record readers) or
   0 (the counts). */
QXPAF_API int pafGetBorderPostcodesId(int id, short postcode, char* out, int size);
QXPAF_API int pafReadLocalityRecordId(int id, long recordNo, char* out, long* a, long* b);
QXPAF_API int pafReadGroupRecordId(int id, long recordNo, char* out, long* a, long* b);
QXPAF_API int pafReadPointRecordId(int id, long recordNo, char* out, int size);
QXPAF_API int pafReadSynonymRecordId(int id, long recordNo, char* out, long* a);
QXPAF_API int pafReadBorderRecordId(int id, int recordNo, int* a, int* b);
QXPAF_API int pafGetCornerGeocodesId(int id, void* a, void* b, void* c, void* d);
QXPAF_API int pafGetLocalityRecordCountId(int id);
QXPAF_API int pafGetGroupRecordCountId(int id);
QXPAF_API int pafGetPointRecordCountId(int id);
QXPAF_API int pafGetSynonymRecordCountId(int id);

QXPAF_API int pafGetBorderPostcodes(short postcode, char* out, int size);
QXPAF_API int pafReadLocalityRecord(long recordNo, char* out, long* a, long* b);
QXPAF_API int pafReadGroupRecord(long recordNo, char* out, long* a, long* b);
QXPAF_API int pafReadPointRecord(long recordNo, char* out, int size);
QXPAF_API int pafReadSynonymRecord(long recordNo, char* out, long* a);
QXPAF_API int pafReadBorderRecord(int recordNo, int* a, int* b);
QXPAF_API int pafGetLocalityRecordCount(void);
QXPAF_API int pafGetGroupRecordCount(void);
QXPAF_API int pafGetPointRecordCount(void);
QXPAF_API int pafGetSynonymRecordCount(void);

#ifdef __cplusplus
}
#endif

#endif
