#include "system/process_id.h"

#include <unistd.h>

namespace zenqay {

int ProcessId() {
  return ::getpid();
}

}  // namespace zenqay
