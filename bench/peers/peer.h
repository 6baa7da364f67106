/**
 * A way to look addresses up: this library, or what an engineer would otherwise put together. Each peer is a program of
 * its own, made of peer_main.cpp and one implementation, so that memory and start-up are its own too.
 */
#ifndef QXPAF_BENCH_PEERS_PEER_H
#define QXPAF_BENCH_PEERS_PEER_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "word_forms.h"

namespace peers {

struct Place
{
  double latitude = 0;   ///< degrees, south negative
  double longitude = 0;  ///< degrees
};

struct Address
{
  std::string identifier;
  std::string label;  ///< the whole address in one line
  Place place;
  std::string meshBlock;
};

/** A peer cannot do what it was asked for; not a fault. */
class NotOffered : public std::runtime_error
{
  using std::runtime_error::runtime_error;
};

/** Answers of one query, the best first: identifiers. */
using Answers = std::vector<std::string>;

/** Hints that a query for them gives at most: what a screen shows. */
inline constexpr std::size_t kHints = 5;

/** All functions report what goes wrong by std::runtime_error or an exception derived from std::exception. */
class Peer
{
 public:
  Peer() = default;
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;
  virtual ~Peer() = default;

  /** Builds the index in the place that MakePeer was given. */
  virtual void Build(const std::vector<Address>& addresses) = 0;

  /** Bytes that a finished index takes. */
  virtual std::uint64_t Bytes() = 0;

  /** Opens a finished index. The functions below need it. */
  virtual void Open() = 0;

  /** The address that is most likely meant; nothing when there is none. */
  virtual void Lookup(const std::string& text, Answers& answers) = 0;

  /** Up to kHints addresses for the beginning of one. */
  virtual void Complete(const std::string&, Answers&) { throw NotOffered("no type-ahead"); }

  /** Up to kHints lines for the beginning of an address, of which some stand for several, such as a street: the
      identifier of those that are one address, nothing for the others. */
  virtual void List(const std::string&, Answers&) { throw NotOffered("no lists of streets"); }

  /** Turns answers of the three into identifiers of the data, where the peer has others of its own. Not timed. */
  virtual void Translate(Answers&) {}

  /** The address nearest to a place. */
  virtual void FindNearest(Place, Answers&) { throw NotOffered("no places"); }

  /** All addresses in a polygon without holes, in any order. */
  virtual void FindWithin(const std::vector<Place>&, Answers&) { throw NotOffered("no places"); }
};

/**
 * The program's peer.
 *
 * @param place  where the index is: a directory, or how to reach the server
 * @param forms  written forms of words; must live as long as the peer
 */
std::unique_ptr<Peer> MakePeer(const std::string& place, const WordForms& forms);

}  // namespace peers

#endif
