/**
 * The contract between libqxpaf.so and an address database plug-in.
 *
 * A plug-in is a shared library that serves the address databases of one country (or of one maker). The library
 * loads it by name, asks it for a database object (IArfDb), opens that on a path, and asks it for one search object
 * (IArfSearcher) per client instance. This header is all that a plug-in author needs to include.
 *
 * Names. A country plug-in is "lib" + base name in lower case + ".so", looked for as the dynamic loader does:
 *
 *     country   "AU"           "NZ"           "US"           "UK"           "INT"
 *     library   libqxarfau.so  libqxarfnz.so  libqxarfus.so  libqxarfuk.so  libqxarfint.so
 *
 * Any other plug-in is named by the application: the database name "DLL:Base;/some/path" loads libbase.so and opens
 * "/some/path" with it ("DLL:Base" opens the empty path).
 *
 * Obligations of a plug-in (P) and of the library (L). Numbers are never reused.
 *
 *  P1  Export GetDb, GetSearcher and CanUnloadNow with C linkage. A plug-in that lacks one of them is unloaded again
 *      and the application gets status 991 with a text that names the missing entry point. GetOtherProperties may be
 *      absent: requests to it then answer 991.
 *  P2  Build against the Itanium C++ ABI with the virtual operations in exactly the order below. Both classes are
 *      closed: operations are never added, removed or reordered.
 *  P3  Never write more than `outSize` bytes, terminator included, to an output buffer, and always terminate it.
 *      Buffers are never null unless an operation says so. On status 0 the buffer holds the answer. On any other status
 *      what the buffer holds is not used by the functions that copy an answer back (the address that the caller passed
 *      stays as it was); the others hand the caller's own buffer through, so leave a terminated, preferably empty text.
 *  P4  Return 0 for success. Any other value reaches the application unchanged as the status of its call, so use your
 *      own range for your own faults: positive, below 600, and not a code of <qxpaf/paf.h>. The library keeps the code
 *      with the instance, and the application's pafGetErrorDescription asks that same searcher's GetErrorDescription
 *      for its text. Codes of <qxpaf/paf.h> may be returned too (6408, PAF_ERR_NOT_IMPLEMENTED, for an operation that
 *      is not offered); their text is the library's.
 *  P5  Do not let exceptions out. One that escapes becomes 6404 (std::bad_alloc) or 6494 (anything else); the instance
 *      and the library's locks are released, but what the plug-in left half done stays half done.
 *  P6  Threads: one thread at a time enters a searcher, not always the same one; many searchers of one database are
 *      entered at the same time by different threads. So a searcher needs no locking for its own state, and what
 *      searchers share through their database must be immutable or locked by the plug-in. GetArfDb of a searcher and
 *      GetPath, GetCountry and GetOpenMode of a database may be called at any time, also while a query runs.
 *  P7  Strings that GetPath and GetCountry return stay valid and unchanged until the database object is released or
 *      opened again (L3).
 *  P8  Do not call a function of the library that opens or closes instances from inside GetDb, Open, Close, Release of
 *      a database, TakeOverFrom, CanUnloadNow or GetOtherProperties: the library may hold a lock.
 *  P9  CanUnloadNow answers non-zero only when no object of the plug-in is alive and no thread of its own runs.
 *  P10 The input of FormatAddress and of GetProperties may lie inside the output buffer, behind its first character:
 *      read it before you write.
 *
 *  L1  Objects are destroyed only through Release; the virtual destructors are never called by the library.
 *  L2  Every searcher of a database is released before the database is closed. The exceptions are pafClosePaf while
 *      other threads still have default instances, the update of L3, and the unloading of libqxpaf.so itself, which
 *      calls neither searchers nor databases any more.
 *  L3  Close is called exactly once, then Release, for every database whose Open was called, also after a failed Open.
 *      The exception is pafUpdateArfs when the default database of the functions without an Id (always an Australian
 *      one) has moved: it calls Close and then Open with the new path on the same object, while none of its searchers
 *      is in a call; they serve the new database from then on.
 *  L4  The counter behind RefCount is read and written by the library only, under its database lock.
 *  L5  Input strings are never null unless the application passed null where its own function allows it, are
 *      NUL-terminated 8-bit text, and are valid for the duration of the call only. The library does not check their
 *      encoding or their length.
 *  L6  No library lock is held while a searcher works, and none but the database lock while a database opens or closes.
 *      pafUpdateArfs holds the lock of the instances when it calls GetSearcher, TakeOverFrom, and Close and Open (L3).
 *  L7  Databases are shared: a second open of the same path gives the same IArfDb another user, not another Open.
 *
 * Versions. Two groups of operations came after the first plug-ins were built, and the library only calls them when the
 * searcher's property "PafLibVersion" is strictly newer than the version listed for the database's country; otherwise
 * the application gets 6408. Versions are compared number by number, a missing number counting as 0.
 *
 *     operations                                   "AU", "NZ"   "UK"         "US"     any other country
 *     BeginGifConcordance, GetNextGifConcordance   5.7.270      5.7.0.11     never    always
 *     BeginAddressSearch, GetNextAddressSearch     5.8.278      5.10.0.14    5.10.8   always
 */
