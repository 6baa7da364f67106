/**
 * A plug-in that answers every operation with what it was asked, so that a reply of the server shows what reached the
 * plug-in: "LookupAddress amas=1 address=<1 High St\nSydney>". Line feeds and TABs are shown as \n and \t.
 *
 * A text argument that begins with one of these does something else, too:
 *
 *     status:N      the operation fails with status N; a validation's verdict is then "V"
 *     fill:N        the answer is N times "x", cut to the buffer
 *     wait:N        the operation takes N milliseconds
 *     lines         the answer has a line feed and a TAB in it
 */
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <thread>

#include "qxpaf/arf_plugin.h"

namespace {

std::string Shown(std::string_view text)
{
  std::string shown = "<";
  for (const char c : text) {
    if (c == '\n') {
      shown += "\\n";
    } else if (c == '\t') {
      shown += "\\t";
    } else {
      shown += c;
    }
  }
  return shown + ">";
}

struct Argument
{
  Argument(const char* argumentName, const char* text) : name(argumentName), shown(Shown(text)), order(text) {}
  Argument(const char* argumentName, long number) : name(argumentName), shown(std::to_string(number)) {}

  const char* name;
  std::string shown;
  std::string order;
};

/** The number behind an order's name, -1 when the text is not that order. */
long Order(const std::string& text, std::string_view name)
{
  return text.starts_with(name) ? std::atol(text.c_str() + name.size()) : -1;
}

void Put(std::string_view text, char* out, int outSize)
{
  if (out == nullptr || outSize < 1) {
    return;
  }
  const std::size_t length = std::min(text.size(), static_cast<std::size_t>(outSize) - 1);
  std::memcpy(out, text.data(), length);
  out[length] = '\0';
}

int Echo(const char* operation, std::initializer_list<Argument> arguments, char* out, int outSize)
{
  std::string answer = operation;
  int status = 0;
  for (const Argument& argument : arguments) {
    answer += std::string(" ") + argument.name + "=" + argument.shown;
    const long wanted = Order(argument.order, "status:");
    status = wanted > 0 ? static_cast<int>(wanted) : status;
    if (const long wait = Order(argument.order, "wait:"); wait > 0) {
      std::this_thread::sleep_for(std::chrono::milliseconds(wait));
    }
    if (const long fill = Order(argument.order, "fill:"); fill > 0) {
      answer = std::string(static_cast<std::size_t>(fill), 'x');
    }
    if (argument.order == "lines") {
      answer = "one\ntwo\tthree";
    }
  }
  Put(answer, out, outSize);
  return status;
}

class EchoDb : public IArfDb
{
 public:
  void Release() override { delete this; }
  const char* GetPath() override { return path_.c_str(); }
  const char* GetCountry() override { return "AU"; }
  int* RefCount() override { return &count_; }
  int GetOpenMode() override { return mode_; }
  int Open(const char* path, int mode, char*, int) override
  {
    path_ = path;
    mode_ = mode;
    return 0;
  }
  void Close() override {}

 private:
  std::string path_;
  int mode_ = 0;
  int count_ = 0;
};

std::atomic<long> searchers = 0;

class EchoSearcher : public IArfSearcher
{
 public:
  explicit EchoSearcher(IArfDb* db) : db_(db) {}
  void Release() override { delete this; }
  IArfDb* GetArfDb() override { return db_; }

  int LookupAddress(const char* address, char* out, int outSize, int amas) override
  {
    return Echo("LookupAddress", {{"amas", amas}, {"address", address}}, out, outSize);
  }
  int FixLastLine(const char* input, char* out, int outSize) override
  {
    return Echo("FixLastLine", {{"input", input}}, out, outSize);
  }
  int ValidatePartialAddress(const char* input, char* out, int outSize) override
  {
    return Echo("Partial", {{"", input}}, out, outSize);
  }
  int GetAddress(const char* query, char* out, int outSize) override
  {
    return Echo("GetAddress", {{"query", query}}, out, outSize);
  }
  int GetNextAddress(char* out, int outSize) override { return Echo("GetNextAddress", {}, out, outSize); }
  int GetPopupHint(const char* text1, const char* text2, int number, char* out, int outSize) override
  {
    return Echo("GetPopupHint", {{"1", text1}, {"2", text2}, {"number", number}}, out, outSize);
  }
  int GetNextPopupHint(char* out, int outSize) override { return Echo("GetNextPopupHint", {}, out, outSize); }
  int GetAddressHint(const char* text1, const char* text2, char* out, int outSize) override
  {
    return Echo("GetAddressHint", {{"1", text1}, {"2", text2}}, out, outSize);
  }
  int GetNextAddressHint(char* out, int outSize) override { return Echo("GetNextAddressHint", {}, out, outSize); }
  int GetFindStatus() override { return 77; }
  int GetParsedInput(char* out, int outSize) override { return Echo("GetParsedInput", {}, out, outSize); }

