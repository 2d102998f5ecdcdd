// What the calibration window draws: a sample slip whose marks come from the same code as those of real ones, the boxes
// of the pre-printed slip, and the areas that a value stands for. Lengths in twips.
#pragma once

#include <string>
#include <vector>

#include "platform/printer/page_drawing.h"
#include "printing/slip_marks.h"
#include "printing/slip_settings.h"

namespace marlevo {

// A full slip with marks in the outermost boxes of its rows, a multiple, a further draw and the tickets' numbers.
PageDrawing SampleSlip(SlipType type, const SlipPrinterSettings& settings);

// The sample slip and, clear of its marks where the paper allows it, the slip type and the twelve values.
PageDrawing TestSheet(SlipType type, const SlipPrinterSettings& settings, double paper_width, double paper_height);

// Every box of the slip that a mark can fall into.
std::vector<Mark> SlipBoxes(SlipType type, const SlipPrinterSettings& settings);

// What the value of a field (0 to 11) measures on the slip. Empty when it measures nothing: no mark depends on the
// play-kind position.
std::vector<Mark> FieldAreas(int field, SlipType type, const SlipPrinterSettings& settings);

// "3星彩" or "4星彩"
std::string SlipCaption(SlipType type);

}  // namespace marlevo
