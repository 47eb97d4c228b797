#include "components/files/file_host.h"

#include "components/files/file_manager.h"
#include "components/files/file_session.h"
#include "components/files/selection_criteria.h"
#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

[[noreturn]] void RaiseNotCreated(const Text& classId, const Text& missing) {
  throw RuntimeError(PlatformFault::CannotCreateObject, classId + " (" + missing + ")", classId);
}

}  // namespace

Object FileHost::Create(const Text& classId) {
  if (IsCriteriaClass(classId)) return CreateCriteriaObject(classId);
  if (classId == kAdapterInfoClass) return CreateAdapterInfo(directory_);
  if (classId == kAdapterAccessClass) return CreateAdapterAccess();
  const auto names = ManagerClass::Read(classId);
  if (!names) RaiseNotCreated(classId, "the ERP files in " + directory_.string() + " have no such class");
  const std::filesystem::path path = FileManager::ExportPath(directory_, *names);
  if (std::error_code fault; !std::filesystem::exists(path, fault))
    RaiseNotCreated(classId, "no file " + path.string());
  return Object(std::make_shared<FileManager>(classId, directory_, *names));
}

}  // namespace zenqay
