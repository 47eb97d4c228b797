#include "components/status/status_components.h"
#include "components/status/status_object.h"
#include "system/output_file.h"
#include "trace/json_text.h"

namespace zenqay {
namespace {

using nlohmann::ordered_json;

void Require(const std::optional<PlatformFault>& fault, const Text& path) {
  if (fault) throw RuntimeError(*fault, path, kStatusClass);
}

class FileStatus : public StatusObject {
 public:
  FileStatus(Text path, std::int16_t instance) : path_(std::move(path)), instance_(instance) {}

 private:
  void Message(const Text& time, const Text& text) override {
    Append({{"op", "writeToMessageBox"}, {"instance", instance_}, {"time", time}, {"text", text}});
  }

  void Alert(const Text& time, const Text& text) override {
    Append({{"op", "WriteToAlertBox"}, {"instance", instance_}, {"time", time}, {"text", text}});
  }

  void SyncStatus(std::int32_t tableId, std::int32_t status) override {
    Append({{"op", "UpdateSyncStatus"}, {"instance", instance_}, {"table", tableId}, {"status", status}});
  }

  void TableStatus(std::int32_t handle, std::int32_t tableId, std::int32_t status, const Text& detail) override {
    Append({{"op", "UpdateStatusByTable"},
            {"instance", instance_},
            {"handle", handle},
            {"table", tableId},
            {"status", status},
            {"detail", detail}});
  }

  /// One write for one line, so that a reader never sees half of one but on a full disk.
  void Append(const ordered_json& call) {
    if (!file_.isOpen()) Require(file_.Open(path_), path_);
    Require(file_.Write(JsonText(call) + "\n"), path_);
  }

  Text path_;
  std::int16_t instance_;
  OutputFile file_;
};

}  // namespace

std::shared_ptr<ComponentHost> FileStatusHost::Make(const CatalogueElement& element,
                                                    const std::shared_ptr<ComponentHost>&) {
  return std::make_shared<FileStatusHost>(element.RequiredPath("file"));
}

Object FileStatusHost::Create(const Text& classId) {
  return CreateStatusHandle(
      classId, [path = path_](std::int16_t instance) { return Object(std::make_shared<FileStatus>(path, instance)); },
      [path = path_] { Require(AppendFault(path), path); });
}

}  // namespace zenqay
