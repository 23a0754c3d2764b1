#pragma once

// The sizing rules of the result panel. Pure functions; lengths in device-independent pixels.

#include "UI/FloatingResultViewModel.h"

namespace orvesa::ResultMetrics {

inline constexpr int narrowWidth = 420;
inline constexpr int wideWidth = 520;
inline constexpr int textInset = 28;      ///< panel width minus text width
inline constexpr int textBottomSlack = 8; ///< added to a text's measured height
inline constexpr int minimumTextHeight = 20;
inline constexpr int fallbackScreenHeight = 900;

/// Wide when the source, or a successful result, has more than 300 characters.
[[nodiscard]] int panelWidth(const QString &sourceText, const FloatingResultViewModel::Phase &phase);

/// The most that the source text, and the result text, may take on a screen of this visible height.
[[nodiscard]] int maximumSourceHeight(int visibleScreenHeight);
[[nodiscard]] int maximumResultHeight(int visibleScreenHeight);

/// Height at which a text of this measured height is shown.
[[nodiscard]] int displayedTextHeight(qreal measuredHeight, int maximumHeight);

} // namespace orvesa::ResultMetrics
