#include "system/replaced_file.h"

#include <filesystem>

#include "system/output_file.h"
#include "system/process_identity.h"

namespace zenqay {

std::optional<PlatformFault> ReplaceFile(const Text& path, std::string_view content) {
  const ProcessIdentity own = OwnIdentity();  // a process on another machine may have this one's number
  const Text temporary = path + "." + own.host + "." + std::to_string(own.pid);
  OutputFile file;
  std::optional<PlatformFault> fault = file.OpenPrivate(temporary);
  if (fault) return fault;
  fault = file.Write(content);
  const std::optional<PlatformFault> closing = file.Close();  // where a disk of the network says that it is full
  if (!fault) fault = closing;
  std::error_code failed;
  if (!fault) std::filesystem::rename(temporary, path, failed);
  if (!fault && !failed) return {};
  std::error_code ignored;
  std::filesystem::remove(temporary, ignored);
  return fault ? fault : PlatformFault::PathAccess;
}

}  // namespace zenqay
