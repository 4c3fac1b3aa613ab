// A renderer module for the loader's tests.
#include "host/framework.h"
#include "tests/stand_in/plain_renderer.h"

extern "C" KORVEL_EXPORT KT_Renderer_Data* KD_Renderer(const KT_Renderer_Data* source) {
  return new Plain_Renderer(source);
}
