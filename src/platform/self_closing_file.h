#ifndef QXPAF_SRC_PLATFORM_SELF_CLOSING_FILE_H
#define QXPAF_SRC_PLATFORM_SELF_CLOSING_FILE_H

#include "qxpaf/platform/file.h"

namespace qxpaf {

/** The library's own file handle: a QX_File with narrow names only. */
class SelfClosingFILE
{
 public:
  bool Open(const char* name, const char* mode, bool reportError) { return file_.Open(name, mode, reportError); }
  void Close() { file_.Close(); }
  FILE* f() const { return file_.f(); }

 private:
  QX_File file_;
};

}  // namespace qxpaf

#endif
