/**
 * The plug-in contract as it was when the first release went out. Never edit this file: plug-ins built from it exist.
 *
 * It shares nothing with <qxpaf/arf_plugin.h> but the names, and is never included beside it. The comment on each
 * operation is its slot in the table of virtual functions; the destructors take slots 0 and 1.
 */
#ifndef QXPAF_TESTS_FAKES_FROZEN_CONTRACT_H
#define QXPAF_TESTS_FAKES_FROZEN_CONTRACT_H

class IArfDb
{
 public:
  virtual ~IArfDb() = default;
  virtual void Release() = 0;                                                    // 2
  virtual const char* GetPath() = 0;                                             // 3
  virtual const char* GetCountry() = 0;                                          // 4
  virtual int* RefCount() = 0;                                                   // 5
  virtual int GetOpenMode() = 0;                                                 // 6
  virtual int Open(const char* path, int mode, char* errText, int errSize) = 0;  // 7
  virtual void Close() = 0;                                                      // 8
};

class IArfSearcher
{
 public:
  virtual ~IArfSearcher() = default;
  virtual void Release() = 0;                                                                           // 2
  virtual IArfDb* GetArfDb() = 0;                                                                       // 3
  virtual int LookupAddress(const char*, char*, int, int) = 0;                                          // 4
  virtual int FixLastLine(const char*, char*, int) = 0;                                                 // 5
  virtual int ValidatePartialAddress(const char*, char*, int) = 0;                                      // 6
  virtual int GetAddress(const char*, char*, int) = 0;                                                  // 7
  virtual int GetNextAddress(char*, int) = 0;                                                           // 8
  virtual int GetPopupHint(const char*, const char*, int, char*, int) = 0;                              // 9
  virtual int GetNextPopupHint(char*, int) = 0;                                                         // 10
  virtual int GetAddressHint(const char*, const char*, char*, int) = 0;                                 // 11
  virtual int GetNextAddressHint(char*, int) = 0;                                                       // 12
  virtual int GetFindStatus() = 0;                                                                      // 13
  virtual int GetParsedInput(char*, int) = 0;                                                           // 14
  virtual int GetProperties(const char*, char*, int) = 0;                                               // 15
  virtual int SetProperties(const char*, const char*, char*, int) = 0;                                  // 16
  virtual int ValidateFullAddress(const char*, char*, int, int, char*) = 0;                             // 17
  virtual int FormatAddress(const char*, char*, long, int) = 0;                                         // 18
  virtual int SetGeographicalCodes(const char*, char*, int) = 0;                                        // 19
  virtual int BeginPolygonSearch(const char*, const char*) = 0;                                         // 20
  virtual int GetNextAddressInPolygon(char*, int) = 0;                                                  // 21
  virtual int GetSearchStatistics(const char*, const char*, const char*, const char*, char*, int) = 0;  // 22
  virtual void TakeOverFrom(IArfSearcher*) = 0;                                                         // 23
  virtual void GetErrorDescription(char*, int, int) = 0;                                                // 24
  virtual int BeginGifConcordance(long, long, long, long, long, int) = 0;                               // 25
  virtual int GetNextGifConcordance(char*, int, char*, int, void*) = 0;                                 // 26
  virtual int BeginAddressSearch(const char*) = 0;                                                      // 27
  virtual int GetNextAddressSearch(char*, int) = 0;                                                     // 28
};

extern "C" {
__attribute__((visibility("default"))) IArfDb* GetDb();
__attribute__((visibility("default"))) IArfSearcher* GetSearcher(IArfDb* db);
__attribute__((visibility("default"))) int CanUnloadNow();
__attribute__((visibility("default"))) int GetOtherProperties(const char* request, char* out, int outSize);

/** The calls since the last asking, each as "<D or S><slot>(<plain arguments>)" and a blank; at most size - 1 bytes. */
__attribute__((visibility("default"))) void frozen_calls(char* out, int size);
}

#endif
