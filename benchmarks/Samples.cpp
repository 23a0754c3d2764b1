#include "Samples.h"

#include <algorithm>

namespace orvesa::benchmark {

double Samples::median() const
{
    if (m_values.empty()) {
        return 0;
    }
    std::vector<double> sorted = m_values;
    std::ranges::sort(sorted);
    const std::size_t middle = sorted.size() / 2;
    return sorted.size() % 2 == 1 ? sorted[middle] : (sorted[middle - 1] + sorted[middle]) / 2;
}

double Samples::percentile(int percent) const
{
    if (m_values.empty()) {
        return 0;
    }
    std::vector<double> sorted = m_values;
    std::ranges::sort(sorted);
    const std::size_t place = sorted.size() * static_cast<std::size_t>(percent) / 100;
    return sorted[std::min(place, sorted.size() - 1)];
}

double Samples::least() const
{
    return m_values.empty() ? 0 : *std::ranges::min_element(m_values);
}

double Samples::greatest() const
{
    return m_values.empty() ? 0 : *std::ranges::max_element(m_values);
}

} // namespace orvesa::benchmark
