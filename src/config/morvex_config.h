#ifndef QXPAF_SRC_CONFIG_MORVEX_CONFIG_H
#define QXPAF_SRC_CONFIG_MORVEX_CONFIG_H

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "qxpaf/registry.h"

namespace qxpaf {

/**
 * Reads settings from the configuration file, whose form and places are described in qxpaf/registry.h and
 * config/config_file.h.
 *
 * Made on the stack for one lookup or a few: the first OpenKey loads the whole file, and every object loads it afresh,
 * so edits take effect at the next lookup. The contents stay as they were loaded for the object's life. One object is
 * used by one thread. Failures are told by the result and LastError; only std::bad_alloc is thrown.
 *
 * Key paths take "\" or "/" as separator. Narrow names and values are bytes, passed through; wide ones are converted to
 * and from UTF-8. Outputs of a failed call are left alone, except that the lists of EnumerateValues are emptied.
 */
class MorvexConfig
{
 public:
  /** Reads nothing yet; until OpenKey the object answers as for an empty file. */
  MorvexConfig() = default;

  /**
   * Loads the file unless that was tried before, and makes `key` the current key, whether it has lines or not.
   *
   * @param access ignored
   * @return false when the file could not be loaded: kRegistryNoFile, kRegistryReadError. The current key then stays.
   */
  bool OpenKey(const std::string& key, int access);

  /** Makes `key` the current key without loading; empty is the root. */
  void SetCurrentKey(std::string key);

  /**
   * The value of the first line that holds `name` in the current key. An empty value is a success.
   *
   * @return false: the load's error; kRegistryBadName when the name holds "/" or "="; kRegistryNotFound
   */
  bool ReadValue(const std::string& name, std::string& value);
  bool ReadValue(const std::wstring& name, std::wstring& value);

  /**
   * The same for a number as strtoul reads it with base 0 ("31", "0x1F", "037"), which must be the whole value. Numbers
   * are taken modulo 2^32.
   *
   * @return false: as ReadValue; kRegistryNotUnsigned
   */
  bool ReadValueI(const std::string& name, unsigned int& value);

  /**
   * The names and values that stand directly in the current key, in file order; a name may be empty or come twice.
   *
   * @return false: the load's error
   */
  bool EnumerateValues(std::vector<std::string>& names, std::vector<std::string>& values);
  bool EnumerateValues(std::vector<std::wstring>& names, std::vector<std::wstring>& values);

  /**
   * The names of the keys directly below the current key, spelled as in the file, in ascending byte order without
   * duplicates. Empty with LastError set when the file could not be loaded.
   */
  std::vector<std::string> EnumerateKeys();

  /** The code of the most recent failure, 0 after a success. */
  int LastError() const;

  /** Stores the code as last error. @return false */
  bool SetError(int code);

  /**
   * Appends the lines of an open file that are not blank. Lines read before an error are kept.
   *
   * @return 0 or kRegistryReadError
   */
  int ReadConfigFile(FILE* file);

 private:
  void EnsureConfigFileLoaded();
  bool StartOperation();
  bool FindValue(const std::string& name, std::string_view& value);
  std::optional<std::string_view> BelowCurrentKey(std::string_view line) const;

  template <class S>
  bool ReadText(const S& name, S& value);

  template <class S>
  bool EnumerateText(std::vector<S>& names, std::vector<S>& values);

  std::vector<std::string> lines_;
  std::string currentKey_;  // separators "/", ending in one unless it is the root, which is empty
  int loaded_ = 0;
  int loadStatus_ = 0;
  int lastError_ = 0;
};

}  // namespace qxpaf

#endif
