// The number that the operating system gave this process.
#pragma once

namespace zenqay {

int ProcessId();

}  // namespace zenqay
