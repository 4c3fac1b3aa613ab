// The base of every renderer.
#include "host/renderer.h"

#include <algorithm>

#include "host/standard.h"
#include "stand_in/frame_buffer.h"

KT_Renderer_Data::KT_Renderer_Data(const KT_Renderer_Data* source) : options_owner(this) {
  if (source == nullptr) return;
  current_options = source->options();
  declared_options = source->declared_options;
  renderer_option_table.share_from(source->renderer_option_table);
  current_option_table.share_from(source->current_option_table);
}

KT_Renderer_Data::~KT_Renderer_Data() = default;

void KT_Renderer_Data::optimize_current_options() {
  optimize_current_renderer_options(*options_owner);
}

// What is requested is reduced to what this renderer has declared.
void KT_Renderer_Data::optimize_current_renderer_options(KT_Renderer_Data& other) {
  KT_Renderer_Options& asked = other.current_options;
  asked.set_buffer_depth(std::min(asked.buffer_depth(), declared_options.buffer_depth()));
  asked.set_backing_store(declared_options.backing_store());
  asked.set_supports_complex_clip(declared_options.supports_complex_clip());
}

// The operations on "all" are on this renderer alone: the stand-in has no renderers within others.
int KT_Renderer_Data::establish_all() {
  optimize_current_options();
  return establish();
}

void KT_Renderer_Data::begin_picture_all(KT_Document_Info* info) {
  begin_picture(info);
}

void KT_Renderer_Data::end_picture_all() {
  end_picture();
}

void KT_Renderer_Data::update_all(const KT_Int_Rectangle& rectangle) {
  update(rectangle);
}

void KT_Renderer_Data::set_standard_actions(bool all) {
#define KORVEL_BIND_STANDARD(name, signature) \
  actions.bind<KT_Action::name>(this, KD_Standard_##name);
  if (all) {
    KORVEL_STANDARD_ACTIONS(KORVEL_BIND_STANDARD)
  } else {
    // A renderer without depth has no textured routines, and one of mapped colour with depth no
    // markers.
    KORVEL_STANDARD_TEXTURED_POLYTRIANGLES(KORVEL_BIND_STANDARD)
    KORVEL_BIND_STANDARD(Draw_2DI_Polymarker, korvel::Strip_Routine<KT_DCI_Point>)
  }
#undef KORVEL_BIND_STANDARD
  actions.bind<KT_Action::Create_Frame_Buffer>(this, stand_in::create_frame_buffer);
  actions.bind<KT_Action::Present_Image>(this, stand_in::present_to_no_window);
}

void KT_Renderer_Data::update_current_options() {
  renderer_option_table.carry_changes_to(current_option_table);
}
