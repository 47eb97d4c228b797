#include "components/files/file_host.h"

#include "base/runtime_error.h"
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

std::shared_ptr<ComponentHost> FileHost::Make(const CatalogueElement& element, const std::shared_ptr<ComponentHost>&) {
  const Text directory = element.RequiredPath("directory");
  if (std::error_code fault; !std::filesystem::is_directory(directory, fault)) {
    throw RuntimeError(PlatformFault::PathNotFound, element.Place() + ": there is no directory " + directory);
  }
  return std::make_shared<FileHost>(directory);
}

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
