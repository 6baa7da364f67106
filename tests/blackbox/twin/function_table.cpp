#include "blackbox/twin/function_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <thread>

#include "qxpaf/paf.h"

namespace blackbox {

bool TakesSeveralTexts(const ExportedFunction& function)
{
  switch (function.operation) {
    case kFakeGetPopupHint:
    case kFakeGetAddressHint:
    case kFakeSetProperties:
    case kFakeGetSearchStatistics:
    case kFakeBeginPolygonSearch:
      return true;
    default:
      return false;
  }
}

bool IsLocalOnly(const ExportedFunction& function)
{
  switch (function.operation) {
    case kFakeBeginGifConcordance:
    case kFakeGetNextGifConcordance:
    case kFakeBeginAddressSearch:
    case kFakeGetNextAddressSearch:
      return true;
    default:
      return false;
  }
}

Answer CallOn(const ExportedFunction& function, int id, const std::string& in, int size)
{
  const std::string before = function.inPlace ? in : kBefore;
  const int bytes = function.impliedSize != 0 ? function.impliedSize : size;
  // Sizes that are lengths: the buffer has a byte more than the function is told.
  return InBuffer(std::max(bytes, 0) + function.extra, before,
                  [&](char* text, int) { return function.run(id, in.c_str(), text, size); });
}

Answer WithoutWords(const ExportedFunction& function, Answer answer)
{
  if (function.operation == kFakeGetFindStatus) answer.words.clear();
  return answer;
}

std::string CaseName(const std::string& function, const std::string& input, int size)
{
  return function + " on " + input + " in " + std::to_string(size);
}

namespace {

constexpr std::size_t kLongestText = 1021;  // behind the status in a reply

/** At the end of a line a carriage return is part of the line's end. */
std::string WithoutLastReturn(std::string line)
{
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

/** Answered by the process itself wherever the databases are. */
bool IsSameEverywhere(const ExportedFunction& function)
{
  return function.on == On::kNothing || function.output == Output::kOwn;
}

/** The function that takes an Id, where this one does without. */
std::string NameWithId(const ExportedFunction& function)
{
  std::string name = function.name;
  if (function.on != On::kDefault) return name;
  if (name.rfind("pafGet_", 0) == 0) name.erase(6, 1);
  return name + "Id";
}

/** Gives every enumeration something to go on with, and the questions about the last search an answer. */
void Prepare(int id)
{
  char text[kWhole];
  pafGetPopupHintId(id, "mac", "sydney", 1, text, kWhole);
  pafGetAddressHintId(id, "mac", "sydney", text, kWhole);
  pafBeginPolygonSearch(id, "-33.9,151.1;-33.9,151.3;-33.7,151.3;-33.7,151.1", "-33.86,151.21");
  std::strcpy(text, "6 macquarie ave, sydney");
  pafLookupAddress(id, text, kWhole, 0);
  pafGetAddressId(id, "Coober Pedy SA 5723", text, kWhole);
}

Answer OnOwnInstance(const ExportedFunction& function, const std::string& in, int size)
{
  int id = 0;
  EXPECT_EQ(pafOpenArfId(&id, 0, "AU"), 0);
  Prepare(id);
  const Answer answer = CallOn(function, id, in, size);
  pafClosePafId(id);
  return answer;
}

/** Default instances live as long as their threads. */
Answer OnOwnThread(const ExportedFunction& function, const std::string& in, int size)
{
  Answer answer;
  std::thread([&] {
    char text[kWhole];
    pafGetPopupHint("mac", "sydney", 1, text, kWhole);
    pafGetAddressHint("mac", "sydney", text);
    std::strcpy(text, "6 macquarie ave, sydney");
    pafGetDpidNonAmas(text, kWhole - 1);
    pafGetAddress("Coober Pedy SA 5723", text);
    answer = CallOn(function, 0, in, size);
  }).join();
  return answer;
}

Answer RunFresh(const ExportedFunction& function, const std::string& in, int size)
{
  return WithoutWords(
      function, function.on == On::kDefault ? OnOwnThread(function, in, size) : OnOwnInstance(function, in, size));
}

/** The answer that travels back: whole, but no longer than a reply holds. */
Answer FromServer(const ExportedFunction& function, Answer whole, PlugIn plugIn)
{
  whole.text = WithoutLastReturn(AsReplied(whole.text));
  if (whole.text.size() <= kLongestText) return whole;
  if (function.output == Output::kDirect && plugIn == PlugIn::kRefuses) {
    return {PAF_ERR_BUFFER_TOO_SMALL, "", "Buffer too small"};
  }
  whole.text = WithoutLastReturn(whole.text.substr(0, kLongestText));
  return whole;
}

/** An answer for a caller whose buffer has `bytes`: the library cuts; after a failure there is no text. */
Answer Delivered(const ExportedFunction& function, Answer answer, int bytes, const std::string& before)
{
  if (bytes < 1 || function.output == Output::kNone) {
    answer.text = before;
  } else if (answer.status != 0) {
    answer.text.clear();
  } else {
    answer.text.resize(std::min(answer.text.size(), static_cast<std::size_t>(bytes) - 1));
  }
  return answer;
}

/** For the default instances, and so that the database stays open between the others. */
void OpenDatabases()
{
  EXPECT_EQ(pafOpenPaf(), 0);
  EXPECT_GT(pafOpenArfId2(0, "AU"), 0);
}

}  // namespace

std::string SeenByServer(const ExportedFunction& function, const std::string& text)
{
  if (TakesSeveralTexts(function)) return text;
  // Records keep their TABs, for there they are what separates the fields; line feeds become such.
  const bool isRecord = function.operation == kFakeGetAddress;
  return WithoutLastReturn(isRecord ? AsReplied(text) : AsRequested(text));
}

FunctionTable::FunctionTable(Twin& twin, PlugIn plugIn) : twin_(twin), plugIn_(plugIn)
{
  twin_.Do(OpenDatabases);
}

void FunctionTable::Add(const ExportedFunction& function, const Input& input, int size)
{
  const std::string seen = SeenByServer(function, input.text);
  const std::string name = CaseName(function.name, input.name, size);
  const TwinCall call = [&function, in = input.text, size] { return RunFresh(function, in, size); };
  if (IsSameEverywhere(function)) {
    twin_.Same(name, call);
  } else if (IsLocalOnly(function)) {
    AddLocalOnly(function, name, call, size);
  } else if (function.checksSize && size < 1) {
    twin_.Same(name, call);
  } else if (function.output == Output::kNone && seen == input.text) {
    twin_.Same(name, call);
  } else {
    AddForwarded(function, input, seen, size, name, call);
  }
}

void FunctionTable::AddLocalOnly(const ExportedFunction& function, const std::string& name, const TwinCall& call,
                                 int size)
{
  const bool refused = function.checksSize && size < 1;
  twin_.Differs(name, "there is no request for it", call, [refused](const Answers&) {
    return refused ? Answer{PAF_ERR_BUFFER_TOO_SMALL, kBefore, "Buffer too small"}
                   : Answer{PAF_ERR_NOT_IMPLEMENTED, kBefore, "Functionality not implemented"};
  });
}

/** The local call whose whole answer the server gives: on the text that arrives there, with room for everything. */
std::string FunctionTable::AddReference(const ExportedFunction& function, const Input& input, const std::string& seen)
{
  const std::string name = "reference " + CaseName(NameWithId(function), input.name, kWhole);
  if (std::find(references_.begin(), references_.end(), name) != references_.end()) return name;
  references_.push_back(name);
  const auto& all = ExportedFunctions();
  const auto withId =
      std::find_if(all.begin(), all.end(), [&](const ExportedFunction& f) { return f.name == NameWithId(function); });
  const ExportedFunction& reference = withId != all.end() ? *withId : function;
  twin_.Differs(
      name, "a reference", [&reference, seen] { return RunFresh(reference, seen, kWhole); },
      [&reference, name, seen, plugIn = plugIn_](const Answers& local) {
        const std::string before = reference.inPlace ? seen : kBefore;
        return Delivered(reference, FromServer(reference, local[name], plugIn), kWhole, before);
      });
  return name;
}

void FunctionTable::AddForwarded(const ExportedFunction& function, const Input& input, const std::string& seen,
                                 int size, const std::string& name, const TwinCall& call)
{
  const std::string reference = AddReference(function, input, seen);
  const std::string before = function.inPlace ? input.text : kBefore;
  const int bytes = (function.impliedSize != 0 ? function.impliedSize : size) + function.extra;
  const PlugIn plugIn = plugIn_;
  twin_.Differs(name, "cut on the way", call, [&function, reference, before, bytes, plugIn](const Answers& local) {
    return Delivered(function, FromServer(function, local[reference], plugIn), bytes, before);
  });
}

std::vector<const ExportedFunction*> Callable(bool (*isWanted)(const ExportedFunction&))
{
  std::vector<const ExportedFunction*> functions;
  for (const ExportedFunction& function : ExportedFunctions()) {
    if (function.run == nullptr || function.name == std::string("pafClosePafId")) continue;
    // What reads the polygon's second text as numbers cannot be given an address; hidden failures have no words.
    if (function.operation == kFakeBeginPolygonSearch || function.name == std::string("pafFormatAddressS")) continue;
    if (isWanted(function)) functions.push_back(&function);
  }
  return functions;
}

}  // namespace blackbox
