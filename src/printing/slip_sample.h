// What the calibration window draws: a sample slip, its marks made by the same code as those of real slips; the boxes
// of the pre-printed slip; and the areas that the values measure. Lengths in twips.
#pragma once

#include <vector>

#include "platform/printer/page_drawing.h"
#include "printing/slip_settings.h"
#include "printing/slip_type.h"

namespace marlevo {

// A full slip with marks in the outermost boxes of its rows, the largest multiple, a further draw and list numbers.
PageDrawing SampleSlip(SlipType type, const SlipPrinterSettings& settings);

// The sample slip, and beside its marks the slip type and the twelve values. The texts lie over the marks only when the
// paper has no room for both.
PageDrawing TestSheet(SlipType type, const SlipPrinterSettings& settings, double paper_width, double paper_height);

// All boxes of the slip that can be marked.
std::vector<Mark> SlipBoxes(SlipType type, const SlipPrinterSettings& settings);

// The distances or boxes that the value of a field (0 to 11) measures on the slip. None for the play-kind position, on
// which no mark depends, and for any other index.
std::vector<Mark> FieldAreas(int field, SlipType type, const SlipPrinterSettings& settings);

}  // namespace marlevo
