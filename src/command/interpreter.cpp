/** The whole interface through one buffer: a command's name, its parameters, its data; the answer takes their place. */
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "command/geocode_lookup.h"
#include "command/parameter_reader.h"
#include "errors/boundary.h"
#include "platform/ascii.h"
#include "platform/bounded.h"
#include "qxpaf/paf.h"

using namespace qxpaf;

namespace {

constexpr int kMostParameters = 2;

struct Command;

/** One call of the interpreter. */
struct Call
{
  const Command& command;
  char* text;  ///< the caller's buffer, for the answer
  int size;    ///< characters that the answer may take; the buffer has one byte more
  char* rest;  ///< the data, in the buffer
  const char* values[kMostParameters];

  int Number(int parameter) const { return std::atoi(values[parameter]); }
  int BufferSize() const { return SizeForLength(size); }

  void Empty() const { text[0] = '\0'; }

  /** For operations that work in place: moves the data to where the answer will stand, over the parameters' texts. */
  char* DataAtStart() const
  {
    std::memmove(text, rest, std::strlen(rest) + 1);
    return text;
  }
};

struct Command
{
  const char* name;
  const char* parameters[kMostParameters];  ///< in the order in which they are read; null: none
  int (*run)(const Call&);
  const char* property;  ///< of the commands that set or ask one
};

// Hosts reserve room for a prefix and read sizes below these as "do not answer".
constexpr const char* kErrorPrefix = "Error:";
constexpr int kErrorPrefixLength = 6;
constexpr int kRoomForAnyId = 20;
constexpr int kRoomForUsualId = 8;
constexpr int kHighestUsualId = 99999999;
constexpr int kRoomForErrorNumber = 18;

void AnswerNumber(const Call& call, int number)
{
  std::snprintf(call.text, static_cast<std::size_t>(call.BufferSize()), "%d", number);
}

void AnswerOpenFailure(const Call& call, int status)
{
  if (call.size <= kErrorPrefixLength) return;
  pafGetErrorDescription(call.text, status, call.size - kErrorPrefixLength);
  if (call.text[0] == '\0' && call.size >= kRoomForErrorNumber) AnswerNumber(call, status);
  std::memmove(call.text + kErrorPrefixLength, call.text, std::strlen(call.text) + 1);
  std::memcpy(call.text, kErrorPrefix, kErrorPrefixLength);
}

int OpenArf(const Call& call)
{
  int id = 0;
  const int status = pafOpenArfId(&id, 0, call.values[0]);
  if (status != 0) {
    AnswerOpenFailure(call, status);
  } else if (call.size > kRoomForAnyId || (call.size > kRoomForUsualId && id <= kHighestUsualId)) {
    AnswerNumber(call, id);
  } else {
    call.Empty();
  }
  return PAF_OK;
}

int CloseArf(const Call& call)
{
  const int status = pafClosePafId(call.Number(0));
  if (status == 0) call.Empty();
  return status;
}

int LookupAddress(const Call& call)
{
  const int id = call.Number(0);
  const int amas = IsTrue(call.values[1]) ? 0 : 1;
  return pafLookupAddress(id, call.DataAtStart(), call.BufferSize(), amas);
}

int DpidToAddress(const Call& call)
{
  return pafDpidToAddress(call.Number(0), call.text, call.BufferSize());
}

/** Answers nothing after a success, the description after a failure. */
int AnswerSetting(const Call& call, int status)
{
  if (status == 0) {
    call.Empty();
  } else {
    pafGetErrorDescription(call.text, status, call.BufferSize());
  }
  return status;
}

int SetGeographicalCodes(const Call& call)
{
  return AnswerSetting(call, pafSetGeographicalCodesId(call.Number(0), call.rest));
}

int SetProperty(const Call& call)
{
  return AnswerSetting(call, pafSetPropertiesId(call.Number(0), call.command.property, call.rest));
}

int LookupByAddressId(const Call& call)
{
  constexpr std::size_t kFieldsBeforeId = 7;
  const int id = call.Number(0);
  Delimiter delimiter;
  if (const int status = ReadDelimiter(id, delimiter); status != 0) return status;
  const std::string record = Record(delimiter, kFieldsBeforeId, call.rest);
  return pafGetAddressId(id, record.c_str(), call.text, call.BufferSize());
}

int LookupByGeocodeCommand(const Call& call)
{
  return LookupByGeocode(call.rest, call.text, call.size);
}

int FormatAddress(const Call& call)
{
  const int id = call.Number(0);
  const int options = call.Number(1);
  if (id != 0) return pafFormatAddressId(id, call.rest, call.text, options, call.BufferSize());
  char formatted[250] = {};
  const int status = pafFormatAddress(call.rest, formatted, options);
  if (status == 0) CopyCut(call.text, Capacity(call.BufferSize()), formatted);
  return status;
}

int ValidatePartialAddress(const Call& call)
{
  const int id = call.Number(0);
  return pafValidatePartialAddressId(id, call.DataAtStart(), call.BufferSize());
}

int FixLastLine(const Call& call)
{
  const int id = call.Number(0);
  return pafFixLastLineId(id, call.DataAtStart(), call.BufferSize());
}

int PostcodeToPlan(const Call& call)
{
  const std::string name = std::string(call.command.property) + call.rest;
  if (pafGetPropertiesId(call.Number(0), name.c_str(), call.text, call.BufferSize()) != 0) call.Empty();
  return PAF_OK;
}

int GetProperties(const Call& call)
{
  return pafGetPropertiesId(call.Number(0), call.rest, call.text, call.BufferSize());
}

constexpr Command kCommands[] = {
    {"OpenArf", {"Database"}, OpenArf, nullptr},
    {"CloseArf", {"Id"}, CloseArf, nullptr},
    {"LookupAddress", {"Id", "Lenient"}, LookupAddress, nullptr},
    {"DpidToAddress", {"Dpid"}, DpidToAddress, nullptr},
    {"SetGeographicalCodes", {"Id"}, SetGeographicalCodes, nullptr},
    {"SetPointsOfInterest", {"Id"}, SetProperty, "PointsOfInterest"},
    {"SetOldPostcodeGif", {"Id"}, SetProperty, "OldPostcodeGif"},
    {"SetGeographicalCodesFilter", {"Id"}, SetProperty, "GeographicalCodesFilter"},
    {"SetStateFilter", {"Id"}, SetProperty, "StateFilter"},
    {"SetAddressFilter", {"Id"}, SetProperty, "AddressFilter"},
    {"SetGifCommonMinimumPercent", {"Id"}, SetProperty, "GifCommonMinimumPercent"},
    {"LookupByAddressId", {"Id"}, LookupByAddressId, nullptr},
    {"LookupByGeocode", {}, LookupByGeocodeCommand, nullptr},
    {"FormatAddress", {"Id", "Options"}, FormatAddress, nullptr},
    {"ValidatePartialAddress", {"Id"}, ValidatePartialAddress, nullptr},
    {"FixLastLine", {"Id"}, FixLastLine, nullptr},
    {"PostcodeToBsp", {"Id"}, PostcodeToPlan, "BSP:"},
    {"PostcodeToNpsp", {"Id"}, PostcodeToPlan, "NPSP:"},
    {"GetProperties", {"Id"}, GetProperties, nullptr},
};

/** Ends the command's name with a NUL. @return what stands behind its ";"; nothing when there is none */
char* CutName(char* text)
{
  char* const end = text + std::strcspn(text, ";");
  if (*end == '\0') return end;
  *end = '\0';
  return end + 1;
}

/** Reads a parameter for every one the command expects. One that stands in the place of another is lost. */
void ReadParameters(Call& call)
{
  for (int i = 0; i < kMostParameters; ++i) {
    call.values[i] = "";
    const char* const expected = call.command.parameters[i];
    Parameter parameter;
    if (expected == nullptr || !ReadParameter(call.rest, parameter)) continue;
    if (parameter.Is(expected)) call.values[i] = parameter.value;
  }
}

int Run(char* text, int size)
{
  char* const rest = CutName(text);
  for (const Command& command : kCommands) {
    if (!EqualIgnoringCase(text, command.name)) continue;
    Call call{command, text, size, rest, {}};
    ReadParameters(call);
    return command.run(call);
  }
  text[0] = '\0';
  return PAF_OK;
}

}  // namespace

int pafCallPafFromBrimo(char* text, int size)
{
  return AtBoundary([&] { return Run(text, size); });
}
