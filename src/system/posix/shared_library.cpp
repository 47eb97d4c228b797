#include "system/shared_library.h"

#include <dlfcn.h>

namespace zenqay {

LibrarySymbol LoadSymbol(const Text& path, const char* symbol) {
  void* library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return {nullptr, ::dlerror()};
  void* address = ::dlsym(library, symbol);
  if (address == nullptr) return {nullptr, path + " has no " + symbol};
  return {address, {}};
}

}  // namespace zenqay
