// Finding a dialog's controls as tools and people do: by the template id each control keeps.
#pragma once

#include <QVariant>
#include <QWidget>
#include <gtest/gtest.h>

namespace obsidra::components::qt::testing {

template <class Control>
Control* FindControl(const QWidget* dialog, int controlId) {
    for (Control* control : dialog->findChildren<Control*>())
        if (control->property("controlId") == QVariant(controlId)) return control;
    ADD_FAILURE() << "no control " << controlId;
    return nullptr;
}

} // namespace obsidra::components::qt::testing
