// Binding of routines to actions.
#pragma once

#include "module/core/software_z_buffer.h"
#include "module/core/variant.h"

namespace zbuffer {

/// Binds a routine whose address is known at compile time.
template <KT_Action action>
void bind(Software_Z_Buffer& renderer, korvel::Routine_Of<action>* routine) {
  renderer.actions.bind<action>(&renderer, routine);
}

/// Calls `use.operator()<variant>()` with `variant` as a constant.
template <class Use>
void with_constant(Variant variant, Use use) {
  switch (variant) {
    case Variant::rgb_alpha:
      return use.template operator()<Variant::rgb_alpha>();
    case Variant::rgb:
      return use.template operator()<Variant::rgb>();
    case Variant::mapped:
      return use.template operator()<Variant::mapped>();
    case Variant::mapped_z:
      return use.template operator()<Variant::mapped_z>();
    case Variant::rgb_alpha_z:
      return use.template operator()<Variant::rgb_alpha_z>();
    case Variant::rgb_z:
      return use.template operator()<Variant::rgb_z>();
  }
}

}  // namespace zbuffer
