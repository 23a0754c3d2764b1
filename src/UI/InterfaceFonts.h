#pragma once

// Keeps the fonts of widgets with the language of the interface, which the user may change while they are shown.
//
// Main thread only.

class QWidget;

namespace orvesa::InterfaceFonts {

/// Gives the widget, everything inside it, and the tooltips the font families of the interface's present language. A
/// widget that shows texts from outside finds their own language again at its next text.
void follow(QWidget &root);

} // namespace orvesa::InterfaceFonts
