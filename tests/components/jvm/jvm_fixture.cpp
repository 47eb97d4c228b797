#include "components/jvm/jvm_fixture.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

class SharedHost : public testing::Environment {
 public:
  JvmHost& host() {
    if (host_ == nullptr) host_ = MakeJvmHost();
    return *host_;
  }
  void TearDown() override { host_.reset(); }

 private:
  std::shared_ptr<JvmHost> host_;
};

auto* const kSharedHost = dynamic_cast<SharedHost*>(testing::AddGlobalTestEnvironment(new SharedHost));

}  // namespace

JvmHost& SharedJvmHost() {
  return kSharedHost->host();
}

}  // namespace zenqay
