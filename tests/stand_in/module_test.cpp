// Loading of renderer modules.
#include <gtest/gtest.h>

#include <filesystem>

#include "host/application.h"

namespace {

TEST(Module, SaysWhatIsWrongWithWhichFile) {
  const std::pair<std::string, std::string> cases[] = {
      {testing::TempDir() + "missing.kvd", "no such file"},
      {testing::TempDir(), "not a loadable module"},
      {MODULE_WITHOUT_EXPORT, "no export KD_Renderer"},
  };
  KT_Renderer_Module module;
  for (const auto& [path, complaint] : cases) {
    std::string error;
    EXPECT_FALSE(module.load(path, error));
    EXPECT_NE(error.find(path), std::string::npos) << error;
    EXPECT_NE(error.find(complaint), std::string::npos) << error;
  }
}

// A bare name must not be looked for along the library path.
TEST(Module, TakesRelativePathsFromTheCurrentFolder) {
  const std::filesystem::path module_path = TEST_MODULE;
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(module_path.parent_path());
  KT_Renderer_Module module;
  std::string error;
  EXPECT_TRUE(module.load(module_path.filename().string(), error)) << error;
  std::filesystem::current_path(before);
}

}  // namespace
