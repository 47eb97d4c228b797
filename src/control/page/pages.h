// The four pages.
#pragma once

#include "control/page/page_parts.h"
#include "control/page/table_watch.h"

namespace zenqay {

/// The tables of all jobs, and how fresh they are.
Text TablesPage(const TableOverview& overview, History& history, const PageView& view);

constexpr int kRunsOnAPage = 50;

/// So many runs, the latest, or those before the run `before` where that is not 0.
Text RunsPage(History& history, std::int64_t before, const PageView& view);

/// A run with its failure records and the ends of its logs.
Text RunPage(History& history, const PastRun& run, const PageView& view);

/// Duration, rows and rows a second of the last runs, by table.
Text PlotsPage(History& history, const PageView& view);

}  // namespace zenqay
