#include "ReportTable.h"

#include <QStringList>

#include <algorithm>

namespace orvesa::benchmark {

using namespace Qt::StringLiterals;

namespace {

QString number(double value, int decimals)
{
    return QString::number(value, 'f', decimals);
}

/// "19.2 (18.7-24.0)": the median and the range.
QString cell(const Samples &samples, int decimals)
{
    if (samples.isEmpty()) {
        return u"-"_s;
    }
    const QString median = number(samples.median(), decimals);
    if (samples.count() == 1) {
        return median;
    }
    return u"%1 (%2-%3)"_s.arg(median, number(samples.least(), decimals), number(samples.greatest(), decimals));
}

QString ratio(const ReportRow &row)
{
    const double floor = row.floor.median();
    return row.product.isEmpty() || floor <= 0 ? u"-"_s : number(row.product.median() / floor, 2);
}

QStringList cells(const ReportRow &row)
{
    const QString verdict = row.met ? (*row.met ? u"met"_s : u"MISSED"_s) : QString();
    return {row.title, row.unit, cell(row.floor, row.decimals), cell(row.product, row.decimals), ratio(row),
            row.goal,  verdict};
}

} // namespace

void ReportTable::add(ReportRow row)
{
    m_rows.push_back(std::move(row));
}

QString ReportTable::text() const
{
    std::vector<QStringList> lines{
        {u"measurement"_s, u"unit"_s, u"floor"_s, u"product"_s, u"ratio"_s, u"goal"_s, QString()}};
    std::ranges::transform(m_rows, std::back_inserter(lines), cells);
    QString text;
    for (const QStringList &line : lines) {
        QString row;
        for (qsizetype column = 0; column < line.size(); ++column) {
            qsizetype width = 0;
            for (const QStringList &other : lines) {
                width = std::max(width, other.at(column).size());
            }
            row += line.at(column).leftJustified(width) + u"  "_s;
        }
        text += row.trimmed() + u'\n';
    }
    return text;
}

int ReportTable::missedGoals() const
{
    return static_cast<int>(std::ranges::count_if(m_rows, [](const ReportRow &row) { return row.met && !*row.met; }));
}

} // namespace orvesa::benchmark
