#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "config/config_file.h"
#include "platform/ascii.h"
#include "platform/bounded.h"
#include "qxpaf/registry.h"

namespace {

using qxpaf::EqualIgnoringCase;
using qxpaf::RegistryLineReader;
using qxpaf::SelfClosingFILE;

/** Key path and value name as a line of the file writes them. */
class ValuePath
{
 public:
  /** The key's and the name's characters together, without the separator between them. */
  static constexpr std::size_t kLongest = 254;

  /** @return false when the two are too long */
  bool Build(std::string_view key, std::string_view name)
  {
    if (key.size() + name.size() > kLongest) return false;
    char* end = std::replace_copy(key.begin(), key.end(), text_, '\\', '/');
    // One separator more, whatever the key ends in: a key that ends in its own separator is in no line.
    if (!key.empty()) *end++ = '/';
    end = std::copy(name.begin(), name.end(), end);
    length_ = static_cast<std::size_t>(end - text_);
    return true;
  }

  std::string_view Text() const { return {text_, length_}; }

 private:
  char text_[kLongest + 1];
  std::size_t length_ = 0;
};

/** Finds the first line that holds the path and gives its value, which lives in the reader. */
bool FindValue(RegistryLineReader& reader, std::string_view path, std::string_view& value)
{
  for (std::string_view line; reader.Next(line);) {
    if (line.find('=') != path.size() || !EqualIgnoringCase(line.substr(0, path.size()), path)) continue;
    value = line.substr(path.size() + 1);
    return true;
  }
  return false;
}

/** Copies the text, cut where it must be, and fills the rest of the buffer with zeros. */
void CopyPadded(char* out, std::size_t capacity, std::string_view text)
{
  qxpaf::CopyCut(out, capacity, text);
  if (text.size() < capacity) std::memset(out + text.size(), 0, capacity - text.size());
}

}  // namespace

int LookUpRegistry_(const char* key, const char* name, char* value, int& size, bool /*ignored*/)
{
  if (name == nullptr) return kRegistryNotFound;
  ValuePath path;
  if (!path.Build(key != nullptr ? key : "", name)) return kRegistryKeyTooLong;
  if (std::strchr(name, '/') != nullptr) return kRegistryNotFound;
  SelfClosingFILE file;
  if (!OpenConfigFile(file, qxpaf::kLongestRegistryHome)) return kRegistryNoFile;
  RegistryLineReader reader(file.f());
  std::string_view found;
  if (!FindValue(reader, path.Text(), found)) return kRegistryNotFound;
  CopyPadded(value, value != nullptr ? qxpaf::Capacity(size) : 0, found);
  size = static_cast<int>(found.size());
  return 0;
}

bool LookUpRegistryI_(const char* key, const char* name, unsigned int& value, bool ignored)
{
  char text[30];
  int size = sizeof text;
  if (LookUpRegistry_(key, name, text, size, ignored) != 0) return false;
  value = static_cast<unsigned int>(std::strtol(text, nullptr, 10));
  return true;
}

int SetRegistryValue_(const char* /*key*/, const char* /*name*/, const char* /*value*/)
{
  return 0;
}
