/** A terminal read key by key. */
#ifndef PAF_TOOL_TERMINAL_H
#define PAF_TOOL_TERMINAL_H

#include <termios.h>

#include <cstddef>
#include <string>

namespace tool {

struct Key
{
  enum class Kind
  {
    Text,  ///< `text` holds what was typed
    Up,
    Down,
    Enter,
    Tab,
    Backspace,
    EraseWord,
    EraseAll,
    Leave,   ///< Escape, Ctrl-C, Ctrl-D, the end of input, or a signal to end
    Resize,  ///< the window may have another size
    Other
  };
  Kind kind = Kind::Other;
  std::string text;
};

/**
 * Standard input without line editing and echo, from construction to destruction; what is drawn goes to standard error,
 * so that standard output can be a pipe. Signals that would end the program end the reading instead, so that the
 * terminal is always given back as it was.
 */
class Terminal
{
 public:
  Terminal();
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  /** True when standard input and standard error are terminals. */
  static bool IsPresent();

  /** Waits for a key. */
  Key ReadKey();
  /** True when a key can be read without waiting. */
  bool HasKey() const;

  std::size_t Columns() const;
  std::size_t Rows() const;

 private:
  int ReadByte() const;
  Key ReadEscape();
  Key ReadText(char first);

  termios before_{};
};

}  // namespace tool

#endif
