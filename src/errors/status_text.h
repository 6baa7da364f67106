#ifndef QXPAF_SRC_ERRORS_STATUS_TEXT_H
#define QXPAF_SRC_ERRORS_STATUS_TEXT_H

namespace qxpaf {

/** The library's text of a status code, or null for codes whose text is somebody else's. */
const char* StatusText(int code);

/** Turns an error code of the configuration store into a status code; other values pass unchanged. */
int RegistryErrorToPafError(int code);

}  // namespace qxpaf

#endif
