#include "process/logs.h"

#include "base/numbers.h"
#include "base/secrets.h"
#include "process/labels.h"

namespace zenqay {
namespace {

/// Opens the file, lets `write` write the record, closes the file. `recorded` is the error that would be lost with the
/// record.
template <typename WriteLines>
void WriteRecord(modDeclarations& process, const Text& path, const RuntimeError* recorded, WriteLines write) {
  LogFile& file = process.platform.Log();
  try {
    file.Open(path);
    write(file);
    file.Close();
  } catch (...) {
    ErrorInFlight();  // which gives the reserve of memory back, where it has run out
    if (recorded != nullptr) process.platform.NameCause(*recorded);
    throw;
  }
}

/// Each item is freed of passwords by itself: in a whole line, the end of a secret would be looked for behind the
/// quote.
Text Quoted(const Text& item) {
  return "\"" + WithoutSecrets(item) + "\"";
}

Text RecordTitle(modDeclarations& process) {
  const DateTime now = process.platform.Now();
  return FilledLabel(process, "SLBL0143", ShortDate(now), LongTime(now));
}

Text CountText(const Text& tableName, std::int32_t count) {
  return tableName + " - " + SignColumnText(count);
}

}  // namespace

void WriteTableRunLog(modDeclarations& process, const Text& tableName, std::int32_t icount, std::int32_t ucount,
                      std::int32_t dcount) {
  WriteRecord(process, process.LogFilePath, nullptr, [&](LogFile& file) {
    file.WriteLine(RecordTitle(process));
    file.WriteLine(Quoted(FilledLabel(process, "SLBL0375", CountText(tableName, icount))));
    if (ucount > 0) file.WriteLine(Quoted(FilledLabel(process, "SLBL0376", CountText(tableName, ucount))));
    if (dcount > 0) file.WriteLine(Quoted(FilledLabel(process, "SLBL0377", CountText(tableName, dcount))));
  });
}

void WriteErrorLog(modDeclarations& process, const RuntimeError& error) {
  process.listener->Recorded(error);
  WriteRecord(process, process.LogFilePath, &error, [&](LogFile& file) {
    if (!process.RunLogDateWritten) {
      const DateTime now = process.platform.Now();
      file.WriteLine(Quoted("Date-Time :" + ShortDate(now) + " : " + LongTime(now)));
      process.RunLogDateWritten = true;
    }
    if (process.LocalErrors != nullptr && process.LocalErrors->count() > 0) {
      for (const ProviderError& item : *process.LocalErrors) {
        if (item.Number == 0) continue;
        file.WriteLine(Quoted(item.Source) + "," + std::to_string(item.Number) + "," + Quoted(item.Description));
      }
      process.LocalErrors->Clear();
    }
    file.WriteLine(Quoted(error.source()) + "," + Quoted(error.description()));
  });
}

void WriteStartupErrorLog(modDeclarations& process, const Text& directory, const RuntimeError& error) {
  process.listener->Recorded(error);
  const Text path = (Trim(directory).empty() ? "C:" : directory) + "\\ZenqayDBSync.log";
  WriteRecord(process, path, &error, [&](LogFile& file) {
    file.WriteLine(RecordTitle(process));
    file.WriteLine(GetLabel(process, "SLBL0374"));
    file.WriteLine("Error is - " + std::to_string(error.number()) + ": " + WithoutSecrets(error.description()));
  });
}

}  // namespace zenqay
