#pragma once

#include <QRect>
#include <QSize>

class QFont;
class QWidget;

namespace obsidra::browser {

// Dialog templates measure in dialog units: a quarter of the dialog font's average character
// width across, an eighth of its height down.
QSize DialogBaseUnits(const QFont& font);
QRect DialogUnitsToPixels(const QRect& units, const QSize& baseUnits);

// Gives a dialog the templates' font, a small sans serif, and returns its base units.
QSize UseTemplateFont(QWidget& dialog);

// Places a control at its template rectangle and gives it its numeric id (property
// "controlId"; 0: none).
void PlaceControl(QWidget& control, int controlId, const QRect& units, const QSize& baseUnits);
// The child of that id, or null.
QWidget* FindControl(const QWidget& dialog, int controlId);

} // namespace obsidra::browser
