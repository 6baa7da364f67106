#include "arf/build/dpid_writer.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "arf/build/bit_packer.h"

namespace arf {
namespace {

namespace field = layout::dpid_index;

std::uint32_t Buckets(std::uint32_t lowBits)
{
  return (field::kMaxDpid >> lowBits) + 1;
}

/** The widest buckets of which there are enough, so that a bucket has three to six identifiers on an average. */
std::uint32_t LowBitsFor(std::uint32_t points)
{
  constexpr std::uint32_t kMostInBucket = 6;
  std::uint32_t lowBits = field::kMaxLowBits;
  while (lowBits > 0 && Buckets(lowBits) < points / kMostInBucket) --lowBits;
  return lowBits;
}

}  // namespace

void WriteDpids(SectionWriter& writer, const std::vector<AddressRow>& rows)
{
  const auto points = static_cast<std::uint32_t>(rows.size());
  writer.Begin(layout::SectionId::Dpids);
  BitPacker identifiers(writer, layout::kDpidBits);
  for (const AddressRow& row : rows) identifiers.Put(row.dpid);
  identifiers.Finish();
  writer.End();

  const std::uint32_t lowBits = LowBitsFor(points), buckets = Buckets(lowBits);
  std::vector<std::uint32_t> ends(std::size_t{buckets} + 1);  // of each bucket, and one in front
  for (const AddressRow& row : rows) ++ends[(row.dpid >> lowBits) + 1];
  for (std::uint32_t bucket = 0; bucket < buckets; ++bucket) ends[bucket + 1] += ends[bucket];
  writer.Begin(layout::SectionId::DpidIndex);
  writer.AppendNumber(lowBits);
  writer.AppendNumber(buckets);
  BitPacker index(writer, layout::BitsForNumbersTo(points));
  for (const std::uint32_t end : ends) index.Put(end);
  std::vector<std::uint32_t> ordinals(points);
  std::vector<std::uint32_t>& next = ends;  // becomes the place of each bucket's next ordinal
  for (std::uint32_t ordinal = 0; ordinal < points; ++ordinal)
    ordinals[next[rows[ordinal].dpid >> lowBits]++] = ordinal;
  for (std::uint32_t bucket = 0, first = 0; bucket < buckets; first = next[bucket++]) {
    std::sort(ordinals.begin() + first, ordinals.begin() + next[bucket],
              [&rows](std::uint32_t a, std::uint32_t b) { return rows[a].dpid < rows[b].dpid; });
  }
  for (const std::uint32_t ordinal : ordinals) index.Put(ordinal);
  index.Finish();
  writer.End();
}

}  // namespace arf
