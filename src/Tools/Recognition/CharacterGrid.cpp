#include "Tools/Recognition/CharacterGrid.h"

#include "Tools/Recognition/Scripts.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvesa {

namespace {

bool isNarrowLine(const CharacterGrid::Line &line)
{
    return std::ranges::none_of(line.glyphs, [](const SpacedGlyph &glyph) { return Scripts::isWide(glyph.text); });
}

std::vector<double> stepsIn(const std::vector<CharacterGrid::Line> &lines)
{
    std::vector<double> steps;
    for (const CharacterGrid::Line &line : lines) {
        if (isNarrowLine(line)) {
            for (std::size_t index = 1; index < line.glyphs.size(); ++index) {
                steps.push_back(line.glyphs[index].center - line.glyphs[index - 1].center);
            }
        }
    }
    return steps;
}

/// How far the steps are from whole columns, on average: a quarter where there are no columns.
double misfit(const std::vector<double> &steps, double pitch)
{
    double sum = 0;
    for (const double step : steps) {
        const double columns = step / pitch;
        sum += std::min(0.5, std::abs(columns - std::max(1.0, std::round(columns))));
    }
    return sum / static_cast<double>(steps.size());
}

double leftEdge(const CharacterGrid::Line &line, double pitch)
{
    const SpacedGlyph &first = line.glyphs.front();
    return first.center - (Scripts::isWide(first.text) ? pitch : pitch / 2);
}

} // namespace

std::optional<CharacterGrid> CharacterGrid::of(const std::vector<Line> &lines, double text)
{
    constexpr std::size_t leastSteps = 12;
    constexpr double mostMisfit = 0.1;
    const std::vector<double> steps = stepsIn(lines);
    if (steps.size() < leastSteps) {
        return std::nullopt;
    }
    double pitch = 0;
    double least = std::numeric_limits<double>::max();
    constexpr double narrowest = 0.5;
    constexpr double widest = 1.05;
    for (double candidate = narrowest * text; candidate <= widest * text; candidate *= 1.004) {
        const double found = misfit(steps, candidate);
        if (found < least) {
            least = found;
            pitch = candidate;
        }
    }
    if (least > mostMisfit) {
        return std::nullopt;
    }
    double left = std::numeric_limits<double>::max();
    for (const Line &line : lines) {
        if (!line.glyphs.empty()) {
            left = std::min(left, leftEdge(line, pitch));
        }
    }
    return CharacterGrid(pitch, left);
}

/// Two glyphs in one column are one that the engine saw twice.
void CharacterGrid::dropDoubles(Line &line) const
{
    constexpr double leastApart = 0.6;
    for (std::size_t index = 1; index < line.glyphs.size();) {
        SpacedGlyph &before = line.glyphs[index - 1];
        const SpacedGlyph &glyph = line.glyphs[index];
        if (glyph.center - before.center >= leastApart * m_pitch) {
            ++index;
            continue;
        }
        SpacedGlyph kept = glyph.confidence > before.confidence ? glyph : before;
        kept.center = (before.center + glyph.center) / 2;
        before = std::move(kept);
        line.glyphs.erase(line.glyphs.begin() + static_cast<std::ptrdiff_t>(index));
    }
}

void CharacterGrid::settle(Line &line) const
{
    if (!isNarrowLine(line)) {
        return;
    }
    dropDoubles(line);
    for (std::size_t index = 1; index < line.glyphs.size(); ++index) {
        const double columns = (line.glyphs[index].center - line.glyphs[index - 1].center) / m_pitch;
        line.glyphs[index].beginsWord = std::lround(columns) >= 2;
    }
}

int CharacterGrid::indentation(const Line &line) const
{
    constexpr int most = 120;
    return line.glyphs.empty()
               ? 0
               : std::clamp(static_cast<int>(std::lround((leftEdge(line, m_pitch) - m_left) / m_pitch)), 0, most);
}

} // namespace orvesa