  int GetProperties(const char* name, char* out, int outSize) override
  {
    if (std::string_view(name) == "Delimiter") {
      Put(delimiter_, out, outSize);
      return 0;
    }
    // Sort plans fit few characters; they tell which searcher answers.
    const std::string_view text = name;
    if (text.starts_with("BSP:") || text.starts_with("NPSP:")) {
      Put(std::string(text.substr(0, text.find(':'))) + " of " + std::to_string(number_), out, outSize);
      return 0;
    }
    return Echo("GetProperties", {{"name", name}}, out, outSize);
  }

  int SetProperties(const char* name, const char* value, char*, int) override
  {
    if (std::string_view(name) == "Delimiter") {
      delimiter_ = value;
      return 0;
    }
    last_ = std::string(name) + "=" + Shown(value);
    return Echo("", {{"", value}}, nullptr, 0);
  }
  int ValidateFullAddress(const char* input, char* out, int outSize, int flags, char* resultFlag) override
  {
    *resultFlag = 'V';
    return Echo("ValidateFullAddress", {{"flags", flags}, {"input", input}}, out, outSize);
  }
  int FormatAddress(const char* input, char* out, long formatOption, int outSize) override
  {
    return Echo("FormatAddress", {{"by", number_}, {"option", formatOption}, {"input", input}}, out, outSize);
  }
  int SetGeographicalCodes(const char* codes, char*, int) override
  {
    last_ = std::string("codes=") + Shown(codes);
    return Echo("", {{"", codes}}, nullptr, 0);
  }
  int BeginPolygonSearch(const char* text1, const char* text2) override
  {
    last_ = "polygon=" + Shown(text1) + Shown(text2);
    return Echo("", {{"", text1}}, nullptr, 0);
  }
  /** Answers what was set or begun last, which has no answer of its own. */
  int GetNextAddressInPolygon(char* out, int outSize) override
  {
    Put(last_, out, outSize);
    return 0;
  }
  int GetSearchStatistics(const char* text1, const char* text2, const char* text3, const char* text4, char* out,
                          int outSize) override
  {
    return Echo("GetSearchStatistics", {{"1", text1}, {"2", text2}, {"3", text3}, {"4", text4}}, out, outSize);
  }
  void TakeOverFrom(IArfSearcher*) override {}
  void GetErrorDescription(char* out, int code, int outSize) override
  {
    Put("echo of status " + std::to_string(code), out, outSize);
  }
  int BeginGifConcordance(std::intptr_t, std::intptr_t, std::intptr_t, std::intptr_t, std::intptr_t, int) override
  {
    return 0;
  }
  int GetNextGifConcordance(char*, int, char*, int, void*) override { return 0; }
  int BeginAddressSearch(const char*) override { return 0; }
  int GetNextAddressSearch(char*, int) override { return 0; }

 private:
  IArfDb* db_;
  long number_ = ++searchers;
  std::string delimiter_;
  std::string last_;
};

}  // namespace

extern "C" {

__attribute__((visibility("default"))) IArfDb* GetDb()
{
  return new EchoDb;
}

__attribute__((visibility("default"))) IArfSearcher* GetSearcher(IArfDb* db)
{
  return new EchoSearcher(db);
}

__attribute__((visibility("default"))) int CanUnloadNow()
{
  return 0;
}

__attribute__((visibility("default"))) int GetOtherProperties(const char* request, char* out, int outSize)
{
  const std::string_view text = request;
  const std::size_t colon = std::min(text.find(':'), text.size() - 1);
  return Echo("Other",
              {{"", std::string(text.substr(0, colon + 1)).c_str()}, {"", std::string(text.substr(colon + 1)).c_str()}},
              out, outSize);
}
}
