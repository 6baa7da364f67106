/** Setting up the library that the server serves. */
#ifndef PAFD_LIBRARY_H
#define PAFD_LIBRARY_H

#include <string>

namespace pafd {

/** "description (status 6499)", from the calling thread's last failure. */
std::string StatusText(int status);

/**
 * Makes a file the configuration file. To be called before any other thread runs.
 *
 * @throws Failure when it cannot be read, or when a file of the working directory would be read instead
 */
void UseConfiguration(const std::string& file);

/**
 * Makes the library work locally, whatever the configuration says: a server must not forward to a server.
 *
 * @param ignoresRemote  false: a configuration that asks for forwarding is a mistake
 * @throws Failure for that mistake
 */
void WorkLocally(bool ignoresRemote);

/** The default database, for requests without an Id; held open while the object lives. */
class DefaultDatabase
{
 public:
  /** Opens it; a failure is logged and leaves those requests without a database. */
  DefaultDatabase();
  ~DefaultDatabase();
  DefaultDatabase(const DefaultDatabase&) = delete;
  DefaultDatabase& operator=(const DefaultDatabase&) = delete;

 private:
  bool isOpen_ = false;
};

}  // namespace pafd

#endif
