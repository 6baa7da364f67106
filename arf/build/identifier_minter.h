/**
 * Gives addresses without a DPID an identifier of eight digits, from 30000000 to 99999999, that depends on nothing but
 * the identifier of their source: a hash of it, and where another address has that number already, the next one of a
 * sequence that starts with the same hash. So the numbers do not depend on the order of the input, and nearly all of
 * them are the same in builds from different issues of a register; with the previous database all are.
 */
#ifndef QXPAF_ARF_BUILD_IDENTIFIER_MINTER_H
#define QXPAF_ARF_BUILD_IDENTIFIER_MINTER_H

#include <cstdint>
#include <string>
#include <string_view>

#include "arf/build/address_table.h"
#include "arf/build/build_watch.h"
#include "arf/build/report_writer.h"

namespace arf {

inline constexpr std::uint32_t kFirstMinted = 30000000;
inline constexpr std::uint32_t kMintedRange = 70000000;

/** The identifier that is tried at the given place, from 0, of a source identifier's sequence. */
std::uint32_t MintedCandidate(std::string_view sourceIdentifier, std::uint32_t place);

/**
 * Fills in the DPIDs of the rows that have none. The rows are in the order of the input. Of rows with one and the same
 * source identifier, the first is kept; the report has the others as skipped.
 *
 * @param previousDirectory  a database with minted identifiers: addresses that are in it keep theirs, and no other
 *                           address gets one that is in it. Empty for none. Throws BuildError when it cannot be used.
 */
MintedIdentifiers MintIdentifiers(AddressTable& table, const std::string& previousDirectory, ReportWriter& report,
                                  const BuildWatch& watch);

}  // namespace arf

#endif
