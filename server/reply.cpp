#include "reply.h"

#include <algorithm>
#include <cstring>

namespace pafd {
namespace {

constexpr std::size_t kKeptBuffer = 4096;  // after a request with a long text a connection is small again

void Append(std::string& line, long number)
{
  line += '\t';
  line += std::to_string(number);
}

void AppendText(std::string& line, const char* text)
{
  line += '\t';
  line.append(text, ::strnlen(text, kLongestReply));
}

void AppendValues(const Answer& answer, std::string& line)
{
  const int count = std::clamp(answer.valueCount, 0, static_cast<int>(kMostValues));
  for (int i = 0; answer.status == 0 && i < count; ++i) {
    Append(line, answer.values[static_cast<std::size_t>(i)]);
  }
}

void AppendParts(const Answer& answer, Shape shape, std::string& line)
{
  switch (shape) {
    case Shape::Number:
    case Shape::Value:
      break;
    case Shape::Open:
      Append(line, answer.id);
      break;
    case Shape::Text:
    case Shape::InPlace:
      AppendText(line, answer.status == 0 ? answer.buffer.data() : answer.message.c_str());
      break;
    case Shape::Record2:
      Append(line, answer.numbers[0]);
      Append(line, answer.numbers[1]);
      AppendText(line, answer.buffer.data());
      break;
    case Shape::Record1:
      Append(line, answer.numbers[0]);
      AppendText(line, answer.buffer.data());
      break;
    case Shape::List:
      AppendValues(answer, line);
      break;
  }
}

std::size_t Longest(Shape shape)
{
  switch (shape) {
    case Shape::Number:
    case Shape::Value:
      return kLongestNumber;
    case Shape::Open:
    case Shape::List:
      return kLongestOpen;
    default:
      return kLongestReply;
  }
}

}  // namespace

void Answer::Reset(const std::string& text)
{
  status = id = valueCount = 0;
  numbers = {};
  values = {};
  message.clear();
  const std::size_t size = std::max<std::size_t>(text.size(), kTextSize) + 1;
  if (buffer.size() > kKeptBuffer) {
    buffer = std::vector<char>();
  }
  buffer.resize(std::max(size, buffer.size()));
  std::copy(text.begin(), text.end(), buffer.begin());
  buffer[text.size()] = '\0';
}

void WriteReply(const Answer& answer, Shape shape, std::string& line)
{
  line = std::to_string(answer.status);
  AppendParts(answer, shape, line);
  line.resize(std::min(line.size(), Longest(shape)));
  std::replace(line.begin(), line.end(), '\n', '\t');
  line += '\n';
}

void WriteStatus(int status, std::string& line)
{
  line = std::to_string(status);
  line += '\n';
}

}  // namespace pafd
