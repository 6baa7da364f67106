/**
 * The interface of <qxpaf/paf.h> for C++17: instances that close themselves, results as strings, enumerations as
 * ranges. Header only; nothing here is part of the library's binary interface.
 *
 *     qxpaf::Result<qxpaf::Session> session = qxpaf::Session::Open("AU.Main");
 *     if (!session) return Complain(session.Status().Text());
 *     const qxpaf::Result<std::string> dpid = session->LookupAddress("1 Macquarie St Sydney NSW 2000");
 *     if (dpid) std::cout << *dpid << '\n';
 *
 * The same with exceptions, where that is wanted: Value() of a Result that holds a failure throws qxpaf::Error.
 *
 *     qxpaf::Session session = qxpaf::Session::Open("AU.Main").Value();
 *     std::cout << session.LookupAddress("1 Macquarie St Sydney NSW 2000").Value() << '\n';
 *
 * A failure's text is asked for when it happens, on the thread on which it happens, so a Status may be kept and passed
 * to other threads. Buffers are grown and the call is repeated as long as the library reports 6406. Answers that the
 * library cuts (LookupAddress, FixLastLine, ValidatePartialAddress) get a buffer in which they are whole.
 *
 * One Session is used by one thread at a time; a call beside another one on the same Session gives 6412. Allocation
 * failures throw std::bad_alloc; nothing else throws but what is said to.
 */
#ifndef QXPAF_PAF_HPP
#define QXPAF_PAF_HPP

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "qxpaf/paf.h"

namespace qxpaf {

/** A status code with its text. */
class Status
{
 public:
  /** Success. */
  Status() = default;

  /** The outcome of a call that has just been made on this thread; consumes the thread's last error. */
  explicit Status(int code) : code_(code)
  {
    if (code_ == PAF_OK) return;
    text_.resize(kLongestText);
    pafGetErrorDescription(text_.data(), code_, static_cast<int>(text_.size()));
    text_.resize(std::char_traits<char>::length(text_.c_str()));
  }

  /** 0, a value of enum PafStatus, or a plug-in's code. */
  int Code() const { return code_; }

  /** What went wrong, for people; empty after a success and for codes that nobody has a text for. */
  const std::string& Text() const { return text_; }

  bool Ok() const { return code_ == PAF_OK; }
  explicit operator bool() const { return Ok(); }

  /** @throws Error unless Ok */
  inline void OrThrow() const;

 private:
  static constexpr std::size_t kLongestText = 1024;

  int code_ = PAF_OK;
  std::string text_;
};

/** A failure as an exception; what() is the text, or the code where there is none. */
class Error : public std::runtime_error
{
 public:
  explicit Error(const Status& status)
      : std::runtime_error(status.Text().empty() ? "status " + std::to_string(status.Code()) : status.Text()),
        status_(status)
  {
  }
  const class Status& Status() const { return status_; }

 private:
  class Status status_;
};

inline void Status::OrThrow() const
{
  if (!Ok()) throw Error(*this);
}

/** A value, or the status that came instead of it. */
template <class T>
class Result
{
 public:
  Result(T value) : value_(std::move(value)) {}
  Result(class Status failure) : status_(std::move(failure)) {}

  bool Ok() const { return value_.has_value(); }
  explicit operator bool() const { return Ok(); }
  const class Status& Status() const { return status_; }

  /** Only when Ok. */
  T& operator*() & { return *value_; }
  const T& operator*() const& { return *value_; }
  T&& operator*() && { return *std::move(value_); }
  T* operator->() { return &*value_; }
  const T* operator->() const { return &*value_; }

  /** @throws Error unless Ok */
  T& Value() &
  {
    status_.OrThrow();
    return *value_;
  }
  const T& Value() const&
  {
    status_.OrThrow();
    return *value_;
  }
  T Value() &&
  {
    status_.OrThrow();
    return *std::move(value_);
  }

  T ValueOr(T otherwise) const& { return Ok() ? *value_ : std::move(otherwise); }

