/** What all searches over one open database share; immutable once made, so any number of threads may read it. */
#ifndef QXPAF_ARF_MATCH_ENGINE_H
#define QXPAF_ARF_MATCH_ENGINE_H

#include <memory>

#include "arf/format/database.h"
#include "arf/match/name_index.h"
#include "arf/match/names_by_length.h"

namespace arf {

class Engine
{
 public:
  explicit Engine(std::unique_ptr<const Database> database)
      : database_(std::move(database)),
        localityNames_(*database_, kLocalityDictionary),
        streetNames_(*database_, kStreetDictionary),
        buildingNames_(*database_, kBuildingDictionary),
        localitiesByLength_(localityNames_.Signatures())
  {
  }

  const Database& Data() const { return *database_; }
  const NameIndex& LocalityNames() const { return localityNames_; }
  const NameIndex& StreetNames() const { return streetNames_; }
  const NameIndex& BuildingNames() const { return buildingNames_; }
  const NamesByLength& LocalitiesByLength() const { return localitiesByLength_; }

 private:
  std::unique_ptr<const Database> database_;
  NameIndex localityNames_;
  NameIndex streetNames_;
  NameIndex buildingNames_;
  NamesByLength localitiesByLength_;
};

}  // namespace arf

#endif
