// Reads the lines of material files that name a texture with the options -o or -s, as in
//
//   map_Kd -o 0.5 0 -s 2 2 1 -clamp on wood.png
#include "apps/load/mtl_maps.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string_view>
#include <vector>

namespace kv {
namespace {

using Words = std::vector<std::string>;

Words words_of(const std::string& line) {
  std::istringstream stream(line);
  Words words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

// The rest of a line after its first word: names may have blanks.
std::string rest_of(const std::string& line) {
  const char* const blanks = " \t\r";
  const std::size_t word = line.find_first_not_of(blanks);
  const std::size_t blank = line.find_first_of(blanks, word);
  const std::size_t first = line.find_first_not_of(blanks, blank);
  if (blank == std::string::npos || first == std::string::npos) return {};
  return line.substr(first, line.find_last_not_of(blanks) + 1 - first);
}

bool is_number(const std::string& word) {
  char* end = nullptr;
  std::strtod(word.c_str(), &end);
  return !word.empty() && *end == '\0';
}

// Reads up to three numbers from `at` on, of which the third is not used.
void read_numbers(const Words& words, std::size_t& at, std::array<double, 2>& numbers) {
  for (std::size_t i = 0; i < 3 && at < words.size() && is_number(words[at]); ++i, ++at)
    if (i < 2) numbers[i] = std::strtod(words[at].c_str(), nullptr);
}

// Of the other options, how many words follow.
std::size_t words_after(const std::string& option) {
  if (option == "-mm") return 2;
  return option == "-t" ? 3 : 1;
}

// True when the line has an offset or a scale.
bool read_map(const Words& words, Mtl_Map& map) {
  bool is_moved = false;
  std::size_t at = 1;
  while (at < words.size() && words[at][0] == '-') {
    const std::string& option = words[at++];
    if (option == "-o" || option == "-s") {
      read_numbers(words, at, option == "-o" ? map.offset : map.scale);
      is_moved = true;
    } else {
      at += words_after(option);
    }
  }
  for (; at < words.size(); ++at) map.file += (map.file.empty() ? "" : " ") + words[at];
  return is_moved && !map.file.empty();
}

aiTextureType type_of(const std::string& keyword) {
  if (keyword == "map_Kd") return aiTextureType_DIFFUSE;
  if (keyword == "map_d") return aiTextureType_OPACITY;
  return keyword == "map_Ke" || keyword == "map_emissive" ? aiTextureType_EMISSIVE
                                                          : aiTextureType_NONE;
}

// The lines of a file, as far as they are of a length that can be meant.
std::vector<std::string> lines_of(const File& file, std::string_view first_letters) {
  constexpr std::size_t longest = 4096;
  std::vector<std::string> lines;
  char buffer[longest];
  while (std::fgets(buffer, longest, file.get())) {
    const std::size_t first = std::string_view(buffer).find_first_not_of(" \t");
    if (first != std::string_view::npos && first_letters.find(buffer[first]) != first_letters.npos)
      lines.emplace_back(buffer);
  }
  for (std::string& line : lines)
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
  return lines;
}

void read_library(const File& file, Mtl_Maps& maps) {
  std::string material;
  for (const std::string& line : lines_of(file, "nm")) {
    const Words words = words_of(line);
    if (words[0] == "newmtl") material = rest_of(line);
    const aiTextureType type = type_of(words[0]);
    Mtl_Map map;
    if (type != aiTextureType_NONE && read_map(words, map)) maps[{material, type}] = map;
  }
}

}  // namespace

Mtl_Maps read_mtl_maps(const std::filesystem::path& model, const Model_Folder& folder) {
  Mtl_Maps maps;
  const File file(std::fopen(model.c_str(), "rb"));
  if (!file) return maps;
  for (const std::string& line : lines_of(file, "m")) {
    if (!line.starts_with("mtllib")) continue;
    const Reference found = folder.resolve(rest_of(line));
    if (!found.readable()) continue;
    if (const File library = folder.open(found)) read_library(library, maps);
  }
  return maps;
}

}  // namespace kv
