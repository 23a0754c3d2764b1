#pragma once

// What was found on a desktop, as a page of plain text. Values and pure functions, any thread.

#include <QList>
#include <QString>

namespace orvesa {

struct DoctorFinding {
    enum class Verdict {
        good,
        note, ///< nothing is wrong, something could be better or cannot be told
        wrong,
    };

    Verdict verdict = Verdict::good;
    QString subject;     ///< "Accessibility"
    QString observation; ///< "switched off"
    QString remedy;      ///< what to do; empty when there is nothing to do
};

namespace DoctorReport {

/// The title, a line for each finding with what to do below it, and a closing line.
[[nodiscard]] QString text(const QString &title, const QList<DoctorFinding> &findings);
[[nodiscard]] bool isAnythingWrong(const QList<DoctorFinding> &findings);

} // namespace DoctorReport

} // namespace orvesa
