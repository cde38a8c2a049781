#include "browser/dialog_units.h"

#include <QFont>
#include <QFontMetrics>
#include <QWidget>

namespace obsidra::browser {

QSize DialogBaseUnits(const QFont& font) {
    const QFontMetrics metrics(font);
    const int width =
        metrics.horizontalAdvance("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    // The average over 52 letters, rounded to the nearest pixel.
    return {(width / 26 + 1) / 2, metrics.height()};
}

QRect DialogUnitsToPixels(const QRect& units, const QSize& baseUnits) {
    const auto x = [&](int v) { return v * baseUnits.width() / 4; };
    const auto y = [&](int v) { return v * baseUnits.height() / 8; };
    return {x(units.x()), y(units.y()), x(units.width()), y(units.height())};
}

// The fixed pixel margins of the browser's resize rules were made for this size.
QSize UseTemplateFont(QWidget& dialog) {
    QFont font = dialog.font();
    font.setPixelSize(11);
    dialog.setFont(font);
    return DialogBaseUnits(font);
}

void PlaceControl(QWidget& control, int controlId, const QRect& units, const QSize& baseUnits) {
    if (controlId) control.setProperty("controlId", controlId);
    control.setGeometry(DialogUnitsToPixels(units, baseUnits));
}

QWidget* FindControl(const QWidget& dialog, int controlId) {
    for (QWidget* widget : dialog.findChildren<QWidget*>())
        if (widget->property("controlId").toInt() == controlId) return widget;
    return nullptr;
}

} // namespace obsidra::browser
