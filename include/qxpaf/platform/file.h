/**
 * Files and directories: a file handle that closes itself, removing, renaming, existence tests, creating directories,
 * 64-bit file positions.
 *
 * Narrow names are bytes for the system as they stand; wide names are converted to UTF-8. Names and modes are
 * zero-terminated; unless a function says otherwise, null is a caller error. Failures are reported by the result, with
 * errno as the system call left it. All functions are reentrant; one QX_File is used by one thread at a time.
 */
#ifndef QXPAF_PLATFORM_FILE_H
#define QXPAF_PLATFORM_FILE_H

#include <cstdio>

#include "qxpaf/export.h"

/** Owns one open file of the C library, or none. Its only member is the FILE*. */
class QXPAF_API QX_File
{
 public:
  /** Closed. */
  QX_File();

  /** Close(). */
  ~QX_File();

  QX_File(const QX_File&) = delete;
  QX_File& operator=(const QX_File&) = delete;

  /** Closes the file if one is open; a failure to write what was buffered is not reported. */
  void Close();

  /**
   * Closes what is open, then opens a file as fopen does. On failure this object is closed.
   *
   * @param mode         as for fopen
   * @param reportError  true: on failure write the name and the system's message to standard error
   * @return true when the file is open
   */
  bool Open(const char* name, const char* mode, bool reportError);
  bool Open(const wchar_t* name, const wchar_t* mode, bool reportError);
  bool Open(const wchar_t* name, const char* mode, bool reportError);

  /** True when no file is open. */
  bool operator!() const;

  /** True when a file is open. */
  bool IsOpen() const;

  /** The open file, still owned by this object, or null. */
  FILE* f() const;

 private:
  FILE* file_;
};

/** Removes a file or an empty directory. @return 0, or -1 */
QXPAF_API int QX_File_Remove(const char* path);
QXPAF_API int QX_File_Remove(const wchar_t* path);

/** Renames a file or directory; an existing file of the new name is replaced. @return 0, or -1 */
QXPAF_API int QX_File_Rename(const char* from, const char* to);
QXPAF_API int QX_File_Rename(const wchar_t* from, const wchar_t* to);

/** True when the file can be opened for reading, which a readable directory can be too. Null gives false. */
QXPAF_API bool FileExists_(const char* path);
QXPAF_API bool FileExists_(const wchar_t* path);

/** True when the path names a directory that can be opened for listing. Null gives false. */
QXPAF_API bool DirectoryExists_(const char* path);

/**
 * True when at least one entry of a directory matches a wild-card pattern.
 *
 * @param pattern  a directory, "/", and a pattern for names as fnmatch takes it ("*", "?", "[...]"). Without any "/"
 * the result is always false, whatever the working directory holds: write "./" in front. Hidden entries,
 *                 "." and ".." match like any other. A directory part of more than 255 characters ("/" included) or a
 *                 name pattern of more than 255 gives false, and so does null.
 */
QXPAF_API bool FilePatternExists_(const char* pattern);

/** Creates one directory with permissions 0775, less the process's umask. @return 0, or -1 */
QXPAF_API int mkdir_(const char* path);

/**
 * Creates every missing directory of a path.
 *
 * @param path  at most 255 characters; one trailing "/" is ignored. An empty or longer path and null give false.
 * @return true when the directory exists now, created or not. A failure leaves the directories created before it. Where
 *         a path to be created holds a doubled "/", the directory before the doubling is created and the result false.
 */
QXPAF_API bool CreateDir(const char* path);

/** The position in a file in bytes from its start, or -1. */
QXPAF_API long long ftell_(FILE* f);

/** Moves the position in a file as fseek does (SEEK_SET, SEEK_CUR, SEEK_END). @return 0, or -1 */
QXPAF_API int fseek_(FILE* f, long long offset, int whence);

#endif
