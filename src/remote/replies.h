/**
 * Exchanges with the socket server by the shape of the reply, over the process's client. Each returns the server's
 * status, or that of the transport (4200 to 4206, 4550, 4551, 4555, 4556), which is recorded for the calling thread
 * and leaves results as they are unless a function says otherwise.
 */
#ifndef QXPAF_SRC_REMOTE_REPLIES_H
#define QXPAF_SRC_REMOTE_REPLIES_H

#include <array>
#include <cstddef>

namespace qxpaf {

/** Bytes of a text from the server that has a fixed room: messages, and the texts of records. */
inline constexpr std::size_t kServerTextSize = 256;

/** Ends the first field at its TAB. @return what follows the TAB; empty when there is none */
char* SplitFirstField(char* reply);

/** Ends the first three fields. @return what follows each; empty from the first missing TAB on */
std::array<char*, 3> SplitThreeFields(char* reply);

/** Number: the whole reply is the result. */
int CallForStatus(char* request);

/** Status, Id. The Id becomes 0 on any failure. */
int CallForOpen(char* request, int* id);

/**
 * Status, text. On success `out` receives the text, cut to outSize - 1 characters; otherwise it becomes empty. Nothing
 * is written to a null `out` or with outSize below 1.
 *
 * @param message null, or kServerTextSize bytes that receive the server's words to a failure, cut
 */
int CallForText(char* request, char* out, int outSize, char* message = nullptr);

/**
 * Status, number, perhaps a second number, text, which are all taken over whatever the status is.
 *
 * @param text   kServerTextSize bytes; longer texts are cut
 * @param second null when the reply has one number
 */
int CallForRecord(char* request, char* text, long* first, long* second);

/**
 * Status, any number of values.
 *
 * @param values receives as many as count says
 * @param count  receives the number of fields, the status included, or 0 when the status is not 0
 * @return 0 when there was a reply: the server's status is not passed on
 */
int CallForList(char* request, int* values, int* count);

}  // namespace qxpaf

#endif
