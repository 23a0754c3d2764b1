// The documents: what they name is there.

#include "packaging/Installation.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>

namespace orvesa::packaging {
namespace {

using namespace Qt::StringLiterals;

const QString tree = QStringLiteral(ORVESA_SOURCE_FOLDER);

QString textOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

QSet<QString> testNames()
{
    QSet<QString> names;
    const QRegularExpression pattern(u"^TEST(?:_F|_P)?\\(\\s*(\\w+)\\s*,\\s*(\\w+)\\s*\\)"_s,
                                     QRegularExpression::MultilineOption);
    QDirIterator sources(tree + u"/tests"_s, {u"*.cpp"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (sources.hasNext()) {
        QRegularExpressionMatchIterator matches = pattern.globalMatch(textOf(sources.next()));
        while (matches.hasNext()) {
            const QRegularExpressionMatch match = matches.next();
            names.insert(match.captured(1) + u'.' + match.captured(2));
        }
    }
    return names;
}

TEST(Documents, EveryTestBehindAPromiseIsThere)
{
    const QSet<QString> tests = testNames();
    QRegularExpressionMatchIterator named =
        QRegularExpression(u"`([A-Z]\\w+\\.\\w+)`"_s).globalMatch(textOf(tree + u"/docs/claims.md"_s));
    int count = 0;
    while (named.hasNext()) {
        const QString name = named.next().captured(1);
        EXPECT_TRUE(tests.contains(name)) << name.toStdString();
        ++count;
    }
    EXPECT_GT(count, 40);
}

TEST(Documents, LinksLeadSomewhere)
{
    const QRegularExpression link(u"\\]\\(([^)#]+)[^)]*\\)"_s);
    for (const QString &name :
         {u"README.md"_s, u"README.zh-Hant.md"_s, u"README.ja.md"_s, u"CONTRIBUTING.md"_s, u"SECURITY.md"_s}) {
        QRegularExpressionMatchIterator links = link.globalMatch(textOf(tree + u'/' + name));
        while (links.hasNext()) {
            const QString target = links.next().captured(1);
            if (!target.startsWith("https://"_L1)) {
                EXPECT_TRUE(QFileInfo::exists(tree + u'/' + target))
                    << name.toStdString() << ": " << target.toStdString();
            }
        }
    }
}

TEST(Documents, TheArchitectureLeadsToEveryRecord)
{
    const QString architecture = textOf(tree + u"/docs/architecture.md"_s);
    const QStringList records = QDir(tree + u"/docs/adr"_s).entryList({u"*.md"_s}, QDir::Files);
    EXPECT_GT(records.size(), 10);
    for (const QString &record : records) {
        EXPECT_TRUE(architecture.contains(u"](adr/"_s + record + u')')) << record.toStdString();
    }
}

TEST(Documents, TheReadmesSayTheSameInEveryLanguage)
{
    const auto count = [](const QString &text, const QString &pattern) {
        return text.count(QRegularExpression(pattern, QRegularExpression::MultilineOption));
    };
    const QString english = textOf(tree + u"/README.md"_s);
    const QRegularExpression code(u"`[^`\n]+`"_s);
    for (const QString &name : {u"README.zh-Hant.md"_s, u"README.ja.md"_s}) {
        const QString other = textOf(tree + u'/' + name);
        for (const QString &pattern : {u"^## "_s, u"^- "_s, u"^\\|"_s, u"^!\\["_s, u"^    \\S"_s}) {
            EXPECT_EQ(count(other, pattern), count(english, pattern))
                << name.toStdString() << ": " << pattern.toStdString();
        }
        // Commands, keys and names are the same whatever the language.
        QRegularExpressionMatchIterator words = code.globalMatch(english);
        while (words.hasNext()) {
            const QString word = words.next().captured();
            EXPECT_TRUE(other.contains(word)) << name.toStdString() << ": " << word.toStdString();
        }
    }
}

} // namespace
} // namespace orvesa::packaging
