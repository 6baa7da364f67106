#include "remote/replies.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "errors/thread_data.h"
#include "platform/bounded.h"
#include "qxpaf/paf.h"
#include "remote/socket_client.h"

namespace qxpaf {
namespace {

// Every shape has its longest reply, which with the line feed must fit.
constexpr std::size_t kNumberReplySize = 64;
constexpr std::size_t kOpenReplySize = 256;
constexpr std::size_t kTextReplySize = 1024;
constexpr std::size_t kListReplySize = 256;

/** A decimal integer behind white space, up to the first other character; without digits 0. */
int ReadInteger(const char* text)
{
  return static_cast<int>(std::strtol(text, nullptr, 10));
}

template <std::size_t Size>
int Ask(char* request, char (&reply)[Size])
{
  char errorText[kSocketErrorTextSize];
  const int status = TheSocketClient().CallSocSvr(request, reply, Size, errorText);
  return status == 0 ? status : SetErrorDescription(status, errorText);
}

}  // namespace

char* SplitFirstField(char* reply)
{
  char* const tab = std::strchr(reply, '\t');
  if (tab == nullptr) return reply + std::strlen(reply);
  *tab = '\0';
  return tab + 1;
}

std::array<char*, 3> SplitThreeFields(char* reply)
{
  std::array<char*, 3> rests{};
  for (char*& rest : rests) rest = reply = SplitFirstField(reply);
  return rests;
}

int CallForStatus(char* request)
{
  char reply[kNumberReplySize];
  const int status = Ask(request, reply);
  return status == 0 ? ReadInteger(reply) : status;
}

int CallForOpen(char* request, int* id)
{
  *id = 0;
  char reply[kOpenReplySize];
  if (const int status = Ask(request, reply); status != 0) return status;
  const char* const rest = SplitFirstField(reply);
  const int status = ReadInteger(reply);
  if (status == 0) *id = ReadInteger(rest);
  return status;
}

int CallForText(char* request, char* out, int outSize, char* message)
{
  char reply[kTextReplySize];
  if (const int status = Ask(request, reply); status != 0) return status;
  const char* const rest = SplitFirstField(reply);
  const int status = ReadInteger(reply);
  if (out != nullptr) CopyCut(out, Capacity(outSize), status == 0 ? rest : "");
  if (status != 0 && message != nullptr) CopyCut(message, kServerTextSize, rest);
  return status;
}

int CallForRecord(char* request, char* text, long* first, long* second)
{
  char reply[kTextReplySize];
  if (const int status = Ask(request, reply); status != 0) return status;
  const std::array<char*, 3> rests = SplitThreeFields(reply);
  *first = ReadInteger(rests[0]);
  if (second != nullptr) *second = ReadInteger(rests[1]);
  CopyCut(text, kServerTextSize, second != nullptr ? rests[2] : rests[1]);
  return ReadInteger(reply);
}

int CallForList(char* request, int* values, int* count)
{
  char reply[kListReplySize];
  if (const int status = Ask(request, reply); status != 0) return status;
  const int room = *count;
  const int fields = 1 + static_cast<int>(std::count(reply, reply + std::strlen(reply), '\t'));
  char* field = SplitFirstField(reply);
  *count = ReadInteger(reply) == 0 ? fields : 0;
  for (int i = 0; i < std::min(room, *count - 1); ++i) {
    char* const next = SplitFirstField(field);
    values[i] = ReadInteger(field);
    field = next;
  }
  return PAF_OK;
}

}  // namespace qxpaf
