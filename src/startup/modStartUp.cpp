#include "startup/modStartUp.h"

#include "base/numbers.h"
#include "base/secrets.h"
#include "erp/date_bridge.h"
#include "erp/session.h"
#include "localdb/table_registry.h"
#include "process/labels.h"
#include "process/logs.h"
#include "startup/clsDataCopyHandler.h"

namespace zenqay {
namespace {

constexpr std::string_view kSeparator = "{}";

/// Raises 9 when the line has no such item.
const Text& Item(const std::vector<Text>& args, std::size_t position) {
  if (position >= args.size()) {
    throw RuntimeError(PlatformFault::SubscriptOutOfRange,
                       "the command line has no item " + std::to_string(position + 1));
  }
  return args[position];
}

int HighestPosition(const std::vector<Text>& args) {
  return static_cast<int>(args.size()) - 1;
}

[[noreturn]] void RaiseArgumentError(modDeclarations& process, std::int32_t number, const Text& source,
                                     const Text& firstLine) {
  const Text secondLine = GetLabel(process, "SLBL0026");
  throw RuntimeError(number, source, firstLine + "\r\n" + secondLine);
}

/// As ToDouble, naming the item that is no number.
double StrictNumber(const Text& text, const char* itemName) {
  if (!IsNumeric(text)) throw RuntimeError(PlatformFault::TypeMismatch, Text("the ") + itemName + " is no number");
  return ToDouble(text);
}

/// The check of an item that must be 1 or 2. All three values are read first, so a text that is no number fails as a
/// type mismatch before the test is made, and a number other than 1 and 2 passes.
void CheckOneOrTwo(modDeclarations& process, const Text& text, const char* itemName, std::int32_t number,
                   const Text& label) {
  const bool numeric = IsNumeric(text);
  const bool differsFrom1 = StrictNumber(text, itemName) != 1;
  const bool differsFrom2 = StrictNumber(text, itemName) != 2;
  if (!numeric && differsFrom1 && differsFrom2) {
    RaiseArgumentError(process, number, "zenqa Data Copy - Start", FilledLabel(process, label, WithoutSecrets(text)));
  }
}

void TakeStatusHandle(modDeclarations& process, const Text& text) {
  if (!IsNumeric(text)) {
    RaiseArgumentError(process, 2021004, "zenqa Data Copy - Start",
                       FilledLabel(process, "SLBL0237", WithoutSecrets(text)));
  }
  if (Val(text) < 0) return;
  process.TableStatusEnabled = true;
  process.StatusHandle = RoundToInt32(Val(text));
}

void RunJob(modDeclarations& process, const std::vector<Text>& args) {
  process.DataCopyHandler = std::make_shared<clsDataCopyHandler>(process);
  OpenErpSession(process);
  process.platform.SetTitle(GetLabel(process, "SLBL0504"));
  const std::int16_t iTableID = RoundToInt16(Val(Item(args, 2)));
  const std::int16_t SyncMethod = RoundToInt16(Val(Item(args, 3)));
  const std::int32_t DatabasePlatform = RoundToInt32(Val(Item(args, 8)));
  process.DataCopyHandler->HandleDataCopy(Trim(Item(args, 0)), Trim(Item(args, 1)), iTableID, SyncMethod,
                                          Trim(Item(args, 4)), Trim(Item(args, 5)), DatabasePlatform);
  process.DataCopyHandler.reset();
}

}  // namespace

void RunProcess(modDeclarations& process, const Text& commandLine) {
  std::vector<Text> args;
  try {
    process.LabelDocumentLoaded = false;
    args = SplitCommandLine(commandLine);
    ValidateArguments(process, args);
    process.components.RequireUsable();
    process.LogDirectoryAsGiven = Item(args, 4);
    LoadTableRegistry(process, Trim(TrimLeft(Item(args, 0))), Trim(Item(args, 1)), RoundToInt16(Val(Item(args, 8))));
    InitErpDateLimits(process);
    process.platform.StartLogging(Trim(Item(args, 4)) + "\\ZNQevtLG.txt");
    RunJob(process, args);
  } catch (...) {
    const RuntimeError error = ErrorInFlight();
    process.DataCopyHandler.reset();
    if (HighestPosition(args) < 4) process.platform.NameCause(error);
    WriteStartupErrorLog(process, Item(args, 4), error);
  }
}

void ValidateArguments(modDeclarations& process, const std::vector<Text>& args) {
  if (HighestPosition(args) < 6) {
    RaiseArgumentError(process, 9999, "Zenqa Data Copy - Start", GetLabel(process, "SLBL0232"));
  }
  CheckOneOrTwo(process, Item(args, 3), "sync method", 2021003, "SLBL0235");
  TakeStatusHandle(process, Item(args, 6));
  CheckOneOrTwo(process, Item(args, 8), "database platform", 2021005, "SLBL0234");
  if (IsNumeric(Item(args, 9))) process.InstanceNumber = RoundToInt16(Val(Item(args, 9)));
  process.ErpGeneration = Trim(Item(args, 10));
  process.NoStatusComponent = HighestPosition(args) == 11;
  if (process.NoStatusComponent) process.TableStatusEnabled = false;
  if (Val(Item(args, 2)) == 98) process.FreeText98 = Item(args, 7);
  if (Val(Item(args, 2)) == 99) process.FreeText99 = Item(args, 7);
}

std::vector<Text> SplitCommandLine(const Text& commandLine) {
  if (commandLine.empty()) return {};
  const std::vector<std::string_view> items = Split(commandLine, kSeparator);
  return {items.begin(), items.end()};
}

}  // namespace zenqay
