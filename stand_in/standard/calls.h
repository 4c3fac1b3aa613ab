// How general routines come back through the action table.
//
// Each routine calls either its own action with attributes that a renderer draws by itself, or an
// action further down: polylines -> polygons -> polytriangles, markers -> dots -> images. As a
// routine never comes back to itself, there is no way round in a circle.
#pragma once

#include "host/renderer.h"
#include "host/standard.h"
#include "stand_in/standard/undrawn.h"

namespace stand_in {

template <KT_Action action>
struct Standard_Of;
#define KORVEL_STANDARD_OF(action_name, signature)                     \
  template <>                                                          \
  struct Standard_Of<KT_Action::action_name> {                         \
    static constexpr const char* name = "KD_Standard_" #action_name;   \
    static signature* routine() { return &KD_Standard_##action_name; } \
  };
KORVEL_STANDARD_ACTIONS(KORVEL_STANDARD_OF)
#undef KORVEL_STANDARD_OF

/// Whether the renderer has bound anything but the general routine to the action.
template <KT_Action action>
bool is_own(const KT_Renderer_Data& renderer) {
  const KT_Action_Record& record = renderer.actions[action];
  return record.valid == 1 &&
         record.function != reinterpret_cast<void (*)()>(Standard_Of<action>::routine());
}

/// Calls an action further down than the caller's own.
template <KT_Action action, class... Arguments>
void call(const KT_Renderer_Data& renderer, Arguments&&... arguments) {
  if (renderer.actions[action].valid == 0) return report_undrawn(Standard_Of<action>::name);
  renderer.actions.call<action>(std::forward<Arguments>(arguments)...);
}

/// Calls the renderer's routine of an action, which may be the caller's.
template <KT_Action action, class... Arguments>
void call_own(const KT_Renderer_Data& renderer, Arguments&&... arguments) {
  if (!is_own<action>(renderer)) return report_undrawn(Standard_Of<action>::name);
  renderer.actions.call<action>(std::forward<Arguments>(arguments)...);
}

}  // namespace stand_in
