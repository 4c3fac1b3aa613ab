// Shows a model in a window, drawn through a renderer module.

#include <signal.h>

#include <cstdio>
#include <exception>
#include <new>
#include <optional>

#include "apps/commands/options.h"
#include "apps/common/errors.h"
#include "apps/draw/default_module.h"
#include "apps/view/viewer.h"

namespace {

using namespace kv;

int report(const Failure& failure) {
  std::fprintf(stderr, "%s\n", message_of(failure, "kvview").c_str());
  return static_cast<int>(failure.code());
}

}  // namespace

int main(int argc, char** argv) {
  signal(SIGPIPE, SIG_IGN);
  signal(SIGXFSZ, SIG_IGN);
  try {
    const std::optional<Options> options = parse_view_options(argc, argv, default_module());
    if (options) Viewer(*options).run();
    return 0;
  } catch (const Failure& failure) {
    return report(failure);
  } catch (const std::bad_alloc&) {
    return report({Exit_Code::output, {}, "there is no memory to draw it"});
  } catch (const std::exception& error) {
    return report({Exit_Code::output, {}, error.what()});
  }
}
