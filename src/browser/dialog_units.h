#pragma once

#include <QRect>
#include <QSize>

class QFont;

namespace obsidra::browser {

// Dialog templates measure in dialog units: a quarter of the dialog font's average character
// width across, an eighth of its height down.
QSize DialogBaseUnits(const QFont& font);
QRect DialogUnitsToPixels(const QRect& units, const QSize& baseUnits);

} // namespace obsidra::browser
