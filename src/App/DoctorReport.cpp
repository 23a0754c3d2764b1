#include "App/DoctorReport.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace orvesa::DoctorReport {

namespace {

QString mark(DoctorFinding::Verdict verdict)
{
    switch (verdict) {
    case DoctorFinding::Verdict::good:
        return u"[ ok  ]"_s;
    case DoctorFinding::Verdict::note:
        return u"[note ]"_s;
    case DoctorFinding::Verdict::wrong:
        return u"[wrong]"_s;
    }
    return {};
}

qsizetype count(const QList<DoctorFinding> &findings, DoctorFinding::Verdict verdict)
{
    return std::ranges::count(findings, verdict, &DoctorFinding::verdict);
}

} // namespace

QString text(const QString &title, const QList<DoctorFinding> &findings)
{
    QStringList lines{title, QString()};
    for (const DoctorFinding &finding : findings) {
        lines.append(u"%1 %2: %3"_s.arg(mark(finding.verdict), finding.subject, finding.observation));
        if (!finding.remedy.isEmpty()) {
            lines.append(u"        -> %1"_s.arg(finding.remedy));
        }
    }
    const qsizetype wrong = count(findings, DoctorFinding::Verdict::wrong);
    lines.append(QString());
    lines.append(wrong == 0 ? u"Nothing is wrong."_s : u"Wrong: %1 of %2."_s.arg(wrong).arg(findings.size()));
    return lines.join(u'\n');
}

bool isAnythingWrong(const QList<DoctorFinding> &findings)
{
    return count(findings, DoctorFinding::Verdict::wrong) > 0;
}

} // namespace orvesa::DoctorReport
