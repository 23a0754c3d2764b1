#include "ocr/RecognitionFigures.h"

#include "Tools/CharacterErrors.h"
#include "ocr/WarmRecognition.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <array>
#include <set>
#include <stdexcept>

namespace orvesa::benchmark {

using namespace Qt::StringLiterals;

namespace {

const QString product = u"product"_s;
const std::array engineLanguages{u"eng"_s, u"eng+jpn+chi_tra"_s, u"chi_tra+jpn+eng"_s};
constexpr int longestRun = 120'000; // milliseconds

struct Goal {
    QString group;
    double most; ///< per cent
};
const std::array goals{Goal{u"all"_s, 2.0},   Goal{u"en"_s, 0.7},   Goal{u"ja"_s, 2.5},   Goal{u"zh"_s, 2.5},
                       Goal{u"mixed"_s, 4.0}, Goal{u"dark"_s, 2.0}, Goal{u"2col"_s, 4.0}, Goal{u"vertical"_s, 0.0}};

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error("cannot read " + path.toStdString());
    }
    return file.readAll();
}

QString programBeside(const QString &name)
{
    return QCoreApplication::applicationDirPath() + u'/' + name;
}

QString engineAlone(const QString &languages, const QString &image)
{
    QProcess process;
    process.start(u"tesseract"_s, {image, u"stdout"_s, u"-l"_s, languages});
    if (!process.waitForFinished(longestRun) || process.exitCode() != 0) {
        throw std::runtime_error("tesseract failed: " + process.readAllStandardError().toStdString());
    }
    return QString::fromUtf8(process.readAllStandardOutput());
}

/// The groups that a picture counts in. Text that runs down is apart from all others.
QStringList groupsOf(const QJsonObject &entry)
{
    const QString language = entry[u"lang"_s].toString();
    if (language.startsWith(u'v')) {
        return {u"vertical"_s};
    }
    QStringList groups{u"all"_s, language.startsWith("mix"_L1) ? u"mixed"_s : language, entry[u"kind"_s].toString()};
    if (entry[u"dark"_s].toInt() != 0) {
        groups.append(u"dark"_s);
    }
    return groups;
}

double rate(int errors, int characters)
{
    return characters == 0 ? 0 : 100.0 * errors / characters;
}

} // namespace

RecognitionFigures::RecognitionFigures(FigureOptions options) : m_options(options) {}

QString RecognitionFigures::takeReport()
{
    return std::exchange(m_report, QString());
}

void RecognitionFigures::count(Counts &counts, const QString &reader, const QStringList &groups,
                               const QString &reference, const QString &text) const
{
    const int errors = characterErrors(reference, text);
    const auto length = static_cast<int>(comparable(reference).toUcs4().size());
    for (const QString &group : groups) {
        Count &sum = counts[reader][group];
        sum.errors += errors;
        sum.characters += length;
    }
}

void RecognitionFigures::measureRendered(const QString &texts)
{
    draw(u"rendered"_s, texts, {u"2"_s});
}

void RecognitionFigures::measureFresh(const QString &texts)
{
    draw(u"rendered in any look"_s, texts, {u"1"_s, u"77"_s});
}

void RecognitionFigures::draw(const QString &title, const QString &texts, const QStringList &more)
{
    const QTemporaryDir folder;
    if (QProcess::execute(programBeside(u"orvesa-render-samples"_s), QStringList{texts, folder.path()} + more) != 0) {
        throw std::runtime_error("the pictures could not be drawn");
    }
    measureFolder(title, folder.path());
}

void RecognitionFigures::measureFolder(const QString &title, const QString &folder)
{
    const QJsonArray cases = QJsonDocument::fromJson(bytesOf(folder + u"/cases.json"_s)).array();
    Counts counts;
    std::map<QString, Samples> times;
    WarmRecognition recognition(programBeside(u"orvesa-recognize"_s));
    for (const QJsonValue &value : cases) {
        const QJsonObject entry = value.toObject();
        const QString path = folder + u'/' + entry[u"id"_s].toString();
        const QString reference = QString::fromUtf8(bytesOf(path + u".txt"_s));
        const QByteArray image = bytesOf(path + u".png"_s);
        const QStringList groups = groupsOf(entry);
        QElapsedTimer timer;
        timer.start();
        const QString text = recognition.read(image);
        times[product].add(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        count(counts, product, groups, reference, text);
        if (m_options.printErrors && characterErrors(reference, text) > 0) {
            m_report += entry[u"id"_s].toString() + u'\n' + comparable(reference) + u"\n-- read as\n"_s +
                        comparable(text) + u"\n\n"_s;
        }
        for (const QString &languages : engineLanguages) {
            if (m_options.withEngineAlone) {
                timer.restart();
                const QString other = engineAlone(languages, path + u".png"_s);
                times[languages].add(static_cast<double>(timer.nsecsElapsed()) / 1e6);
                count(counts, languages, groups, reference, other);
            }
        }
    }
    addTables(title + u", %1 pictures"_s.arg(cases.size()), counts, times, recognition.peakMemory());
}

QString RecognitionFigures::verdict(bool hasGoals, const QString &group, double found)
{
    const auto goal = std::ranges::find(goals, group, &Goal::group);
    if (!hasGoals || goal == goals.end()) {
        return {};
    }
    const bool met = found <= goal->most;
    m_missed += met ? 0 : 1;
    return u"<= %1 %2"_s.arg(goal->most, 0, 'f', 1).arg(met ? u"met"_s : u"MISSED"_s);
}

void RecognitionFigures::addTables(const QString &title, const Counts &counts, const std::map<QString, Samples> &times,
                                   qint64 peakMemory)
{
    QTextStream out(&m_report);
    const bool hasGoals = title.startsWith("development"_L1);
    out << title << "\ncharacter error rate, %     characters  product";
    for (const QString &languages : engineLanguages) {
        out << "  " << languages.rightJustified(15);
    }
    out << "  goal\n";
    const auto cell = [&](const QString &reader, const QString &group) -> QString {
        const auto found = counts.find(reader);
        if (found == counts.end()) {
            return u"-"_s;
        }
        const Count &sum = found->second.at(group);
        return QString::number(rate(sum.errors, sum.characters), 'f', 2);
    };
    for (const auto &[group, sum] : counts.at(product)) {
        out << "  " << group.leftJustified(24) << QString::number(sum.characters).rightJustified(11) << "  "
            << cell(product, group).rightJustified(7);
        for (const QString &languages : engineLanguages) {
            out << "  " << cell(languages, group).rightJustified(15);
        }
        out << "  " << verdict(hasGoals, group, rate(sum.errors, sum.characters)) << '\n';
    }
    for (const auto &[reader, samples] : times) {
        out << "  ms a picture, " << reader.leftJustified(16) << " median " << QString::number(samples.median(), 'f', 0)
            << ", 90th percentile " << QString::number(samples.percentile(90), 'f', 0) << '\n';
    }
    out << "  memory of the recognition's process at its peak, proportional: " << peakMemory / 1'000'000 << " MB\n\n";
}

} // namespace orvesa::benchmark
