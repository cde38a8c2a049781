#include "browser/dialog_units.h"

#include <QFont>
#include <QFontMetrics>

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

} // namespace obsidra::browser
