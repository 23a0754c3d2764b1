#pragma once

// Character error rates and times of the product's recognition and of the engine's own program, by language and kind.
//
// Main thread. What cannot be measured throws; nothing is left out in silence.

#include "Samples.h"

#include <QString>

#include <map>

namespace orvesa::benchmark {

struct FigureOptions {
    bool withEngineAlone = true;
    bool printErrors = false;
};

class RecognitionFigures final {
public:
    explicit RecognitionFigures(FigureOptions options);

    /// Pictures with their texts beside them and a list of cases.
    void measureFolder(const QString &title, const QString &folder);
    /// Draws the pictures first, in looks of a fixed order.
    void measureRendered(const QString &texts);
    /// The same in looks by a seed.
    void measureFresh(const QString &texts);

    /// The tables since the last call.
    [[nodiscard]] QString takeReport();
    [[nodiscard]] int missedGoals() const { return m_missed; }

private:
    struct Count {
        int errors = 0;
        int characters = 0;
    };
    /// For each reader, by group.
    using Counts = std::map<QString, std::map<QString, Count>>;

    void draw(const QString &title, const QString &texts, const QStringList &more);
    void count(Counts &counts, const QString &reader, const QStringList &groups, const QString &reference,
               const QString &text) const;
    void addTables(const QString &title, const Counts &counts, const std::map<QString, Samples> &times,
                   qint64 peakMemory);
    [[nodiscard]] QString verdict(bool hasGoals, const QString &group, double rate);

    FigureOptions m_options;
    QString m_report;
    int m_missed = 0;
};

} // namespace orvesa::benchmark
