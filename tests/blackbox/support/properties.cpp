#include "blackbox/support/properties.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <climits>

#include "blackbox/support/guarded_buffer.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

Answer ReadInto(size_t size, const Reader& read)
{
  GuardedBuffer buffer(size);
  const int status = read(buffer.data(), buffer.size());
  EXPECT_TRUE(buffer.IsTerminated());
  return {status, buffer.Text()};
}

char Upper(char c)
{
  return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

char Lower(char c)
{
  return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

}  // namespace

void PrintTo(const Answer& answer, std::ostream* out)
{
  *out << answer.status << " '" << answer.text << "'";
}

Answer Read(int id, const std::string& name, size_t size)
{
  return ReadInto(size, [&](char* out, int n) { return pafGetPropertiesId(id, name.c_str(), out, n); });
}

Answer ReadDefault(const std::string& name, size_t size)
{
  return ReadInto(size, [&](char* out, int n) { return pafGetProperties(name.c_str(), out, n); });
}

std::string Property(int id, const std::string& name)
{
  const Answer answer = Read(id, name);
  EXPECT_EQ(answer.status, 0) << name;
  return answer.text;
}

std::vector<std::string> Spellings(const std::string& name)
{
  std::string upper = name;
  std::string lower = name;
  std::transform(upper.begin(), upper.end(), upper.begin(), Upper);
  std::transform(lower.begin(), lower.end(), lower.begin(), Lower);
  std::string mixed = lower;
  for (size_t i = 1; i < mixed.size(); i += 2) mixed[i] = upper[i];
  return {name, upper, lower, mixed};
}

void ExpectWholeOrRefused(const Reader& read, const std::string& expected)
{
  const size_t whole = expected.size() + 1;
  for (size_t size : {whole, whole + 1, whole + 1000}) EXPECT_EQ(ReadInto(size, read), (Answer{0, expected}));
  for (size_t size : {size_t{1}, whole / 2, whole - 1}) {
    if (size == 0 || size >= whole) continue;
    EXPECT_EQ(ReadInto(size, read), (Answer{PAF_ERR_BUFFER_TOO_SMALL, ""})) << "size " << size;
  }
  ExpectRefusesNoBuffer(read);
}

void ExpectRefusesNoBuffer(const Reader& read)
{
  GuardedBuffer untouched(16);
  for (int size : {0, -1, -16, INT_MIN}) {
    EXPECT_EQ(read(untouched.data(), size), PAF_ERR_BUFFER_TOO_SMALL) << "size " << size;
    EXPECT_TRUE(untouched.IsUntouched()) << "size " << size;
  }
  for (int size : {INT_MIN, -1, 0, 1, 100, INT_MAX}) {
    EXPECT_EQ(read(nullptr, size), PAF_ERR_BUFFER_TOO_SMALL) << "size " << size;
  }
}

}  // namespace blackbox
