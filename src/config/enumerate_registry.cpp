#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

#include "config/config_file.h"
#include "platform/ascii.h"
#include "platform/bounded.h"
#include "qxpaf/registry.h"

namespace {

using qxpaf::RegistryLineReader;
using qxpaf::SelfClosingFILE;
using qxpaf::StartsWithIgnoringCase;

/** The longest key that can be listed, in characters. */
constexpr std::size_t kLongestKey = 254;

using Text = std::unique_ptr<char[]>;
using List = std::unique_ptr<char*[]>;

Text NewText(std::string_view text)
{
  Text copy(new (std::nothrow) char[text.size() + 1]);
  if (copy != nullptr) qxpaf::CopyWhole(copy.get(), text.size() + 1, text);
  return copy;
}

List NewList(std::size_t entries)
{
  return List(new (std::nothrow) char*[entries + 1]());
}

/** Counts the lines in a key and in the keys below it. */
std::size_t CountLines(FILE* file, std::string_view keyPrefix)
{
  RegistryLineReader reader(file);
  std::size_t count = 0;
  for (std::string_view line; reader.Next(line);) {
    if (StartsWithIgnoringCase(line, keyPrefix)) ++count;
  }
  return count;
}

/** Takes a line apart. @return false when the line is not a value that stands directly in the key */
bool SplitLine(std::string_view line, std::string_view keyPrefix, std::string_view& name, std::string_view& value)
{
  if (!StartsWithIgnoringCase(line, keyPrefix)) return false;
  line.remove_prefix(keyPrefix.size());
  const std::size_t end = line.find_first_of("/=");
  if (end == std::string_view::npos || line[end] == '/') return false;
  name = line.substr(0, end);
  value = line.substr(end + 1);
  return true;
}

/** Fills the lists, at most up to their capacity: the file may have grown since it was counted. */
void FillLists(FILE* file, std::string_view keyPrefix, std::size_t capacity, char** names, char** values)
{
  RegistryLineReader reader(file);
  std::size_t filled = 0;
  std::string_view name;
  std::string_view value;
  for (std::string_view line; filled < capacity && reader.Next(line);) {
    if (!SplitLine(line, keyPrefix, name, value)) continue;
    Text nameCopy = NewText(name);
    Text valueCopy = NewText(value);
    if (nameCopy == nullptr || valueCopy == nullptr) return;
    names[filled] = nameCopy.release();
    values[filled] = valueCopy.release();
    ++filled;
  }
}

}  // namespace

void EnumerateRegistry_(const char* key, char*** names, char*** values)
{
  if (names == nullptr || values == nullptr) return;
  *names = nullptr;
  *values = nullptr;
  const std::size_t keyLength = key != nullptr ? std::strlen(key) : kLongestKey + 1;
  if (keyLength > kLongestKey) return;
  char prefix[kLongestKey + 1];
  *std::replace_copy(key, key + keyLength, prefix, '\\', '/') = '/';
  const std::string_view keyPrefix(prefix, keyLength + 1);

  SelfClosingFILE file;
  if (!OpenConfigFile(file, qxpaf::kLongestRegistryHome)) return;
  const std::size_t count = CountLines(file.f(), keyPrefix);
  List nameList = NewList(count);
  List valueList = NewList(count);
  if (nameList == nullptr || valueList == nullptr) return;
  std::rewind(file.f());
  FillLists(file.f(), keyPrefix, count, nameList.get(), valueList.get());
  *names = nameList.release();
  *values = valueList.release();
}

int EnumerateRegistryKeys_(const char* /*key*/)
{
  return 0;
}
