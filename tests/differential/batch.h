// The command line of a fuzzer: numbered tests in a row, or one of them replayed.
#pragma once

#include <cstdint>
#include <iostream>
#include <string>

#include "host/application.h"

namespace fuzz {

/// Runs tests and prints those that differ. A `Test` is made from its seed; `title` names it in
/// one line, `describe` says everything, and `run` gives the differences in words.
template <class Test>
int run_batch(int argc, char** argv, std::string path) {
  std::string only, without;
  std::uint64_t from = 1, count = 20000;
  int stop = 10;
  for (int i = 1; i < argc; i += 2) {
    const std::string option = argv[i], value = i + 1 < argc ? argv[i + 1] : "";
    if (option == "--module")
      path = value;
    else if (option == "--seed")
      from = std::stoull(value), count = 1;
    else if (option == "--from")
      from = std::stoull(value);
    else if (option == "--count")
      count = std::stoull(value);
    else if (option == "--only")
      only = value;
    else if (option == "--without")
      without = value;
    else if (option == "--stop")
      stop = std::stoi(value);
    else
      return std::cerr << argv[0]
                       << " [--module FILE] (--seed N | [--from A] [--count N])\n"
                          "  [--only TEXT] [--without TEXT] [--stop N]\n"
                          "  --only, --without: tests whose title contains TEXT, or does not\n"
                          "  --stop: differences after which the batch ends (10)\n",
             2;
  }
  KT_Renderer_Module module;
  std::string error;
  if (!module.load(path, error)) return std::cerr << error << "\n", 2;
  std::uint64_t drawn = 0;
  int differing = 0;
  for (std::uint64_t seed = from; seed < from + count && differing < stop; ++seed) {
    Test test(seed);
    const std::string title = test.title();
    if (title.find(only) == std::string::npos) continue;
    if (!without.empty() && title.find(without) != std::string::npos) continue;
    ++drawn;
    if (count == 1) std::cout << test.describe() << std::flush;
    const std::string found = test.run(module);
    if (found.empty()) continue;
    ++differing;
    std::cout << "seed " << seed << " " << title << "\n" << found;
  }
  std::cout << drawn << " calls drawn, " << differing << " differ\n";
  return differing != 0 || drawn == 0;
}

}  // namespace fuzz
