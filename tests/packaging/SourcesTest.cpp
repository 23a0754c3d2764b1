// The sources as they are handed out.

#include "packaging/Installation.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

namespace orvesa::packaging {
namespace {

using namespace Qt::StringLiterals;

/// A folder that the sources have been unpacked in.
class Sources : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir().mkpath(tree + u"/cmake"_s));
        keep("$Format:%H$\n");
    }

    /// What an archive made by git has in place of the line in the tree.
    void keep(const QByteArray &text) const
    {
        QFile file(tree + u"/cmake/commit.txt"_s);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    static QString git(const QString &where, const QStringList &arguments)
    {
        const ToolResult result =
            run(u"git"_s,
                QStringList{u"-C"_s, where, u"-c"_s, u"user.name=x"_s, u"-c"_s, u"user.email=x@example"_s} + arguments);
        EXPECT_EQ(result.exitCode, 0) << result.output.constData();
        return QString::fromUtf8(result.output).trimmed();
    }

    /// The commit that a build of the tree gives itself.
    [[nodiscard]] QString commit(const QString &given = {}) const
    {
        const QString output = folder.filePath(u"commit.cpp"_s);
        const ToolResult made = run(QStringLiteral(ORVESA_CMAKE),
                                    {u"-DSOURCE="_s + tree, u"-DOUTPUT="_s + output, u"-DCOMMIT="_s + given, u"-P"_s,
                                     QStringLiteral(ORVESA_SOURCE_FOLDER) + u"/cmake/BuildCommit.cmake"_s});
        EXPECT_EQ(made.exitCode, 0) << made.output.constData();
        QFile file(output);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return QString::fromUtf8(file.readAll()).section(u'"', 3, 3);
    }

    QTemporaryDir folder;
    const QString tree = folder.filePath(u"around/tree"_s);
};

TEST_F(Sources, KnowTheirCommitFromTheirHistory)
{
    git(tree, {u"init"_s, u"--quiet"_s});
    git(tree, {u"commit"_s, u"--quiet"_s, u"--allow-empty"_s, u"--message"_s, u"x"_s});
    EXPECT_EQ(commit(), git(tree, {u"rev-parse"_s, u"--short=10"_s, u"HEAD"_s}));
    EXPECT_EQ(commit(u"1.0-2"_s), u"1.0-2"_s) << "whoever builds knows best";
}

TEST_F(Sources, KnowTheirCommitInAnArchive)
{
    EXPECT_EQ(commit(), QString());
    keep("0123456789abcdef0123456789abcdef01234567\n");
    EXPECT_EQ(commit(), u"0123456789"_s);
    // The tree asks git for it.
    const ToolResult attribute = run(u"git"_s, {u"-C"_s, QStringLiteral(ORVESA_SOURCE_FOLDER), u"check-attr"_s,
                                                u"export-subst"_s, u"cmake/commit.txt"_s});
    EXPECT_TRUE(attribute.exitCode != 0 || attribute.output.contains("export-subst: set"))
        << attribute.output.constData();
    QFile file(QStringLiteral(ORVESA_SOURCE_FOLDER) + u"/cmake/commit.txt"_s);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
}

TEST_F(Sources, TakeNoCommitFromARepositoryAroundThem)
{
    const QString around = folder.filePath(u"around"_s);
    git(around, {u"init"_s, u"--quiet"_s});
    git(around, {u"commit"_s, u"--quiet"_s, u"--allow-empty"_s, u"--message"_s, u"x"_s});
    EXPECT_EQ(commit(), QString());
}

} // namespace
} // namespace orvesa::packaging