 private:
  std::optional<T> value_;
  class Status status_;
};

/** How a database is opened. */
enum class MemoryMode : int
{
  Configured = 0,
  Disk = 1,
  Memory = 2,
  Mapped = 3
};

/** By which rules an address is looked up. */
enum class Rules : int
{
  Lenient = 0,
  Amas = 1
};

/** A whole address, and the plug-in's one-character verdict on it; NUL when it gave none. */
struct ValidatedAddress
{
  std::string address;
  char verdict = '\0';
};

namespace detail {

inline constexpr std::size_t kFirstSize = 1024;
inline constexpr std::size_t kLargestSize = std::size_t{1} << 24;

inline int SizeOf(const std::string& buffer)
{
  return static_cast<int>(buffer.size());
}

inline std::string UpToTerminator(std::string buffer)
{
  buffer.resize(std::char_traits<char>::length(buffer.c_str()));
  return buffer;
}

/** The answer of `call(buffer, size)`, made again with a larger buffer as long as the answer does not fit. */
template <class Call>
Result<std::string> Grown(Call&& call)
{
  for (std::size_t size = kFirstSize;; size *= 4) {
    std::string buffer(size, '\0');
    const int status = call(buffer.data(), SizeOf(buffer));
    if (status == PAF_OK) return UpToTerminator(std::move(buffer));
    if (status != PAF_ERR_BUFFER_TOO_SMALL || size >= kLargestSize) return Status(status);
  }
}

/** The answer of a call that replaces its input, in a buffer that holds either. */
template <class Call>
Result<std::string> InPlace(std::string_view input, std::size_t longestAnswer, Call&& call)
{
  std::string buffer(input.substr(0, input.find('\0')));
  buffer.resize(std::max(buffer.size(), longestAnswer) + 1);
  const int status = call(buffer.data(), SizeOf(buffer));
  if (status != PAF_OK) return Status(status);
  return UpToTerminator(std::move(buffer));
}

}  // namespace detail

/**
 * What an enumeration finds, one text after the other: an input range, to be walked through once while its Session is
 * open and starts no other enumeration of the kind.
 *
 *     qxpaf::Enumeration addresses = session.Addresses(query);
 *     for (const std::string& record : addresses) Print(record);
 *     if (!addresses.Status().Ok()) Complain(addresses.Status().Text());
 *
 * It ends at a failure, and at an answer in which nothing stands but delimiters.
 */
class Enumeration
{
 public:
  class iterator
  {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = std::string;
    using difference_type = std::ptrdiff_t;
    using pointer = const std::string*;
    using reference = const std::string&;

    iterator() = default;
    explicit iterator(Enumeration* range) : range_(range) { StopAtEnd(); }

    reference operator*() const { return range_->current_; }
    pointer operator->() const { return &range_->current_; }
    iterator& operator++()
    {
      range_->Advance();
      StopAtEnd();
      return *this;
    }
    void operator++(int) { ++*this; }
    friend bool operator==(const iterator& a, const iterator& b) { return a.range_ == b.range_; }
    friend bool operator!=(const iterator& a, const iterator& b) { return !(a == b); }

   private:
    void StopAtEnd()
    {
      if (range_ != nullptr && range_->atEnd_) range_ = nullptr;
    }
    Enumeration* range_ = nullptr;
  };

  iterator begin() { return iterator(this); }
  iterator end() { return iterator(); }

  /** What ended the enumeration; success as long as it goes on and when it came to its natural end. */
  const class Status& Status() const { return status_; }

 private:
  friend class Session;
  using Next = int (*)(int id, char* out, int size);

  /** Of an enumeration whose start gave its first text. */
  Enumeration(int id, Next next, char delimiter, Result<std::string> first)
      : id_(id), next_(next), delimiter_(delimiter)
  {
    Take(std::move(first));
  }

  /** Of an enumeration whose first text is asked for as every other one. */
  Enumeration(int id, Next next, char delimiter, const class Status& start)
      : id_(id), next_(next), delimiter_(delimiter), status_(start), atEnd_(!start.Ok())
  {
    if (!atEnd_) Advance();
  }

  void Advance()
  {
    Take(detail::Grown([this](char* out, int size) { return next_(id_, out, size); }));
  }

  void Take(Result<std::string> text)
  {
    status_ = text.Status();
    current_ = text ? std::move(*text) : std::string();
    atEnd_ = current_.find_first_not_of(delimiter_) == std::string::npos;
  }

  int id_;
  Next next_;
  char delimiter_;
  std::string current_;
  class Status status_;
  bool atEnd_ = false;
};

/**
 * An open instance. Movable; closes itself. A closed or moved-from one answers 6405, but FindStatus -1 and Property
 * what is known without an instance.
 */
class Session
{
 public:
  /** Opens a database by its name (see pafOpenArfId); the empty name is the configured default database. */
  static Result<Session> Open(const std::string& database, MemoryMode mode = MemoryMode::Configured)
  {
    int id = 0;
    if (const int status = pafOpenArfId(&id, static_cast<int>(mode), database.c_str()); status != PAF_OK) {
      return Status(status);
    }
    return Session(id);
  }

