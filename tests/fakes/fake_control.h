/**
 * The remote control of the programmable fake plug-in.
 *
 * A test loads the same library file that libqxpaf.so will load, takes the symbol "fake_control" out of it and so sits
 * on both sides of the library: it calls the flat interface, and looks here at what reached the plug-in.
 *
 *     const FakeControl* fake = ((FakeControlFunction)dlsym(handle, "fake_control"))();
 *
 * All functions are thread-safe. Everything is forgotten when the library is unloaded.
 *
 * When the environment variable QXPAF_FAKE_LOG names a file at the time of loading, every life-cycle event ("load",
 * "GetDb", "DbOpen /path", "Release", "CanUnloadNow", "unload" and so on) is appended to it as a line
 * "<library> <event>", so that a test can see what happened in another process or after the library was gone.
 */
#ifndef QXPAF_TESTS_FAKES_FAKE_CONTROL_H
#define QXPAF_TESTS_FAKES_FAKE_CONTROL_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Everything the library can call, in the order of the contract: entry points, database, searcher. */
#define QXPAF_FAKE_OPERATIONS(X) \
  X(GetDb)                       \
  X(GetSearcher)                 \
  X(CanUnloadNow)                \
  X(GetOtherProperties)          \
  X(DbRelease)                   \
  X(DbGetPath)                   \
  X(DbGetCountry)                \
  X(DbRefCount)                  \
  X(DbGetOpenMode)               \
  X(DbOpen)                      \
  X(DbClose)                     \
  X(Release)                     \
  X(GetArfDb)                    \
  X(LookupAddress)               \
  X(FixLastLine)                 \
  X(ValidatePartialAddress)      \
  X(GetAddress)                  \
  X(GetNextAddress)              \
  X(GetPopupHint)                \
  X(GetNextPopupHint)            \
  X(GetAddressHint)              \
  X(GetNextAddressHint)          \
  X(GetFindStatus)               \
  X(GetParsedInput)              \
  X(GetProperties)               \
  X(SetProperties)               \
  X(ValidateFullAddress)         \
  X(FormatAddress)               \
  X(SetGeographicalCodes)        \
  X(BeginPolygonSearch)          \
  X(GetNextAddressInPolygon)     \
  X(GetSearchStatistics)         \
  X(TakeOverFrom)                \
  X(GetErrorDescription)         \
  X(BeginGifConcordance)         \
  X(GetNextGifConcordance)       \
  X(BeginAddressSearch)          \
  X(GetNextAddressSearch)

typedef enum FakeOperation
{
#define QXPAF_FAKE_ENUMERATOR(name) kFake##name,
  QXPAF_FAKE_OPERATIONS(QXPAF_FAKE_ENUMERATOR)
#undef QXPAF_FAKE_ENUMERATOR
      kFakeOperationCount
} FakeOperation;

/** What an operation does besides returning its status. */
typedef enum FakeBehaviour
{
  kFakeCopy,          /* copies the text into the output buffer, cut to its size and terminated */
  kFakeFill,          /* fills the output buffer to its last byte: size - 1 times 'x' and the terminator */
  kFakeSilent,        /* writes nothing, neither text nor flag */
  kFakeThrowBadAlloc, /* throws std::bad_alloc */
  kFakeThrowError,    /* throws std::runtime_error */
  kFakeThrowInt,      /* throws an int, which is no std::exception */
  kFakeAnswerNull     /* GetDb and GetSearcher: a null object */
} FakeBehaviour;

/** The programmed answer of one operation. */
typedef struct FakeAnswer
{
  int status;        /* the status; of GetFindStatus the find status; of CanUnloadNow its result */
  const char* text;  /* output or error text, copied by setAnswer; null is "" */
  const char* text2; /* the second output of GetNextGifConcordance */
  char flag;         /* the result flag of ValidateFullAddress */
  FakeBehaviour behaviour;
} FakeAnswer;

typedef enum FakeArgumentKind
{
  kFakeTextArgument,
  kFakeNumberArgument,
  kFakePointerArgument
} FakeArgumentKind;

/** One argument as it arrived. */
typedef struct FakeArgument
{
  FakeArgumentKind kind;
  long long number;    /* a number; of an error buffer or result flag the byte it held on entry */
  const void* pointer; /* the pointer of a text or buffer */
  const char* bytes;   /* a copy of the text, terminated; valid until clearCalls or reset */
  size_t length;       /* its length */
} FakeArgument;

enum
{
  kFakeMaxArguments = 6
};

/** One call as it arrived. */
typedef struct FakeCall
{
  FakeOperation operation;
  const void* object;   /* the database or searcher; null for an entry point */
  unsigned long thread; /* pthread_self() of the caller */
  int argumentCount;
  FakeArgument arguments[kFakeMaxArguments];
} FakeCall;

typedef enum FakeCounter
{
  kFakeLiveDbs,
  kFakeLiveSearchers,
  kFakeOpens, /* calls of Open, failed ones included */
  kFakeCloses,
  kFakeDbReleases,
  kFakeSearcherReleases,
  kFakeCounterCount
} FakeCounter;

typedef struct FakeControl
{
  /** File name of this library and name of an operation. */
  const char* libraryName;
  const char* (*operationName)(FakeOperation operation);

  /** Back to the state of loading: answers, properties, country, records, gates. Counters and objects stay. */
  void (*reset)(void);

  /** Programs the answer to all further calls of an operation. Unprogrammed, an operation answers 0 and "";
     GetFindStatus 0; CanUnloadNow whether no object is alive; GetErrorDescription "fake text for <code>". */
  void (*setAnswer)(FakeOperation operation, const FakeAnswer* answer);
  void (*clearAnswer)(FakeOperation operation);

  /** What GetCountry answers, and what GetPath answers instead of the path given to Open (null: that path). */
  void (*setCountry)(const char* country);
  void (*setReportedPath)(const char* path);

  /** What GetProperties answers for one name (case ignored), with which status. Comes before its general answer. */
  void (*setProperty)(const char* name, const char* value, int status);

  /** Recording is on after loading. With it off the fake takes no lock of its own, so that it hides no race. */
  void (*setRecording)(int on);
  size_t (*callCount)(FakeOperation operation);
  /** The index-th recorded call of an operation. @return 0 when there is none */
  int (*getCall)(FakeOperation operation, size_t index, FakeCall* call);
  /** The names of all recorded calls in order, each followed by a blank, cut to size - 1 characters. */
  void (*sequence)(char* out, size_t size);
  void (*clearCalls)(void);

  /** From block to unblock every call of the operation waits inside the plug-in. waitUntilBlocked waits until at least
      one call is waiting. @return how many wait, 0 after the time-out */
  void (*block)(FakeOperation operation);
  int (*waitUntilBlocked)(FakeOperation operation, int milliseconds);
  void (*unblock)(FakeOperation operation);

  long (*counter)(FakeCounter counter);
  /** The library's counter in the open database whose Open was given this path, -1 when there is none. */
  int (*refCount)(const char* path);
  /** Breaches of the contract by the library, one sentence a line; empty when there are none. @return their number */
  size_t (*violations)(char* out, size_t size);
} FakeControl;

typedef const FakeControl* (*FakeControlFunction)(void);

#ifdef __cplusplus
}
#endif

#endif
