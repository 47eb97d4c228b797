// The tests' own Java classes. A process has one Java machine, so the tests of one program share it.
#pragma once

#include "components/jvm/jvm_host.h"

namespace zenqay {

/// A host of the adapter's classes (tests/adapter), with further options.
inline std::shared_ptr<JvmHost> MakeJvmHost(const Text& options = "") {
  auto host = std::make_shared<JvmHost>();
  host->Add("/", ZENQAY_TEST_ADAPTER, options);
  return host;
}

/// The host that all tests of a program share; it ends with the program's last test.
JvmHost& SharedJvmHost();

inline Object NewSample() {
  return SharedJvmHost().Create("sample.Everything");
}

}  // namespace zenqay
