#pragma once

// The values that one measurement gave in its rounds. Value type, any thread.

#include <vector>

namespace orvesa::benchmark {

class Samples final {
public:
    void add(double value) { m_values.push_back(value); }

    [[nodiscard]] bool isEmpty() const { return m_values.empty(); }
    [[nodiscard]] std::size_t count() const { return m_values.size(); }
    /// Of an even number of values, the mean of the middle two. 0 when there are none, like the other two.
    [[nodiscard]] double median() const;
    [[nodiscard]] double least() const;
    [[nodiscard]] double greatest() const;
    /// The value that so many per cent of the values do not exceed.
    [[nodiscard]] double percentile(int percent) const;

private:
    std::vector<double> m_values;
};

} // namespace orvesa::benchmark
