#include "check/check_report.h"

#include <iomanip>

#include "base/secrets.h"

namespace zenqay {

void CheckReport::Mend(const Text& step, const Text& detail) {
  mends_ = true;
  Write("MEND", step, detail);
}

void CheckReport::LeaveOut(const Text& step, const Text& failedStep) {
  Write("left out", step, "needs " + failedStep);
}

void CheckReport::Conclude() {
  out_ << (CanRun() ? "A job can run.\n" : "No job can run before the lines with MEND are seen to.\n") << std::flush;
}

Text CheckReport::ErrorText(const RuntimeError& error) {
  if (!error.items().empty()) return ErrorText(error.items().front());
  return std::to_string(error.number()) + ": " + error.description();
}

Text CheckReport::ErrorText(const ProviderError& item) {
  Text text = std::to_string(item.Number) + ": " + item.Description;
  if (item.SqlState.empty()) return text;
  text += " (SQLSTATE " + item.SqlState;
  if (item.NativeError != 0) text += ", native " + std::to_string(item.NativeError);
  return text + ")";
}

void CheckReport::Write(const char* state, const Text& step, const Text& detail) {
  const Text text = detail.empty() ? step : step + ": " + detail;
  out_ << std::left << std::setw(10) << state << WithoutSecrets(OneLine(text)) << '\n' << std::flush;
}

}  // namespace zenqay
