#include "components/qt/dialog_units.h"

#include <QFontMetrics>
#include <QVariant>
#include <QWidget>

namespace obsidra::components::qt {

namespace {

// The average character width as dialog templates define it: the width of the 52 Latin
// letters, rounded, over 52.
int AverageCharacterWidth(const QFontMetrics& metrics) {
    const int width =
        metrics.horizontalAdvance("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    return (width / 26 + 1) / 2;
}

int Scale(int units, int size, int divisor) {
    return (units * size + divisor / 2) / divisor;
}

} // namespace

DialogUnits::DialogUnits(const QFont& font) {
    const QFontMetrics metrics(font);
    m_averageWidth = AverageCharacterWidth(metrics);
    m_height = metrics.height();
}

int DialogUnits::X(int units) const {
    return Scale(units, m_averageWidth, 4);
}

int DialogUnits::Y(int units) const {
    return Scale(units, m_height, 8);
}

QRect DialogUnits::Rect(int x, int y, int width, int height) const {
    return {X(x), Y(y), X(width), Y(height)};
}

QSize DialogUnits::Size(int width, int height) const {
    return {X(width), Y(height)};
}

void PlaceControl(QWidget* control, int controlId, const DialogUnits& units, QRect templateRect) {
    control->setProperty("controlId", controlId);
    control->setGeometry(units.Rect(templateRect.x(), templateRect.y(), templateRect.width(),
                                    templateRect.height()));
}

} // namespace obsidra::components::qt
