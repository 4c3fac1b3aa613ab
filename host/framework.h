// The contract between the framework `korvel12` and a renderer module, all of it.
#pragma once

#include "host/action.h"
#include "host/clip.h"
#include "host/color.h"
#include "host/contour.h"
#include "host/counted.h"
#include "host/global.h"
#include "host/image.h"
#include "host/material.h"
#include "host/matrix.h"
#include "host/option.h"
#include "host/renderer.h"
#include "host/rendition.h"
#include "host/standard.h"
#include "host/types.h"

/// The one export of a renderer module: makes a renderer with reference count 0, or returns null
/// when there is no memory. `source` is a renderer to take settings from, or null.
extern "C" KT_Renderer_Data* KD_Renderer(const KT_Renderer_Data* source);
