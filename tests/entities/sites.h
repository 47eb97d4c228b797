// The sites of generation 1, on which both passes are told.
#pragma once

#include "entities/entity_pass.h"

namespace zenqay {

inline const TestedEntity kSites = {.copy = &CopyFixture::CopySite,
                                    .apply = CopyFixture::ApplySiteRow(),
                                    .TableName = "Site",
                                    .caption = "Sites",
                                    .onlyChanged = "Site - Only Changed"};

inline const ErpSide kLocations = {.generation = "1",
                                   .managerClass = "Kv40QTMtssmaLocations.LocationsManager",
                                   .name = "the ERP (generation 1)",
                                   .keys = "Location",
                                   .list = "\"\", high(10)",
                                   .listing = "NetListLocations",
                                   .tableCode = "tssma110",
                                   .ranges = {{"cloc", "\"\"", "high(10)"}},
                                   .fields = "cloc cuno desc"};

}  // namespace zenqay
