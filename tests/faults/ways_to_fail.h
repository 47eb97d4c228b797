// In which ways the tests let a job fail, and at how many places.
#pragma once

#include <functional>
#include <vector>

#include "doubles/disturbance.h"
#include "doubles/tries_all.h"

namespace zenqay {

/// All of the places, or some of them, others for each kind of fault.
inline std::vector<std::size_t> Sample(const std::vector<std::size_t>& places, std::size_t count, const Text& kind) {
  if (TriesAll() || places.size() <= count) return places;
  const std::size_t stride = places.size() / count;
  std::vector<std::size_t> sample;
  for (std::size_t i = std::hash<Text>()(kind) % stride; i < places.size(); i += stride) sample.push_back(places[i]);
  return sample;
}

struct WayToFail {
  Text kind;
  When when;
  RuntimeError error;
};

inline RuntimeError Reported(std::int32_t number, const char* text) {
  return RuntimeError(std::vector<ProviderError>{{number, "SQLite", text, "", 0}});
}

inline std::vector<WayToFail> WaysOfAStatement() {
  return {
      {"I/O error before", When::Before, Reported(-2147467259, "disk I/O error")},
      {"I/O error behind", When::Behind, Reported(-2147467259, "disk I/O error")},
      {"disk full", When::Before, Reported(-2147467259, "database or disk is full")},
      {"busy", When::Before, Reported(-2147467259, "database is locked")},
      {"corrupt", When::Before, Reported(-2147467259, "database disk image is malformed")},
      {"constraint", When::Before, Reported(-2147217873, "UNIQUE constraint failed")},
      {"prepare error", When::Before, Reported(-2147217900, "near \"SET\": syntax error")},
  };
}

}  // namespace zenqay
