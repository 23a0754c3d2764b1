#include "Tools/Recognition/LanguageVote.h"

#include "Tools/Recognition/Segment.h"

#include <algorithm>

namespace orvesa {

namespace {

double advantage(const Reading &japanese, const Reading &chinese)
{
    return confidenceOf(japanese) - confidenceOf(chinese);
}

} // namespace

void LanguageVote::add(const Reading &japanese, const Reading &chinese)
{
    const int count = static_cast<int>(std::max(glyphCount(japanese), glyphCount(chinese)));
    m_japanese += advantage(japanese, chinese) * count;
    m_glyphs += count;
}

const Reading &LanguageVote::choice(const Reading &japanese, const Reading &chinese) const
{
    constexpr double mostPrior = 6; // a piece that is clearly the other language stays that
    const double prior = m_glyphs == 0 ? 0 : std::clamp(m_japanese / m_glyphs, -mostPrior, mostPrior);
    return advantage(japanese, chinese) + prior >= 0 ? japanese : chinese;
}

} // namespace orvesa
