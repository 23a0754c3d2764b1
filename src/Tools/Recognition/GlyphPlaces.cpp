#include "Tools/Recognition/GlyphPlaces.h"

#include "Tools/Recognition/Scripts.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

constexpr int inkBelow = 170;
constexpr std::size_t mostPieces = 7;    ///< of one glyph: strokes that do not touch
constexpr std::size_t mostTouching = 12; ///< glyphs in one inked stretch

std::vector<Span> inkedSpans(const GrayImage &image)
{
    std::vector<Span> spans;
    for (int x = 0; x < image.width(); ++x) {
        bool inked = false;
        for (int y = 0; y < image.height() && !inked; ++y) {
            inked = image.at(x, y) < inkBelow;
        }
        if (!inked) {
            continue;
        }
        if (!spans.empty() && spans.back().end == x - 1) {
            spans.back().end = x;
        } else {
            spans.push_back({x, x});
        }
    }
    return spans;
}

/// How wide a glyph's ink usually is, in heights of a full-size character.
double usualWidth(const QString &glyph)
{
    const QChar character = glyph.isEmpty() ? QChar() : glyph[0];
    if (u"、。，．・：；！,.:;!'|’‘"_s.contains(character)) {
        return 0.2;
    }
    if (u"（）「」『』()[]{}ijltfI1"_s.contains(character)) {
        return 0.3;
    }
    if (u"ッャュョァィゥェォっゃゅょぁぃぅぇぉりリトノ"_s.contains(character)) {
        return 0.65;
    }
    if (Scripts::isKana(character)) {
        return 0.8;
    }
    if (Scripts::isWide(glyph)) {
        return 1;
    }
    return u"mwMW@%"_s.contains(character) ? 0.9 : 0.58;
}

class Division final {
public:
    Division(const ReadLine &line, const std::vector<Span> &spans, double text)
        : m_line(line), m_spans(spans), m_text(text), m_stride(spans.size() + 1),
          m_states((line.glyphs.size() + 1) * m_stride)
    {
        state(0, 0).cost = 0;
        for (std::size_t glyph = 0; glyph < line.glyphs.size(); ++glyph) {
            for (std::size_t span = 0; span < spans.size(); ++span) {
                if (state(glyph, span).cost < unreachable) {
                    giveSpansToGlyph(glyph, span);
                    giveGlyphsOneSpan(glyph, span);
                }
            }
        }
    }

    [[nodiscard]] std::vector<Span> places()
    {
        std::size_t glyph = m_line.glyphs.size();
        std::size_t span = m_spans.size();
        if (state(glyph, span).cost >= unreachable) {
            return {};
        }
        std::vector<Span> result(glyph);
        while (glyph > 0) {
            const State &here = state(glyph, span);
            const std::size_t glyphs = glyph - here.fromGlyph;
            const int begin = m_spans[here.fromSpan].begin;
            const double width = m_spans[span - 1].end - begin + 1;
            for (std::size_t part = 0; part < glyphs; ++part) {
                const auto edge = [&](std::size_t number) {
                    return begin + static_cast<int>(
                                       std::lround(width * static_cast<double>(number) / static_cast<double>(glyphs)));
                };
                result[here.fromGlyph + part] = {edge(part), std::max(edge(part), edge(part + 1) - 1)};
            }
            const std::size_t fromSpan = here.fromSpan;
            glyph = here.fromGlyph;
            span = fromSpan;
        }
        return result;
    }

private:
    static constexpr double unreachable = std::numeric_limits<double>::max() / 4;

    struct State {
        double cost = unreachable;
        std::size_t fromGlyph = 0;
        std::size_t fromSpan = 0;
    };

    State &state(std::size_t glyph, std::size_t span) { return m_states[glyph * m_stride + span]; }

    /// Wrong widths are told by their square, wrong places by their distance, because the engine's are often off.
    [[nodiscard]] double cost(std::size_t glyph, double begin, double end) const
    {
        const Glyph &read = m_line.glyphs[glyph];
        const double width = ((end - begin + 1) / m_text - usualWidth(read.text)) / 0.3;
        const double place = std::abs((begin + end) / 2 - read.box.center().x()) / m_text;
        return width * width + 1.5 * std::min(place, 3.0);
    }

    void offer(std::size_t glyph, std::size_t span, State candidate)
    {
        State &best = state(glyph, span);
        if (candidate.cost < best.cost) {
            best = candidate;
        }
    }

    void giveSpansToGlyph(std::size_t glyph, std::size_t span)
    {
        const double before = state(glyph, span).cost;
        for (std::size_t count = 1; count <= mostPieces && span + count <= m_spans.size(); ++count) {
            const double end = m_spans[span + count - 1].end;
            offer(glyph + 1, span + count, {before + cost(glyph, m_spans[span].begin, end), glyph, span});
        }
    }

    void giveGlyphsOneSpan(std::size_t glyph, std::size_t span)
    {
        constexpr double touching = 0.3;
        const double before = state(glyph, span).cost;
        const double begin = m_spans[span].begin;
        const double width = m_spans[span].length();
        for (std::size_t count = 2; count <= mostTouching && glyph + count <= m_line.glyphs.size(); ++count) {
            double sum = touching * static_cast<double>(count);
            const double each = width / static_cast<double>(count);
            for (std::size_t part = 0; part < count; ++part) {
                const double from = begin + each * static_cast<double>(part);
                sum += cost(glyph + part, from, from + each - 1);
            }
            offer(glyph + count, span + 1, {before + sum, glyph, span});
        }
    }

    const ReadLine &m_line;
    const std::vector<Span> &m_spans;
    double m_text;
    std::size_t m_stride;
    std::vector<State> m_states;
};

} // namespace

std::vector<Span> glyphPlaces(const ReadLine &line, const GrayImage &image, double text)
{
    const std::vector<Span> spans = inkedSpans(image);
    std::vector<Span> places;
    if (!spans.empty() && text > 0) {
        places = Division(line, spans, text).places();
    }
    if (places.empty()) {
        for (const Glyph &glyph : line.glyphs) {
            places.push_back({glyph.box.left(), std::max(glyph.box.left(), glyph.box.right())});
        }
    }
    return places;
}

} // namespace orvesa
