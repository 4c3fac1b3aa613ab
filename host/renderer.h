// The base of every renderer: its action table, its options, and the operations that the
// framework and the host application call.
#pragma once

#include "host/action.h"
#include "host/color.h"
#include "host/option.h"

/// What a renderer offers (declared) or is to be (current).
class KORVEL_EXPORT KT_Renderer_Options {
 public:
  int buffer_depth() const;  ///< bits; below 1: no depth image
  KT_Color_System color_system() const;
  bool alpha_blending() const;
  bool local_coordinates() const;   ///< true: buffer coordinates are device coordinates
  KT_Int_XY window_origin() const;  ///< device coordinates of the bottom left pixel
  KT_Int_XY window_size() const;    ///< width and height in pixels
  const KT_Palette& palette() const;
  bool backing_store() const;          ///< true: the frame image is kept between pictures
  bool supports_complex_clip() const;  ///< true: the renderer honours complex clips

  void set_buffer_depth(int bits);
  void set_backing_store(bool on);
  void set_supports_complex_clip(bool on);

  // Written by the host application.
  void set_color_system(KT_Color_System system);
  void set_alpha_blending(bool on);
  void set_local_coordinates(bool on);
  void set_window(KT_Int_XY origin, KT_Int_XY size);
  void set_palette(const KT_Palette& palette);

 private:
  int buffer_depth_ = 0;
  KT_Color_System color_system_ = KT_Color_System::direct;
  bool alpha_blending_ = false;
  bool local_coordinates_ = false;
  bool backing_store_ = false;
  bool supports_complex_clip_ = false;
  KT_Int_XY window_origin_;
  KT_Int_XY window_size_;
  KT_Palette palette_;
};

class KORVEL_EXPORT KT_Renderer_Data : public KT_Counted {
 public:
  KT_Action_Table actions;
  KT_Option_Table renderer_option_table;  ///< what the renderer was made with and has changed
  KT_Option_Table current_option_table;   ///< what is in force
  KT_Renderer_Options declared_options;
  KT_Renderer_Options current_options;
  /// Whose tables and options are in force; the renderer itself unless the host says otherwise.
  KT_Renderer_Data* options_owner;

  /// Takes settings and the shared options from `source`, which may be null.
  explicit KT_Renderer_Data(const KT_Renderer_Data* source);
  KT_Renderer_Data(const KT_Renderer_Data&) = delete;
  ~KT_Renderer_Data() override;

  KT_Renderer_Data* clone() const override = 0;
  virtual const KT_Renderer_Options& options() const = 0;
  virtual KT_Renderer_Options& options() = 0;
  virtual void optimize_current_options();
  virtual void optimize_current_renderer_options(KT_Renderer_Data& other);
  virtual KT_Option_Table& option_table() = 0;
  /// Configures the renderer for the current options; to be called whenever they change.
  virtual int establish() = 0;
  virtual int establish_all();
  virtual void begin_picture(KT_Document_Info* info) = 0;
  virtual void begin_picture_all(KT_Document_Info* info);
  virtual void end_picture() = 0;
  virtual void end_picture_all();
  /// Hands a rectangle of the colour buffer (buffer coordinates) to the window.
  virtual void update(const KT_Int_Rectangle& rectangle) = 0;
  virtual void update_all(const KT_Int_Rectangle& rectangle);

  /// Fills the table with the framework's routines. With false only what a renderer leaves
  /// unbound and the actions of the framework's own side are entered.
  void set_standard_actions(bool all);
  /// Carries changes of `renderer_option_table` into `current_option_table`.
  void update_current_options();
};
