/** The requests that the server understands, one row each. */
#ifndef PAFD_REQUEST_TABLE_H
#define PAFD_REQUEST_TABLE_H

#include <cstddef>
#include <span>
#include <string_view>

#include "arguments.h"
#include "reply.h"

namespace pafd {

/** What a request does besides calling. */
enum class Effect
{
  Nothing,
  Closes,      // on success the connection gives up the Id
  UsesDefault  // the function does not open the thread's default instance itself, but needs it
};

struct Request
{
  std::string_view name;  // also the name of the exported function
  FieldList fields;
  Shape shape;
  /** Calls the function; the result goes into the answer. */
  void (*call)(const Arguments& arguments, Answer& answer);
  Effect effect = Effect::Nothing;
  /** For clients that are not trusted: 0, or the status to reply with instead of calling. Null: nothing to refuse. */
  int (*refuse)(const Arguments& arguments) = nullptr;
};

/** All requests, ordered by name. */
std::span<const Request> Requests();

/** @return the row; null for a name that cannot be requested */
const Request* FindRequest(std::string_view name);

}  // namespace pafd

#endif
