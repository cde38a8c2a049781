// Dialog templates place controls in dialog units: a quarter of the dialog font's average
// character width across, an eighth of its height down.
#pragma once

#include <QFont>
#include <QRect>
#include <QSize>

class QWidget;

namespace obsidra::components::qt {

class DialogUnits {
public:
    explicit DialogUnits(const QFont& font);

    int X(int units) const;
    int Y(int units) const;
    QRect Rect(int x, int y, int width, int height) const;
    QSize Size(int width, int height) const;

private:
    int m_averageWidth;
    int m_height;
};

// Places the control at its template rectangle and keeps its template id for tests and tools.
void PlaceControl(QWidget* control, int controlId, const DialogUnits& units, QRect templateRect);

} // namespace obsidra::components::qt
