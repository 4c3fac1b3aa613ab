// The words for the values of options.
#pragma once

#include <map>
#include <string>

#include "apps/draw/drawing.h"
#include "apps/draw/variant.h"
#include "apps/scene/camera.h"

namespace kv::words {

inline const std::map<std::string, Variant> variants = {
    {"rgb", Variant::rgb},
    {"rgb-z", Variant::rgb_z},
    {"rgb-alpha", Variant::rgb_alpha},
    {"rgb-alpha-z", Variant::rgb_alpha_z},
    {"mapped", Variant::mapped},
    {"mapped-z", Variant::mapped_z},
};
inline const std::map<std::string, Style> styles = {{"shaded", Style::shaded},
                                                    {"flat", Style::flat},
                                                    {"wireframe", Style::wireframe},
                                                    {"hidden-line", Style::hidden_line},
                                                    {"points", Style::points}};
inline const std::map<std::string, Edge_Choice> edge_choices = {{"all", Edge_Choice::all},
                                                                {"feature", Edge_Choice::feature}};
inline const std::map<std::string, Texture_Filter> texture_filters = {
    {"nearest", Texture_Filter::nearest}, {"linear", Texture_Filter::linear}};
inline const std::map<std::string, int> palettes = {
    {"cube2", 2}, {"cube3", 3}, {"cube4", 4}, {"cube5", 5}, {"cube6", 6}};
inline const std::map<std::string, Up_Axis> axes = {{"auto", Up_Axis::by_format},
                                                    {"x", Up_Axis::x},
                                                    {"y", Up_Axis::y},
                                                    {"z", Up_Axis::z},
                                                    {"-x", Up_Axis::minus_x},
                                                    {"-y", Up_Axis::minus_y},
                                                    {"-z", Up_Axis::minus_z}};
inline const std::map<std::string, Framing> framings = {{"close", Framing::close},
                                                        {"steady", Framing::steady}};

// The word for a value, which must be among the words.
template <class Value>
const std::string& word_for(const std::map<std::string, Value>& words, const Value& value) {
  auto found = words.begin();
  while (!(found->second == value)) ++found;
  return found->first;
}

}  // namespace kv::words
