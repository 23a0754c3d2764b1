#include "Tools/Recognition/Spans.h"

#include <algorithm>

namespace orvesa {

Span spanOf(const QRect &box, Axis axis)
{
    return axis == Axis::across ? Span{box.left(), box.right()} : Span{box.top(), box.bottom()};
}

std::vector<Span> coveredSpans(const Marks &marks, Axis axis, int reach)
{
    std::vector<Span> spans;
    spans.reserve(marks.size());
    for (const QRect &mark : marks) {
        spans.push_back(spanOf(mark, axis));
    }
    std::ranges::sort(spans, {}, &Span::begin);
    std::vector<Span> covered;
    for (const Span &span : spans) {
        if (!covered.empty() && span.begin - covered.back().end - 1 <= reach) {
            covered.back().end = std::max(covered.back().end, span.end);
        } else {
            covered.push_back(span);
        }
    }
    return covered;
}

std::vector<Span> gapsBetween(const std::vector<Span> &covered)
{
    std::vector<Span> gaps;
    for (std::size_t index = 1; index < covered.size(); ++index) {
        gaps.push_back({covered[index - 1].end + 1, covered[index].begin - 1});
    }
    return gaps;
}

Marks marksWithin(const Marks &marks, Axis axis, Span span)
{
    Marks within;
    for (const QRect &mark : marks) {
        const Span own = spanOf(mark, axis);
        if (own.begin >= span.begin && own.end <= span.end) {
            within.push_back(mark);
        }
    }
    return within;
}

} // namespace orvesa
