// What Prometheus reads.
#pragma once

#include "control/page/table_watch.h"

namespace zenqay {

/// In the text format: freshness, the last run that ended, and whether one is under way, by table.
Text MetricsText(const TableOverview& overview, History& history, std::int64_t now);

}  // namespace zenqay
