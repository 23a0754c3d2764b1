#include "Tools/CharacterErrors.h"

#include <QStringList>

#include <algorithm>
#include <utility>
#include <vector>

namespace orvesa {

QString comparable(const QString &text)
{
    QStringList lines;
    for (const QString &line : text.split(u'\n')) {
        const QString simple = line.simplified();
        if (!simple.isEmpty()) {
            lines.append(simple);
        }
    }
    return lines.join(u'\n');
}

int characterErrors(const QString &reference, const QString &text)
{
    const auto expected = comparable(reference).toUcs4();
    const auto found = comparable(text).toUcs4();
    std::vector<int> before(static_cast<std::size_t>(expected.size()) + 1);
    for (std::size_t index = 0; index < before.size(); ++index) {
        before[index] = static_cast<int>(index);
    }
    std::vector<int> row(before.size());
    for (qsizetype line = 0; line < found.size(); ++line) {
        row[0] = static_cast<int>(line) + 1;
        for (std::size_t index = 1; index < row.size(); ++index) {
            const int replaced =
                before[index - 1] + (expected[static_cast<qsizetype>(index) - 1] == found[line] ? 0 : 1);
            row[index] = std::min({row[index - 1] + 1, before[index] + 1, replaced});
        }
        std::swap(row, before);
    }
    return std::min(before.back(), static_cast<int>(expected.size()));
}

} // namespace orvesa
