#include "rooms/MadeUpTree.h"
#include "rooms/SourceRules.h"

#include <gtest/gtest.h>

using namespace orvesa;
using namespace Qt::StringLiterals;

namespace {

std::string join(const QStringList &findings)
{
    return findings.join(u'\n').toStdString();
}

std::string richTextsOf(const char *code)
{
    return join(richTexts(MadeUpTree({{"UI/View.cpp", code}}).read()));
}

TEST(SourceTree, blanksCommentsAndTextsButKeepsLines)
{
    const MadeUpTree tree({{"A.cpp", "a(\"b // c\\\"\"); // d\n/* e\nf */ g('\\'', 1'000); 'h'"}});
    EXPECT_EQ(tree.read().code(u"A.cpp"_s).toStdString(), "a(\"        \");     \n    \n     g('  ', 1'000); ' '");
}

TEST(SourceRules, passFilesThatBeginProperly)
{
    const MadeUpTree tree({
        {"UI/View.h", "#pragma once\n"},
        {"UI/View.cpp", "#include \"UI/View.h\"\n\n#include <QString>\n"},
        {"App/main.cpp", "#include <QString>\n"},
    });
    EXPECT_EQ(join(wrongBeginnings(tree.read())), "");
}

TEST(SourceRules, findAHeaderWithoutPragmaOnce)
{
    const MadeUpTree tree({{"UI/View.h", "// View\n#pragma once\n"}});
    EXPECT_EQ(join(wrongBeginnings(tree.read())), "UI/View.h: does not begin with #pragma once");
}

TEST(SourceRules, findASourceThatIncludesItsHeaderLate)
{
    const MadeUpTree tree({
        {"UI/View.h", "#pragma once\n"},
        {"UI/View.cpp", "#include <QString>\n#include \"UI/View.h\"\n"},
    });
    EXPECT_EQ(join(wrongBeginnings(tree.read())), "UI/View.cpp: does not include UI/View.h first");
}

TEST(SourceRules, findPlatformConditionals)
{
    const MadeUpTree tree({
        {"App/CompositionRoot.cpp", "#ifdef Q_OS_MACOS\n#endif\n"},
        {"Core/Clock.cpp", "#if defined(Q_OS_LINUX) && 1\n#endif\n"},
        {"Core/Other.cpp", "// #ifdef __APPLE__ was never here\n#ifdef NDEBUG\n#endif\n"},
        {"Platform/linux/Clock.cpp", "#ifdef __linux__\n#endif\n"},
        {"UI/View.cpp", "#if 0\n  #  elif __APPLE__\n#endif\n"},
    });
    EXPECT_EQ(join(platformLeaks(tree.read())), "Core/Clock.cpp: compiles by platform, Q_OS_LINUX\n"
                                                "UI/View.cpp: compiles by platform, __APPLE__");
}

TEST(SourceRules, findLibrariesOfOneDesktop)
{
    const MadeUpTree tree({
        {"Core/Keys.cpp", "#include <xcb/xtest.h>\n#include <QString>\n"},
        {"Platform/linux/Keys.cpp", "#include <xcb/xtest.h>\n#include <QDBusMessage>\n"},
        {"UI/View.cpp", "#include <QDBusMessage>\n"},
    });
    EXPECT_EQ(join(platformLeaks(tree.read())), "Core/Keys.cpp: includes xcb/xtest.h, which belongs to one desktop\n"
                                                "UI/View.cpp: includes QDBusMessage, which belongs to one desktop");
}

TEST(SourceRules, passLabelsThatSayPlainText)
{
    EXPECT_EQ(richTextsOf("auto *a = new QLabel(this);\na->setTextFormat(Qt::PlainText);\n"), "");
    EXPECT_EQ(richTextsOf("View::View() : m_a(new QLabel(this))\n{ m_a->setTextFormat(Qt::PlainText); }\n"), "");
    EXPECT_EQ(richTextsOf("// setHtml is never called\nauto b = std::make_unique<QLabel>();\n"
                          "b->setTextFormat(Qt::PlainText);\n"),
              "");
}

TEST(SourceRules, findALabelThatMayReadItsTextAsHTML)
{
    const std::string finding = "UI/View.cpp: makes a QLabel without setTextFormat(Qt::PlainText)";
    EXPECT_EQ(richTextsOf("auto *a = new QLabel(this);\n"), finding);
    EXPECT_EQ(richTextsOf("auto *a = new QLabel(this);\nauto *b = new QLabel(this);\n"
                          "b->setTextFormat(Qt::PlainText);\n"),
              finding);
    EXPECT_EQ(richTextsOf("layout->addWidget(new QLabel(text));\n"), finding);
    EXPECT_EQ(richTextsOf("m_label = new QLabel(text);\nlabel->setTextFormat(Qt::PlainText);\n"), finding);
}

TEST(SourceRules, findRichTextByAnyName)
{
    EXPECT_EQ(richTextsOf("edit->setHtml(text);\n"), "UI/View.cpp: shows text as more than plain text, setHtml");
    EXPECT_EQ(richTextsOf("a->setTextFormat(Qt::RichText);\n"),
              "UI/View.cpp: shows text as more than plain text, Qt::RichText");
    EXPECT_EQ(richTextsOf("a->setTextFormat(Qt::AutoText);\n"),
              "UI/View.cpp: shows text as more than plain text, Qt::AutoText");
    EXPECT_EQ(richTextsOf("edit->setMarkdown(text);\n"),
              "UI/View.cpp: shows text as more than plain text, setMarkdown");
}

TEST(SourceRules, findMessageBoxesAndHeirsOfQLabel)
{
    const std::string finding =
        "UI/View.cpp: shows text of a QLabel or QMessageBox without setTextFormat(Qt::PlainText)";
    EXPECT_EQ(richTextsOf("QMessageBox box;\nbox.setText(text);\n"), finding);
    EXPECT_EQ(richTextsOf("QMessageBox::warning(this, title, text);\n"), finding);
    EXPECT_EQ(richTextsOf("class Caption final : public QLabel {};\n"), finding);
    EXPECT_EQ(richTextsOf("QMessageBox box;\nbox.setTextFormat(Qt::PlainText);\n"), "");
}

TEST(SourceRules, passListedSources)
{
    const MadeUpTree tree({
        {"App/CMakeLists.txt", "orvesa_library(orvesa_app\n    main.cpp\n    Settings/Page.cpp)\n"},
        {"App/main.cpp", ""},
        {"App/Settings/Page.cpp", ""},
    });
    EXPECT_EQ(join(unlistedSources(tree.read())), "");
}

TEST(SourceRules, passSourcesListedByALoop)
{
    const char *loop = "foreach(probe Clock Panel)\n    add_executable(${probe} ${probe}.cpp)\nendforeach()\n";
    EXPECT_EQ(join(unlistedSources(MadeUpTree({{"CMakeLists.txt", loop}, {"Clock.cpp", ""}}).read())), "");
    EXPECT_EQ(join(unlistedSources(MadeUpTree({{"CMakeLists.txt", loop}, {"Tray.cpp", ""}}).read())),
              "Tray.cpp: is not listed in a CMakeLists.txt");
    EXPECT_EQ(join(unlistedSources(MadeUpTree({{"CMakeLists.txt", "set(all Clock)"}, {"Clock.cpp", ""}}).read())),
              "Clock.cpp: is not listed in a CMakeLists.txt");
}

TEST(SourceRules, findUnlistedSources)
{
    const MadeUpTree tree({
        {"App/CMakeLists.txt", "orvesa_library(orvesa_app OtherPage.cpp)\n# Page.cpp\n"},
        {"App/OtherPage.cpp", ""},
        {"App/Page.cpp", ""},
        {"App/Settings/OtherPage.cpp", ""},
        {"UI/View.cpp", ""},
    });
    EXPECT_EQ(join(unlistedSources(tree.read())), "App/Page.cpp: is not listed in a CMakeLists.txt\n"
                                                  "App/Settings/OtherPage.cpp: is not listed in a CMakeLists.txt\n"
                                                  "UI/View.cpp: is not listed in a CMakeLists.txt");
}

TEST(SourceRules, findGlobbing)
{
    const MadeUpTree tree({{"UI/CMakeLists.txt", "file(GLOB sources *.cpp)\n"}});
    EXPECT_EQ(join(unlistedSources(tree.read())), "UI/CMakeLists.txt: lists sources by globbing");
}

} // namespace