#ifndef QXPAF_ARF_PLUGIN_H
#define QXPAF_ARF_PLUGIN_H

#include <cstdint>

/**
 * One address database. Created by GetDb, opened, shared by any number of searchers, closed, destroyed by Release.
 */
class IArfDb
{
 public:
  /** First in the table of virtual operations; never called by the library (L1). */
  virtual ~IArfDb() = default;

  /** Destroys the object. Called once, after Close. */
  virtual void Release() = 0;

  /** The path given to Open, as given; the library finds a shared database by comparing it (exactly, with case). */
  virtual const char* GetPath() = 0;

  /** The country code: "AU", "NZ", "UK", "US" or another text of the plug-in's choice. It decides the version gates. */
  virtual const char* GetCountry() = 0;

  /** The address of an int that the object keeps for the library as its count of users (L4). Never null. */
  virtual int* RefCount() = 0;

  /** The mode given to Open; the library reopens with it when a newer database is installed. */
  virtual int GetOpenMode() = 0;

  /**
   * Opens the database.
   *
   * @param path       what the configuration or the application named: a directory, normally. May be empty.
   * @param mode       1 read from disk, 2 load into memory, 3 map into memory; 4 is passed on as the application gave
   *                   it. A plug-in that does not know a mode should treat it as 1.
   * @param errText    receives on failure a sentence that says what is wrong with which file; pafGetErrorDescription
   *                   gives it to the application behind the text of the status.
   * @param errSize    bytes of errText, terminator included; 255 when called by the exported open functions.
   * @return 0, or the status that the application's open call returns. 6495 is customary for a missing file.
   */
  virtual int Open(const char* path, int mode, char* errText, int errSize) = 0;

  /** Lets go of files and memory. Called before Release or another Open (L3), also after a failed Open. */
  virtual void Close() = 0;
};

/**
 * One client's search object over an open database, with its own settings and its own enumerations. Created by
 * GetSearcher, entered by one thread at a time (P6), destroyed by Release.
 *
 * Unless said otherwise `out` is a buffer of `outSize` bytes (P3) and the result is a status (P4). The sizes in
 * brackets are those of the library's own buffers; where none is given, the caller's pointer and size come through
 * unchanged, so outSize may be any value: write nothing when it is below 1.
 */
class IArfSearcher
{
 public:
  /** First in the table of virtual operations; never called by the library (L1). */
  virtual ~IArfSearcher() = default;

  /** Destroys the object and ends its enumerations. The database stays open. */
  virtual void Release() = 0;

  /** The database that this searcher reads; the same object that GetSearcher was given. */
  virtual IArfDb* GetArfDb() = 0;

  /** Finds the delivery point identifier of an address [out 2048]. amas 1: by the strict addressing rules; 0: lenient.
   */
  virtual int LookupAddress(const char* address, char* out, int outSize, int amas) = 0;

  /** Corrects a last line (locality, state, postcode) [out 512]. */
  virtual int FixLastLine(const char* input, char* out, int outSize) = 0;

  /** Judges an incomplete address in at most nine characters [out 10]. */
  virtual int ValidatePartialAddress(const char* input, char* out, int outSize) = 0;

  /**
   * Starts an enumeration of addresses and gives the first. The query is a record: fields separated by the character
   * that the property "Delimiter" answers (TAB when it answers nothing). The library itself asks with seven delimiters
   * and a decimal identifier, a record whose eighth field is the delivery point [out 1024 in that case].
   */
  virtual int GetAddress(const char* query, char* out, int outSize) = 0;

  /** The next address of the enumeration that GetAddress started. */
  virtual int GetNextAddress(char* out, int outSize) = 0;

  /** Starts an enumeration of type-ahead hints and gives the first. The arguments' meaning is the plug-in's. */
  virtual int GetPopupHint(const char* text1, const char* text2, int number, char* out, int outSize) = 0;

  /** The next hint of the enumeration that GetPopupHint started. */
  virtual int GetNextPopupHint(char* out, int outSize) = 0;

