/**
 * The socket server that remote mode talks to: where it is, the state of the connection, and the requests themselves.
 *
 * Host and port concern the whole process. They are empty until a program sets them (here, or with the properties
 * "TcpHost" and "TcpPort" of <qxpaf/paf.h>) or, when the library first needs to know whether it works remotely, the
 * configuration's key "PindleSvr" gives them. A new host or port counts from the next connection on.
 *
 * Applications need none of the request functions: those of <qxpaf/paf.h> send them for remote instances, and open the
 * instances again after a broken connection. The request functions are for programs that look after this themselves.
 *
 * Conventions of the request functions
 *
 *  1. Each sends one line over the process's one connection, which the first request opens, and waits without limit
 *     for the one line that answers it. One exchange runs at a time; other threads wait for their turn.
 *  2. The result is the server's status (0: success) or number, or a failure of the transport: 4204 (no server there),
 *     4205 (host unknown), 4206 (port unknown), 4200 (no socket), 4550 (reading failed), 4551 (sending failed), 4555
 *     (the reply is too long) or 4556 (the connection is broken). Those are recorded for the calling thread, with what
 *     the system says, for pafGetErrorDescription; what the server answers is not.
 *  3. After 4550, 4551 and 4555 the connection is closed and counts as broken: nothing is sent, and all requests
 *     answer 4556, until AcknowlegeSocketIsBroken. A server that closes the connection instead of answering is noticed
 *     by the request after: this one gets a status of 0 and empty texts.
 *  4. `id` is an Id of the server's, valid for the connection over which it was opened. It is not checked here.
 *  5. Texts are NUL-terminated; null counts as empty. A line feed in them is sent as a TAB, and a TAB as it is; the
 *     server takes what follows a TAB in the last text of a request for further lines of it.
 *  6. A request is cut to 255 characters, the function's name and the TABs between its fields included, except where
 *     it is said to be sent whole.
 *  7. `out` and `buf` have `size` bytes, terminator included. On success the server's text is cut to size - 1
 *     characters; on a failure that the server reports the buffer becomes empty. With a size below 1, and when the
 *     transport failed, nothing is written. The server's text has at most 1023 characters, its status included.
 *  8. `buf` is both: its text is sent, and then overwritten.
 *  9. `text` of a record has 256 bytes; longer texts are cut. Record functions have no use for `id`: the server reads
 *     the records of its default instance. They write their results whatever status the server reports.
 * 10. All may be called from any thread. Exceptions come from the lock layer's faults only.
 *
 * Each comment begins with the fields of the request, the first of which is the name of the function that the server
 * calls.
 */
#ifndef QXPAF_REMOTE_H
#define QXPAF_REMOTE_H

#include "qxpaf/export.h"

// Where the server is

/** The host name or dotted address; empty means this machine. Valid, with changing contents, for the process's life. */
QXPAF_API const char* GetTcpHost();

/** Sets the host, cut to 255 characters; null empties it. Must not run beside a use of what GetTcpHost returned. */
QXPAF_API void SetTcpHost(const char* host);

/** The port number or service name. Valid, with changing contents, for the process's life. */
QXPAF_API const char* GetTcpPort();

/** Sets the port, cut to 31 characters; null empties it. Must not run beside a use of what GetTcpPort returned. */
QXPAF_API void SetTcpPort(const char* port);

// The state of the connection. Thread-safe, and never waiting for an exchange.

/** True after an exchange failed, until AcknowlegeSocketIsBroken: the server has closed what this process had open. */
QXPAF_API bool IsSocketBroken();

/** Lets the next request open a new connection. All Ids of the server's are void from then on. */
QXPAF_API void AcknowlegeSocketIsBroken();

// Instances

/** pafOpenPafId. @param id receives the Id, 0 on any failure; not null */
QXPAF_API int OpenPafIdViaSocket(int* id);

/** pafOpenArfId, memoryMode, arf. @param id receives the Id, 0 on any failure; not null */
QXPAF_API int OpenArfIdViaSocket(int* id, int memoryMode, const char* arf);

/** pafOpenPafMemId, memoryMode. @param id receives the Id, 0 on any failure; not null */
QXPAF_API int OpenPafMemIdViaSocket(int* id, int memoryMode);

/** pafClosePafId, id. */
QXPAF_API int ClosePafIdViaSocket(int id);

// Addresses

/** pafGetDpidId, id, buf. */
QXPAF_API int GetDpidIdViaSocket(int id, char* buf, int size);

/** pafGetDpidNonAmasId, id, buf. */
QXPAF_API int GetDpidNonAmasIdViaSocket(int id, char* buf, int size);

/** pafFixLastLineId, id, buf. */
QXPAF_API int FixLastLineIdViaSocket(int id, char* buf, int size);

/** pafValidatePartialAddressId, id, buf. */
QXPAF_API int ValidatePartialAddressIdViaSocket(int id, char* buf, int size);

/** pafGetAddressId, id, in. */
QXPAF_API int GetAddressIdViaSocket(int id, const char* in, char* out, int size);

/** pafGetNextAddressId, id. */
QXPAF_API int GetNextAddressIdViaSocket(int id, char* out, int size);

/** pafGetBorderPostcodesId, id, postcode. */
QXPAF_API int GetBorderPostcodesIdViaSocket(int id, short postcode, char* out, int size);

/** pafGetPopupHintId, id, a, b, n. A first text `a` with a TAB in it is cut to 127 characters, and blanks stand for
    its TABs; `b` is sent as it is. */
QXPAF_API int GetPopupHintIdViaSocket(int id, const char* a, const char* b, int n, char* out, int size);

