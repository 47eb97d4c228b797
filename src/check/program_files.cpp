#include "check/program_files.h"

#include <filesystem>

#include "check/label_keys.h"
#include "process/labels.h"
#include "system/output_file.h"
#include "system/paths.h"
#include "system/xml_file.h"

namespace zenqay {
namespace {

Text PathBesideProgram(modDeclarations& process, const Text& name) {
  return NativePath(process.platform.ProgramDirectory() + "\\" + name);
}

}  // namespace

void CheckLabels(modDeclarations& process, CheckReport& report) {
  constexpr const char* kStep = "labels";
  const Text path = PathBesideProgram(process, LabelFileName(process.LabelLanguage));
  pugi::xml_document document;
  if (const XmlRead read = ReadXmlFile(path, document); !read) {
    return report.Warn(kStep, read.fault + "; keys stand in the place of all texts");
  }
  Text missing;
  for (const Text key : kLabelKeys) {
    if (GetLabel(process, key) == key) missing += (missing.empty() ? "" : ", ") + key;
  }
  if (missing.empty()) return report.Ok(kStep, path);
  report.Warn(kStep, path + " lacks " + missing + "; the keys stand in their place");
}

bool CheckComponents(modDeclarations& process, CheckReport& report) {
  constexpr const char* kStep = "components";
  const Text path = PathBesideProgram(process, "Components.xml");
  try {
    process.components.RequireUsable();
  } catch (const RuntimeError& error) {
    report.Mend(kStep, CheckReport::ErrorText(error));
    return false;
  }
  std::error_code ignored;
  if (std::filesystem::exists(path, ignored)) {
    report.Ok(kStep, path);
  } else {
    report.Warn(kStep, "there is no " + path + ": nothing but dates is served");
  }
  return true;
}

void CheckTrace(const Text& file, CheckReport& report) {
  if (file.empty()) return;
  constexpr const char* kStep = "trace";
  const std::optional<PlatformFault> fault = AppendFault(file);
  if (!fault) {
    report.Ok(kStep, file);
  } else if (*fault == PlatformFault::DiskFull) {
    report.Warn(kStep, file + " would end at once: the disk is full");
  } else {
    report.Mend(kStep, CheckReport::ErrorText(RuntimeError(PlatformFault::PathAccess, file)));
  }
}

void TellSweepLimit(const SweepLimits& sweep, CheckReport& report) {
  Text limits = sweep.general ? sweep.general->text() : "";
  for (const auto& [table, limit] : sweep.ofTables) {
    limits += (limits.empty() ? "" : ", ") + table + " " + limit.text();
  }
  if (limits.empty()) return;
  if (sweep.from > 0) limits += "; never of fewer than " + std::to_string(sweep.from) + " rows";
  report.Ok("sweep limit", limits);
}

}  // namespace zenqay
