#include "UI/ResultMetrics.h"

#include "Models/Text.h"

#include <algorithm>
#include <cmath>

namespace orvesa::ResultMetrics {

namespace {

constexpr qsizetype wideFromCharacters = 301;

bool isLong(const QString &text)
{
    // Counting user-perceived characters walks the whole text: a text with fewer code units cannot have more of them,
    // and a prefix that is long enough already settles the question for a huge answer. A cluster cut at the end of the
    // prefix adds at most one, hence the margin.
    constexpr qsizetype prefixLength = 64 * wideFromCharacters;
    if (text.size() < wideFromCharacters) {
        return false;
    }
    if (text.size() > prefixLength && characterCount(QStringView(text).first(prefixLength)) > wideFromCharacters) {
        return true;
    }
    return characterCount(text) >= wideFromCharacters;
}

} // namespace

int panelWidth(const QString &sourceText, const FloatingResultViewModel::Phase &phase)
{
    const auto *success = std::get_if<FloatingResultViewModel::Success>(&phase);
    return isLong(sourceText) || (success != nullptr && isLong(success->text)) ? wideWidth : narrowWidth;
}

int maximumSourceHeight(int visibleScreenHeight)
{
    return static_cast<int>(std::min(0.18 * visibleScreenHeight, 200.0));
}

int maximumResultHeight(int visibleScreenHeight)
{
    return static_cast<int>(std::min(0.45 * visibleScreenHeight, 480.0));
}

int displayedTextHeight(qreal measuredHeight, int maximumHeight)
{
    const int contentHeight = static_cast<int>(std::ceil(measuredHeight)) + textBottomSlack;
    return std::min(maximumHeight, std::max(contentHeight, minimumTextHeight));
}

} // namespace orvesa::ResultMetrics
