// Clipping that the framework does for renderers.
#pragma once

#include "host/rendition.h"

class KT_Renderer_Data;

/// Writes one outcode a point: 0 inside, else a sum of 1 left, 2 above, 4 right, 8 below.
/// Returns `count` when all are inside, 0 when all lie beyond one common edge, else another value.
KORVEL_EXPORT int KD_Clip(const KT_Int_Rectangle& rectangle, int count, const KT_DCI_Point* points,
                          short* codes);
KORVEL_EXPORT int KD_Clip(const KT_Int_Rectangle& rectangle, int count, const KT_Point_D* points,
                          short* codes);

/// Entry point of the segment from `points[0]`, outside by `code`, to `points[1]`, inside. The
/// result is rounded. `colors` and `result_colors` run beside the points and may both be null.
KORVEL_EXPORT void KD_Preclip_Head(short code, const KT_Int_Rectangle& rectangle,
                                   const KT_Point_D* points, KT_DCI_Point* result,
                                   const KT_RGB32* colors, KT_RGB32* result_colors);
/// Exit point of the segment from `points[0]`, inside, to `points[1]`, outside by `code`.
KORVEL_EXPORT void KD_Preclip_Tail(short code, const KT_Int_Rectangle& rectangle,
                                   const KT_Point_D* points, KT_DCI_Point* result,
                                   const KT_RGB32* colors, KT_RGB32* result_colors);
/// Both ends of a segment that starts and ends outside; false when it misses the rectangle.
KORVEL_EXPORT bool KD_Preclip_Ends(const short* codes, const KT_Int_Rectangle& rectangle,
                                   const KT_Point_D* points, KT_DCI_Point* results,
                                   const KT_RGB32* colors, KT_RGB32* result_colors);
/// Cuts a triangle; `results` gets a strip of `count` points. What the kind of triangle lacks is
/// null in and out. Returns false when nothing is left.
KORVEL_EXPORT bool KD_Preclip_2D_Triangle(KT_Renderer_Data* renderer, const KT_Rendition& rendition,
                                          const KT_Int_Rectangle& rectangle,
                                          const KT_Point_D* points, int* count,
                                          KT_DCI_Point* results, const KT_RGB32* colors,
                                          KT_RGB32* result_colors, const KT_Parameter* parameters,
                                          KT_Parameter* result_parameters, int parameter_width,
                                          const float* floats, float* result_floats,
                                          const KT_Vector* vectors, KT_Vector* result_vectors);
