/** The sentences of the plug-in's own status codes. */
#ifndef QXPAF_ARF_AU_STATUS_TEXT_H
#define QXPAF_ARF_AU_STATUS_TEXT_H

#include <string_view>

namespace arf {

/** What a status code means and what can be done about it. */
struct StatusText
{
  int code;
  std::string_view meaning;  ///< a sentence, used where nothing more exact is known
  std::string_view remedy;   ///< a sentence
};

/** The row of a code, or null for codes that are not the plug-in's. */
const StatusText* FindStatusText(int code);

}  // namespace arf

#endif
