// The demo's jobs, whole and failing, recorded, made anonymous and then replayed on the anonymous tables: the second
// trace is the anonymous one, so the job took the same way.
//
// What a secret made of the demo's data is data that nobody wrote: made anonymous a second time, by another secret, it
// is replayed again.
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "control/anonymise/anonymised_tables.h"
#include "control/anonymise/anonymised_trace.h"
#include "doubles/file_content.h"
#include "doubles/trace_text.h"
#include "faults/demo_job.h"
#include "faults/ways_to_fail.h"
#include "startup/modStartUp.h"
#include "system/file_content.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

/// The words of the demo's exports that a reader would know again, in lower case: what stands in cells of texts,
/// without words that a message may have for itself.
std::set<Text> WordsOfTheExports() {
  constexpr std::size_t kShortest = 4;
  const Vocabulary vocabulary;
  std::set<Text> words;
  for (const char* state : {"erp", "end", "changes"}) {
    for (const fs::directory_entry& file : fs::directory_iterator(fs::path(ZENQAY_SHARE) / "demo" / state)) {
      const Text content = ContentOf(file.path());
      Pieces pieces(std::string_view(content).substr(content.find('\n')));
      for (Piece piece; pieces.Next(piece);) {
        const bool isDate = IsAllDigits(piece.text) || piece.text.find('T') == 2;  // 2026-01-31T10
        if (!piece.isWord || isDate || piece.text.size() < kShortest || vocabulary.IsProgramWord(piece.text)) continue;
        words.insert(LowerCased(piece.text));
      }
    }
  }
  return words;
}

/// Those of the words that stand in a text.
Text Found(const std::set<Text>& words, std::string_view text) {
  std::set<Text> found;
  Pieces pieces(text);
  for (Piece piece; pieces.Next(piece);) {
    if (piece.isWord && words.contains(LowerCased(piece.text))) found.emplace(piece.text);
  }
  Text list;
  for (const Text& word : found) list += word + " ";
  return list;
}

class AnonymisedReplay : public testing::TestWithParam<DemoJob> {
 protected:
  /// Puts the anonymous files into the places of the trace, which it gives without its times, and of the database.
  Text Anonymise(const KeyedHash::Key& secret) {
    const Anonymiser anonymiser(secret);
    const Text trace = (database.home() / "anonymous.jsonl").string();
    const Text tables = (database.home() / "anonymous.db").string();
    AnonymiseTrace(database.TracePath().string(), trace, anonymiser);
    // The logs of the replay stand where those of the recorded run did.
    const Text home = database.home().string();
    WriteFile(database.TracePath().string(), Replaced(ContentOf(trace), anonymiser.Message(home), home));
    fs::remove(tables);
    WriteFile(tables, "");
    AnonymiseTables(database.BeforePath().string(), tables, anonymiser);
    fs::rename(tables, database.BeforePath());
    database.databaseName = anonymiser.Value(Meaning::Words, database.databaseName);
    database.component = anonymiser.Value(Meaning::Words, database.component);
    return WithoutTimes(ContentOf(database.TracePath()));
  }

  KeyedHash::Key Secret() { return {random_(), random_()}; }

  const unsigned seed_ = TriesAll() ? std::random_device()() : 1;
  std::mt19937_64 random_{seed_};
  DemoDatabase database{GetParam()};
};

TEST_P(AnonymisedReplay, TakesTheWayOfTheRecordedRun) {
  SCOPED_TRACE("seed " + std::to_string(seed_));
  const std::set<Text> words = WordsOfTheExports();
  ASSERT_GT(words.size(), 100U);
  Disturbance none;
  database.Reset();
  Text before = database.Record(none).trace;
  ASSERT_NE(Found(words, before), "");
  for (int time = 0; time < 2; ++time) {
    const Text anonymous = Anonymise(Secret());

    Disturbance noneAgain;
    database.Reset();
    EXPECT_EQ(database.Replay(noneAgain).trace, anonymous);
    EXPECT_NE(anonymous, before);
    EXPECT_EQ(Found(words, anonymous), "");
    EXPECT_EQ(Found(words, ContentOf(database.BeforePath())), "");
    before = anonymous;
  }
}

TEST_P(AnonymisedReplay, FailsAsTheRecordedRunDid) {
  SCOPED_TRACE("seed " + std::to_string(seed_));
  const Text original = ContentOf(database.BeforePath());
  Disturbance none;
  database.Reset();
  database.Record(none);
  const std::vector<Step> steps = none.steps();
  const RuntimeError failure(5000, "ERP", "Invalid value");
  for (const Step::Kind kind : {Step::Kind::Call, Step::Kind::Statement}) {
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < steps.size(); ++i) {
      if (steps[i].kind == kind) places.push_back(i);
    }
    for (const std::size_t step : Sample(places, 2, "anonymised" + GetParam().Name())) {
      const auto fail = [&] { throw failure; };
      Disturbance first;
      first.Plan(step, When::Before, fail);
      WriteFile(database.BeforePath().string(), original);
      database.databaseName = "SERVICE";
      database.component = "MAIN";
      database.Reset();
      database.Record(first);
      const Text anonymous = Anonymise(Secret());

      Disturbance second;
      if (kind == Step::Kind::Statement) second.Plan(step, When::Before, fail);
      database.Reset();
      EXPECT_EQ(database.Replay(second).trace, anonymous) << steps[step].text;
    }
  }
}

std::vector<DemoJob> EveryJob() {
  std::vector<DemoJob> jobs;
  for (const char* generation : {"1", "3", "8"}) {
    for (const char* syncMethod : {"1", "2"}) jobs.push_back({generation, syncMethod, kAllTables});
  }
  jobs.push_back({"3", "1", kAllTables, "2"});
  return jobs;
}

INSTANTIATE_TEST_SUITE_P(, AnonymisedReplay, testing::ValuesIn(EveryJob()), [](const auto& job) {
  return "Generation" + job.param.generation + (job.param.syncMethod == "1" ? "Full" : "OnlyChanged") +
         (job.param.platform == "1" ? "" : "OfOracle");
});

}  // namespace
}  // namespace zenqay
