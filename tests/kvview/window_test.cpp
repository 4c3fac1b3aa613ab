// The viewer as its user sees it.
#include <gmock/gmock.h>

#include <chrono>
#include <stdexcept>
#include <thread>

#include "tests/apps/decoded.h"
#include "tests/apps/program.h"
#include "tests/kvview/running_program.h"
#include "tests/kvview/screen.h"

namespace {

class Viewer_Window : public Program {
 protected:
  void open() {
    write_cube();
    viewer_ = std::make_unique<Running_Program>(path("."),
                                                Words{KVVIEW, "cube.obj", "--size", "240x180"});
    window_ = screen_.window("cube.obj - kvview");
  }
  void keys(const std::string& names) const { screen_.act("key " + names); }
  // In the window's pixels, y down.
  void drag(int button, const std::string& from, const std::string& way) const {
    const std::string number = std::to_string(button);
    screen_.act("mousemove --window " + std::to_string(window_) + " " + from + " mousedown " +
                number + " mousemove_relative -- " + way + " mouseup " + number);
  }
  // Presses the key, waits for the picture, and returns its name. kvdraw must draw the same with
  // the command line that the viewer names.
  std::string screenshot() {
    keys("s");
    Words words = split(viewer_->next_line());
    if (words.size() < 4) throw std::runtime_error("the viewer names no picture");
    EXPECT_EQ(Words(words.begin(), words.begin() + 3), (Words{"kvdraw", "cube.obj", "-o"}));
    const std::string name = words[3];
    words[3] = "same.png";
    words.erase(words.begin());
    const Outcome outcome = run(words);
    EXPECT_EQ(outcome.exit_code, 0) << outcome.errors;
    EXPECT_EQ(content_of(path(name)), content_of(path("same.png")))
        << testing::PrintToString(words);
    return path(name);
  }
  Decoded on_screen() const { return screen_.look_at(window_); }
  // Looks until what is to be seen is there.
  template <class Condition>
  bool comes_true(Condition condition) const {
    for (int i = 0; i < 600; ++i) {
      if (condition(on_screen())) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return false;
  }
  bool comes_to_show(const std::string& picture) const {
    const Decoded wanted = decode(picture);
    return comes_true([&](const Decoded& seen) { return seen.bytes == wanted.bytes; });
  }

  Hidden_Screen screen_;
  std::unique_ptr<Running_Program> viewer_;
  unsigned long window_ = 0;
};

TEST_F(Viewer_Window, mouse_moves_the_camera_and_screenshots_are_what_kvdraw_draws) {
  open();
  std::set<std::string> pictures = {content_of(screenshot())};
  const auto expect_another = [&](const std::string& after) {
    EXPECT_TRUE(pictures.insert(content_of(screenshot())).second) << after;
  };
  drag(1, "120 90", "31 -17");
  expect_another("turning");
  drag(3, "120 90", "-40 25");
  expect_another("moving");
  screen_.act("mousemove --window " + std::to_string(window_) + " 80 60 click 4 click 4");
  expect_another("zooming");
  keys("Right Up minus");
  expect_another("arrows");
  keys("o");
  expect_another("parallel projection");
  screen_.act("windowsize --sync " + std::to_string(window_) + " 300 200");
  expect_another("another size");
  keys("Home o y");
  expect_another("the first camera with close framing");
  for (const char* variant : {"F1 ", "F2 ", "F3 ", "F4 ", "F5 ", "F6 "})
    for (const char* mode : {"1", "2", "3", "4", "5"}) {
      keys(variant + std::string(mode));
      pictures.insert(content_of(screenshot()));
    }
  EXPECT_GE(pictures.size(), 16u);  // modes differ, also in mapped colours
}

TEST_F(Viewer_Window, window_shows_the_picture_and_the_overlays_over_it) {
  open();
  keys("i");  // away with the readout
  for (const char* variant : {"F2", "F6"}) {
    SCOPED_TRACE(variant);
    keys(variant);
    const std::string picture = screenshot();
    keys("F12");  // has no meaning, but ends the message of the screenshot
    EXPECT_TRUE(comes_to_show(picture));
    keys("h");
    const Decoded plain = decode(picture);
    EXPECT_TRUE(
        comes_true([&](const Decoded& seen) { return seen.at(120, 20) != plain.at(120, 20); }));
    keys("h");
    EXPECT_TRUE(comes_to_show(picture));
    keys("i");
    EXPECT_TRUE(comes_true([&](const Decoded& seen) {
      return seen.at(10, 10) != plain.at(10, 10) && seen.at(200, 150) == plain.at(200, 150);
    }));
    keys("i");
  }
}

TEST_F(Viewer_Window, follows_the_file_and_outlasts_a_damaged_one) {
  open();
  keys("i");
  const Decoded first = decode(screenshot());
  keys("F12");
  write("cube.obj", "v -1 0 0\nv 1 0 0\nv 0 2 0\nf 1 2 3\n");
  ASSERT_TRUE(
      comes_true([&](const Decoded& seen) { return seen.at(120, 90) != first.at(120, 90); }));
  const std::string second = screenshot();
  keys("F12");
  EXPECT_TRUE(comes_to_show(second));
  write("cube.obj", "this is no model\n");
  EXPECT_TRUE(comes_true([&](const Decoded& seen) { return seen.bytes != decode(second).bytes; }));
  keys("F12");
  EXPECT_TRUE(comes_to_show(second));
  keys("q");
  EXPECT_EQ(viewer_->exit_code(), 0);
}

TEST_F(Viewer_Window, tells_in_its_exit_code_why_there_is_none) {
  write_cube();
  for (const auto& [line, code, words] :
       {std::tuple{"missing.obj", 1, "kvview: missing.obj: error: No such file"},
        {"cube.obj -o picture.png", 2, "kvview: error: "},
        {"cube.obj --module missing.kvd", 3, "kvview: missing.kvd: error: "},
        {"cube.obj", 4, "kvview: error: "}}) {
    const Outcome outcome = shell("DISPLAY=:none " KVVIEW " " + std::string(line));
    EXPECT_EQ(outcome.exit_code, code) << line;
    EXPECT_THAT(outcome.errors, testing::StartsWith(words));
    EXPECT_EQ(outcome.errors.find('\n'), outcome.errors.size() - 1) << outcome.errors;
  }
}

}  // namespace
