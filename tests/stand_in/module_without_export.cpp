// A shared object that is no renderer module.
extern "C" __attribute__((visibility("default"))) int not_a_renderer() {
  return 0;
}
