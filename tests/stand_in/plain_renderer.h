// The least renderer there can be.
#pragma once

#include "host/renderer.h"

class Plain_Renderer : public KT_Renderer_Data {
 public:
  int established = 0;

  explicit Plain_Renderer(const KT_Renderer_Data* source) : KT_Renderer_Data(source) {}

  KT_Renderer_Data* clone() const override { return nullptr; }
  const KT_Renderer_Options& options() const override { return options_owner->current_options; }
  KT_Renderer_Options& options() override { return options_owner->current_options; }
  KT_Option_Table& option_table() override { return options_owner->current_option_table; }
  int establish() override {
    ++established;
    return 0;
  }
  void begin_picture(KT_Document_Info*) override {}
  void end_picture() override {}
  void update(const KT_Int_Rectangle&) override {}
};
