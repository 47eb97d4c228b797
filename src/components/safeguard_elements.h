// The elements of Components.xml that ask for a safeguard.
#pragma once

#include "components/catalogue_element.h"
#include "process/safeguards.h"

namespace zenqay {

/// <SWEEP limit="10%" from="100"><TABLE name="SITE" limit="50"/></SWEEP>
SweepLimits ReadSweep(const CatalogueElement& element);

/// <LOCK takeover="yes"/>
TableLock ReadLock(const CatalogueElement& element);

/// ZENQAY_SWEEP_LIMIT in the environment stands for every limit. Raises 5 when it is none.
void TakeSweepLimitOfThisRun(SweepLimits& sweep);

}  // namespace zenqay
