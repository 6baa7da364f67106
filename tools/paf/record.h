/** Address records as the Australian plug-in writes them: fields in a fixed order, separated by TAB. */
#ifndef PAF_TOOL_RECORD_H
#define PAF_TOOL_RECORD_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/** The name of a record's field, counted from 1 ("Locality" for 4); empty for fields without a name. */
std::string_view FieldName(std::size_t number);

/** One record, taken apart. */
class Record
{
 public:
  explicit Record(std::string_view text);

  /** A field by number, counted from 1; empty when the record is shorter. */
  const std::string& Field(std::size_t number) const;
  std::size_t Size() const { return fields_.size(); }

  /** True when all fields are empty: the end of an enumeration. */
  bool IsEmpty() const;

  const std::string& Dpid() const;

  /** The whole address in one line: "UNIT 3, 12 SMITH STREET, SYDNEY NSW 2000". */
  std::string OneLine() const;

 private:
  std::vector<std::string> fields_;
};

/** The record query for the addresses of a locality line: "LOCALITY STATE POSTCODE". */
std::string LocalityQuery(const std::string& lastLine);

/** The record query for the addresses nearest to a latitude and a longitude, given as text. */
std::string NearestQuery(const std::string& latitude, const std::string& longitude);

/** The value of the property "OutputFields" for records with every field in its place. */
std::string AllFields();

}  // namespace tool

#endif
