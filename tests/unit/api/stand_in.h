/** A database and a searcher that live in the test itself, for what a real plug-in library is not needed for. */
#ifndef QXPAF_TESTS_UNIT_API_STAND_IN_H
#define QXPAF_TESTS_UNIT_API_STAND_IN_H

#include <cstdio>
#include <functional>
#include <string>

#include "qxpaf/arf_plugin.h"

struct StandInDb : IArfDb
{
  const char* country = "XX";
  int references = 0;

  void Release() override {}
  const char* GetPath() override { return "/stand-in"; }
  const char* GetCountry() override { return country; }
  int* RefCount() override { return &references; }
  int GetOpenMode() override { return 1; }
  int Open(const char*, int, char*, int) override { return 0; }
  void Close() override {}
};

/** Answers every operation with `status` and, where there is an output, `text`. */
struct StandInSearcher : IArfSearcher
{
  IArfDb* db = nullptr;
  int status = 0;
  std::string text;
  std::string version;
  int versionStatus = 0;
  bool versionAsked = false;
  bool released = false;
  std::function<void()> during;

  int Answer(char* out, int outSize)
  {
    if (during) during();
    if (outSize > 0) std::snprintf(out, static_cast<std::size_t>(outSize), "%s", text.c_str());
    return status;
  }

  void Release() override { released = true; }
  IArfDb* GetArfDb() override { return db; }
  int LookupAddress(const char*, char* out, int outSize, int) override { return Answer(out, outSize); }
  int FixLastLine(const char*, char* out, int outSize) override { return Answer(out, outSize); }
  int ValidatePartialAddress(const char*, char* out, int outSize) override { return Answer(out, outSize); }
  int GetAddress(const char*, char* out, int outSize) override { return Answer(out, outSize); }
  int GetNextAddress(char* out, int outSize) override { return Answer(out, outSize); }
  int GetPopupHint(const char*, const char*, int, char* out, int outSize) override { return Answer(out, outSize); }
  int GetNextPopupHint(char* out, int outSize) override { return Answer(out, outSize); }
  int GetAddressHint(const char*, const char*, char* out, int outSize) override { return Answer(out, outSize); }
  int GetNextAddressHint(char* out, int outSize) override { return Answer(out, outSize); }
  int GetFindStatus() override { return status; }
  int GetParsedInput(char* out, int outSize) override { return Answer(out, outSize); }
  int GetProperties(const char* name, char* out, int outSize) override
  {
    if (std::string(name) != "PafLibVersion") return Answer(out, outSize);
    versionAsked = true;
    std::snprintf(out, static_cast<std::size_t>(outSize), "%s", version.c_str());
    return versionStatus;
  }
  int SetProperties(const char*, const char*, char* out, int outSize) override { return Answer(out, outSize); }
  int ValidateFullAddress(const char*, char* out, int outSize, int, char*) override { return Answer(out, outSize); }
  int FormatAddress(const char*, char* out, long, int outSize) override { return Answer(out, outSize); }
  int SetGeographicalCodes(const char*, char* out, int outSize) override { return Answer(out, outSize); }
  int BeginPolygonSearch(const char*, const char*) override { return status; }
  int GetNextAddressInPolygon(char* out, int outSize) override { return Answer(out, outSize); }
  int GetSearchStatistics(const char*, const char*, const char*, const char*, char* out, int outSize) override
  {
    return Answer(out, outSize);
  }
  void TakeOverFrom(IArfSearcher*) override {}
  void GetErrorDescription(char* out, int, int outSize) override { Answer(out, outSize); }
  int BeginGifConcordance(std::intptr_t, std::intptr_t, std::intptr_t, std::intptr_t, std::intptr_t, int) override
  {
    return status;
  }
  int GetNextGifConcordance(char* out, int outSize, char*, int, void*) override { return Answer(out, outSize); }
  int BeginAddressSearch(const char*) override { return status; }
  int GetNextAddressSearch(char* out, int outSize) override { return Answer(out, outSize); }
};

#endif
