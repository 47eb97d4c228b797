// What the page answers to a request.
#pragma once

#include <functional>

#include "control/page/page_actions.h"
#include "control/page/page_guard.h"
#include "control/page/table_watch.h"

namespace zenqay {

class Page {
 public:
  using Tables = std::function<std::shared_ptr<const TableOverview>()>;

  Page(PageRules rules, Text historyPath, Tables tables, PageActions& actions)
      : rules_(std::move(rules)), historyPath_(std::move(historyPath)), tables_(std::move(tables)), actions_(actions) {}

  /// From any thread. Whatever fails is said in the answer, under /api/ as {"done": false, "words": "…"}.
  PageAnswer Answer(const PageRequest& request) const;

 private:
  PageAnswer Read(const PageRequest& request) const;
  PageAnswer ReadHistory(const PageRequest& request) const;
  PageAnswer ReadRun(History& history, const Text& path, const Text& number) const;
  PageAnswer Act(const PageRequest& request) const;

  const PageRules rules_;
  const Text historyPath_;
  const Tables tables_;
  PageActions& actions_;
};

}  // namespace zenqay