/** pafGetNextPopupHintId, id. */
QXPAF_API int GetNextPopupHintIdViaSocket(int id, char* out, int size);

/** pafDpidToAddressId, id, dpid. */
QXPAF_API int DpidToAddressIdViaSocket(int id, long dpid, char* out, int size);

/** pafGetAddressHintId, id, a, b. TABs as for GetPopupHintIdViaSocket. */
QXPAF_API int GetAddressHintIdViaSocket(int id, const char* a, const char* b, char* out, int size);

/** pafGetNextAddressHintId, id. */
QXPAF_API int GetNextAddressHintIdViaSocket(int id, char* out, int size);

/** pafGetFindStatusId, id. @return the find status of the last search, as the server answers it */
QXPAF_API int GetFindStatusIdViaSocket(int id);

/** pafGetParsedInputId, id. */
QXPAF_API int GetParsedInputIdViaSocket(int id, char* out, int size);

/** pafValidateFullAddressId, id, flags, in. @param message null, or 256 bytes that receive the server's words to a
    failure that it reports, cut to 255 characters; otherwise not written */
QXPAF_API int ValidateFullAddressIdViaSocket(int id, const char* in, char* out, int size, int flags, char* message);

/** pafFormatAddressId, id, format, in. */
QXPAF_API int FormatAddressIdViaSocket(int id, const char* in, char* out, long format, int size);

/** pafFormatAddressS, buf. */
QXPAF_API int FormatAddressSViaSocket(char* buf, int size);

/** pafFormatAddress, format, in. */
QXPAF_API int FormatAddressViaSocket(const char* in, char* out, long format, int size);

// Properties

/** pafGetPropertiesId, id, names. */
QXPAF_API int GetPropertiesIdViaSocket(int id, const char* names, char* out, int size);

/** pafSetPropertiesId, id, name, value. */
QXPAF_API int SetPropertiesIdViaSocket(int id, const char* name, const char* value);

/** pafSetGeographicalCodesId, id, codes. */
QXPAF_API int SetGeographicalCodesIdViaSocket(int id, const char* codes);

// Polygons and statistics

/** pafBeginPolygonSearch, id, first number of b, second number of b, a; sent whole. The numbers are what strtod reads
    at the beginning of `b` and behind the one character after the first, each cut to 127 characters; empty when there
    is none. @return also 539: out of memory */
QXPAF_API int BeginPolygonSearchViaSocket(int id, const char* a, const char* b);

/** pafGetNextAddressInPolygon, id. */
QXPAF_API int GetNextAddressInPolygonViaSocket(int id, char* out, int size);

/** pafGetSearchStatistics, id, a, b, c, d; sent whole. @return also 539: out of memory */
QXPAF_API int GetSearchStatisticsViaSocket(int id, const char* a, const char* b, const char* c, const char* d,
                                           char* out, int size);

// Records

/** pafReadLocalityRecord, record. @param a, b receive the record's numbers; not null */
QXPAF_API int ReadLocalityRecordIdViaSocket(int id, long record, char* text, long* a, long* b);

/** pafReadGroupRecord, record. @param a, b receive the record's numbers; not null */
QXPAF_API int ReadGroupRecordIdViaSocket(int id, long record, char* text, long* a, long* b);

/** pafReadPointRecord, record. */
QXPAF_API int ReadPointRecordIdViaSocket(int id, long record, char* out, int size);

/** pafReadSynonymRecord, record. @param a receives the record's number; not null */
QXPAF_API int ReadSynonymRecordIdViaSocket(int id, long record, char* text, long* a);

/**
 * pafReadBorderRecord, record. The reply has at most 255 characters.
 *
 * @param values receives the record's values, as many as fit
 * @param count  how many values fit; receives one more than the record has, or 0 when the server reports a failure
 * @return 0 when the server answered, whatever its status was, or the transport's failure
 */
QXPAF_API int ReadBorderRecordIdViaSocket(int id, int record, int* values, int* count);

/** pafGetLocalityRecordCount. @return the number of records, as the server answers it */
QXPAF_API int GetLocalityRecordCountIdViaSocket(int id);

/** pafGetGroupRecordCount. @return the number of records, as the server answers it */
QXPAF_API int GetGroupRecordCountIdViaSocket(int id);

/** pafGetPointRecordCount. @return the number of records, as the server answers it */
QXPAF_API int GetPointRecordCountIdViaSocket(int id);

/** pafGetSynonymRecordCount. @return the number of records, as the server answers it */
QXPAF_API int GetSynonymRecordCountIdViaSocket(int id);

// Barcodes and sort plans

/** pafBuildBarcode_, a, b, c, n. */
QXPAF_API int BuildBarcode_ViaSocket(const char* a, const char* b, const char* c, int n, char* out, int size);

/** pafCustInfoBarcode, buf. */
QXPAF_API int CustInfoBarcodeViaSocket(char* buf, int size);

/** pafGenerateBarcode, buf. */
QXPAF_API int GenerateBarcodeViaSocket(char* buf, int size);

/** pafDpidToBarcode, buf. */
QXPAF_API int DpidToBarcodeViaSocket(char* buf, int size);

/** pafPostcodeToBsp, buf. */
QXPAF_API int PostcodeToBspViaSocket(char* buf, int size);

/** pafPostcodeToNpsp, buf. */
QXPAF_API int PostcodeToNpspViaSocket(char* buf, int size);

// Errors

/** pafGetErrorDescription, code. */
QXPAF_API int GetErrorDescriptionViaSocket(char* out, int code, int size);

#endif
