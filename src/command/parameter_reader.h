/** The parameters of a command: "Key=value;", one behind the other. */
#ifndef QXPAF_SRC_COMMAND_PARAMETER_READER_H
#define QXPAF_SRC_COMMAND_PARAMETER_READER_H

namespace qxpaf {

/** Texts inside the command's buffer; both empty when nothing was read. */
struct Parameter
{
  const char* key;
  const char* value;

  bool Is(const char* name) const;
};

/**
 * Reads one parameter, if one stands at `position`: a "=" with a ";" behind it and no TAB before it. Writes NULs over
 * both and moves the position behind the ";".
 *
 * @return false when there is none; the position stays
 */
bool ReadParameter(char*& position, Parameter& parameter);

/** True for the value "True" in any case. */
bool IsTrue(const char* value);

}  // namespace qxpaf

#endif