  Session(Session&& other) noexcept : id_(std::exchange(other.id_, 0)) {}
  Session& operator=(Session&& other) noexcept
  {
    if (this != &other) {
      pafClosePafId(id_);
      id_ = std::exchange(other.id_, 0);
    }
    return *this;
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session()
  {
    if (id_ != 0) pafClosePafId(id_);
  }

  /** The Id, for functions of <qxpaf/paf.h> that are not here. */
  int Id() const { return id_; }

  /** Closes now, to learn how that went. */
  Status Close() { return Status(pafClosePafId(std::exchange(id_, 0))); }

  /** The delivery point identifier of an address. */
  Result<std::string> LookupAddress(std::string_view address, Rules rules = Rules::Lenient)
  {
    return detail::InPlace(address, kLongestLookup, [&](char* text, int size) {
      return pafLookupAddress(id_, text, size, static_cast<int>(rules));
    });
  }

  /** A corrected last line: locality, state, postcode. */
  Result<std::string> FixLastLine(std::string_view lastLine)
  {
    return detail::InPlace(lastLine, kLongestLastLine,
                           [&](char* text, int size) { return pafFixLastLineId(id_, text, size); });
  }

  /** A verdict on an incomplete address. */
  Result<std::string> ValidatePartialAddress(std::string_view address)
  {
    return detail::InPlace(address, kLongestVerdict,
                           [&](char* text, int size) { return pafValidatePartialAddressId(id_, text, size); });
  }

  /** A corrected whole address with the plug-in's verdict. */
  Result<ValidatedAddress> ValidateFullAddress(const std::string& address, int flags = 0)
  {
    ValidatedAddress validated;
    Result<std::string> text = detail::Grown([&](char* out, int size) {
      return pafValidateFullAddressId(id_, address.c_str(), out, size, flags, &validated.verdict);
    });
    if (!text) return text.Status();
    validated.address = *std::move(text);
    return validated;
  }

  /** A formatted address. The option is the plug-in's. */
  Result<std::string> FormatAddress(const std::string& address, long formatOption = 0)
  {
    return detail::Grown(
        [&](char* out, int size) { return pafFormatAddressId(id_, address.c_str(), out, formatOption, size); });
  }

  /** The record of a delivery point. */
  Result<std::string> DpidToAddress(long dpid)
  {
    return detail::Grown([&](char* out, int size) { return pafDpidToAddressId(id_, dpid, out, size); });
  }

  /** How the last search went, on the plug-in's own scale; -1 when this session is closed. */
  int FindStatus() const { return pafGetFindStatusId(id_); }

  /** The components of the last input. */
  Result<std::string> ParsedInput()
  {
    return detail::Grown([&](char* out, int size) { return pafGetParsedInputId(id_, out, size); });
  }

  Result<std::string> Property(const std::string& name)
  {
    return detail::Grown([&](char* out, int size) { return pafGetPropertiesId(id_, name.c_str(), out, size); });
  }

  Status SetProperty(const std::string& name, const std::string& value)
  {
    return Status(pafSetPropertiesId(id_, name.c_str(), value.c_str()));
  }

  Status SetGeographicalCodes(const std::string& codes)
  {
    return Status(pafSetGeographicalCodesId(id_, codes.c_str()));
  }

  /** Moves this session to another database. */
  Status ChangeDatabase(const std::string& database) { return SetProperty("OpenARF", database); }

  /** The addresses that match a record query, as records. */
  Enumeration Addresses(const std::string& query)
  {
    return {id_, pafGetNextAddressId, Delimiter(),
            detail::Grown([&](char* out, int size) { return pafGetAddressId(id_, query.c_str(), out, size); })};
  }

  /** Type-ahead hints. The texts and the number are the plug-in's. */
  Enumeration PopupHints(const std::string& text1, const std::string& text2, int number)
  {
    return {id_, pafGetNextPopupHintId, Delimiter(), detail::Grown([&](char* out, int size) {
              return pafGetPopupHintId(id_, text1.c_str(), text2.c_str(), number, out, size);
            })};
  }

  /** Address hints. The texts are the plug-in's. */
  Enumeration AddressHints(const std::string& text1, const std::string& text2)
  {
    return {id_, pafGetNextAddressHintId, Delimiter(), detail::Grown([&](char* out, int size) {
              return pafGetAddressHintId(id_, text1.c_str(), text2.c_str(), out, size);
            })};
  }

  /** The addresses inside a polygon. The texts are the plug-in's. */
  Enumeration AddressesInPolygon(const std::string& text1, const std::string& text2)
  {
    const Status start(pafBeginPolygonSearch(id_, text1.c_str(), text2.c_str()));
    return {id_, pafGetNextAddressInPolygon, Delimiter(), start};
  }

  /** The addresses that a free-text search finds. */
  Enumeration SearchAddresses(const std::string& query)
  {
    const Status start(pafBeginAddressSearch(id_, query.c_str()));
    return {id_, pafGetNextAddressSearch, Delimiter(), start};
  }

  /** What a search would find. The texts are the plug-in's. */
  Result<std::string> SearchStatistics(const std::string& text1, const std::string& text2, const std::string& text3,
                                       const std::string& text4)
  {
    return detail::Grown([&](char* out, int size) {
      return pafGetSearchStatistics(id_, text1.c_str(), text2.c_str(), text3.c_str(), text4.c_str(), out, size);
    });
  }

 private:
  // What the library keeps of these answers at most.
  static constexpr std::size_t kLongestLookup = 2047;
  static constexpr std::size_t kLongestLastLine = 511;
  static constexpr std::size_t kLongestVerdict = 9;

  explicit Session(int id) : id_(id) {}

  /** The character between the fields of this session's records. */
  char Delimiter()
  {
    const Result<std::string> delimiter = Property("Delimiter");
    return delimiter && !delimiter->empty() ? delimiter->front() : '\t';
  }

  int id_;
};

/** A property that needs no instance: of the library, of the Australian plug-in. */
inline Result<std::string> Property(const std::string& name)
{
  return detail::Grown([&](char* out, int size) { return pafGetPropertiesId(0, name.c_str(), out, size); });
}

}  // namespace qxpaf

#endif
