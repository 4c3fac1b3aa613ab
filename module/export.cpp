// The module's one export.
#include "module/core/software_z_buffer.h"

// No exception leaves the module's entry: what fails halfway unwinds and gives null.
extern "C" __attribute__((visibility("default"))) KT_Renderer_Data* KD_Renderer(
    const KT_Renderer_Data* source) {
  try {
    return new Software_Z_Buffer(source);
  } catch (...) {
    return nullptr;
  }
}
