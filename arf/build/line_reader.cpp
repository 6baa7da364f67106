#include "arf/build/line_reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "arf/build/build_error.h"

namespace arf {
namespace {

constexpr std::size_t kBlockBytes = 1 << 21;

}  // namespace

LineReader::LineReader(const std::string& path) : path_(path), file_(open(path.c_str(), O_RDONLY | O_CLOEXEC))
{
  struct stat status;
  if (!file_.IsOpen() || fstat(file_.Value(), &status) != 0) throw BuildError(SystemError(path, errno));
  fileSize_ = static_cast<std::uint64_t>(status.st_size);
  LineBlock first;
  if (!Next(first)) return;
  std::string_view text = first.text;
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
    throw BuildError(path_ + ": is UTF-16; save it as UTF-8");
  }
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  header_ = TakeLine(text);
  SplitFields(header_, headerFields_);
  rest_.insert(0, text);
  line_ = 2;
}

std::size_t LineReader::ReadInto(char* to, std::size_t size)
{
  ssize_t got;
  do {
    got = read(file_.Value(), to, size);
  } while (got < 0 && errno == EINTR);
  if (got < 0) throw BuildError(SystemError(path_, errno));
  bytesRead_ += static_cast<std::uint64_t>(got);
  return static_cast<std::size_t>(got);
}

bool LineReader::Next(LineBlock& block)
{
  block.text.swap(rest_);
  rest_.clear();
  block.firstLine = line_;
  for (bool isEnd = false; !isEnd && block.text.size() < kBlockBytes;) {
    const std::size_t had = block.text.size();
    block.text.resize(kBlockBytes);
    const std::size_t got = ReadInto(block.text.data() + had, kBlockBytes - had);
    block.text.resize(had + got);
    isEnd = got == 0;
    if (isEnd) break;
  }
  block.bytesRead = bytesRead_;
  if (block.text.size() == kBlockBytes) {
    const std::size_t end = block.text.rfind('\n');
    if (end == std::string::npos || kBlockBytes - end > kMaxLineBytes) {
      throw BuildError(path_ + ":" + std::to_string(line_) + ": a line is longer than a mebibyte");
    }
    rest_.assign(block.text, end + 1);
    block.text.resize(end + 1);
  }
  line_ += static_cast<std::uint32_t>(std::count(block.text.begin(), block.text.end(), '\n'));
  return !block.text.empty();
}

std::string_view TakeLine(std::string_view& text)
{
  const std::size_t end = std::min(text.find('\n'), text.size());
  std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

void SplitFields(std::string_view line, std::vector<std::string_view>& fields)
{
  fields.clear();
  for (;;) {
    const std::size_t end = line.find(kFieldDivider);
    fields.push_back(line.substr(0, end));
    if (end == std::string_view::npos) return;
    line.remove_prefix(end + 1);
  }
}

}  // namespace arf