  /** Starts an enumeration of address hints and gives the first. The arguments' meaning is the plug-in's. */
  virtual int GetAddressHint(const char* text1, const char* text2, char* out, int outSize) = 0;

  /** The next hint of the enumeration that GetAddressHint started. */
  virtual int GetNextAddressHint(char* out, int outSize) = 0;

  /** How the last search went, as a number of the plug-in's own scale: a find status, not a status code. */
  virtual int GetFindStatus() = 0;

  /** The components into which the last input was taken apart. */
  virtual int GetParsedInput(char* out, int outSize) = 0;

  /**
   * Reads a property. Names are compared ignoring case. The library relies on these, which every plug-in should answer:
   * "Delimiter" (the field separator; only the first character counts), "PafLibVersion" (the version gates) and
   * "Properties" (the names of all properties, each followed by ";" except the last) [out 1024, 32 and 2048].
   */
  virtual int GetProperties(const char* name, char* out, int outSize) = 0;

  /** Sets a property. On failure errText [256, empty on entry] may say why; the application gets it as error text. */
  virtual int SetProperties(const char* name, const char* value, char* errText, int errSize) = 0;

  /** Validates a whole address; *resultFlag, never null and NUL on entry, receives a one-character verdict. */
  virtual int ValidateFullAddress(const char* input, char* out, int outSize, int flags, char* resultFlag) = 0;

  /** Formats an address. formatOption is passed through; its meaning is the plug-in's. */
  virtual int FormatAddress(const char* input, char* out, long formatOption, int outSize) = 0;

  /** Restricts the searcher to geographical codes. On failure errText [256, empty on entry] may say why. */
  virtual int SetGeographicalCodes(const char* codes, char* errText, int errSize) = 0;

  /** Starts an enumeration of the addresses inside a polygon. The arguments' meaning is the plug-in's. */
  virtual int BeginPolygonSearch(const char* text1, const char* text2) = 0;

  /** The next address of the polygon search; outSize is at least 1. */
  virtual int GetNextAddressInPolygon(char* out, int outSize) = 0;

  /** Counts what a search would find. The arguments' meaning is the plug-in's; outSize is at least 1. */
  virtual int GetSearchStatistics(const char* text1, const char* text2, const char* text3, const char* text4, char* out,
                                  int outSize) = 0;

  /** Adopts the settings of the searcher that this one replaces when a newer database is installed. It is idle. */
  virtual void TakeOverFrom(IArfSearcher* previous) = 0;

  /**
   * The text of a status that this plug-in returned, for pafGetErrorDescription. It may be asked later and on another
   * operation's behalf, never while an operation of this searcher runs. Note the order of the arguments. Leave an empty
   * text for a code that is not yours.
   */
  virtual void GetErrorDescription(char* out, int code, int outSize) = 0;

  /** Starts an enumeration of GIF concordances. Called only by plug-ins new enough (Versions, above). */
  virtual int BeginGifConcordance(std::intptr_t a, std::intptr_t b, std::intptr_t c, std::intptr_t d, std::intptr_t e,
                                  int n) = 0;

  /** The next concordance; size1 and size2 are at least 1, `detail` is the application's pointer, passed through. */
  virtual int GetNextGifConcordance(char* out1, int size1, char* out2, int size2, void* detail) = 0;

  /** Starts a free-text address search. Called only by plug-ins new enough (Versions, above). */
  virtual int BeginAddressSearch(const char* query) = 0;

  /** The next address of the free-text search; outSize is at least 1. */
  virtual int GetNextAddressSearch(char* out, int outSize) = 0;
};

/* The four entry points, with C linkage. A plug-in includes this header and defines them; the macro makes them visible
   in a plug-in that is built with hidden visibility. */
#define QXPAF_PLUGIN_ENTRY extern "C" __attribute__((visibility("default")))

/** A new, unopened database object, or null (the application then gets 6496). */
QXPAF_PLUGIN_ENTRY IArfDb* GetDb();

/** A new searcher over an open database of this plug-in, or null (the application then gets 6404). */
QXPAF_PLUGIN_ENTRY IArfSearcher* GetSearcher(IArfDb* db);

/** Non-zero when the library may be unloaded (P9). */
QXPAF_PLUGIN_ENTRY int CanUnloadNow();

/**
 * Answers a request that needs no open database ("PafLibVersion", "Barcode:" followed by its data and so on).
 *
 * @return 0 and the answer in out (outSize bytes, terminator included), or a status.
 */
QXPAF_PLUGIN_ENTRY int GetOtherProperties(const char* request, char* out, int outSize);

#endif
