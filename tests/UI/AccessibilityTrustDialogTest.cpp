#include "UI/AccessibilityTrustDialog.h"

#include "Core/Localization.h"
#include "UI/FontFamilies.h"

#include <gtest/gtest.h>

#include <QFontInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

class AccessibilityTrustDialogTest : public testing::Test {
protected:
    ~AccessibilityTrustDialogTest() override { Localization::setCurrent(AppLanguage::english); }

    void present(AppLanguage language)
    {
        Localization::setCurrent(language);
        dialog.present();
    }

    int enabled = 0;
    AccessibilityTrustDialog dialog{[this] { ++enabled; }};
};

TEST_F(AccessibilityTrustDialogTest, IsDrawnInTheLanguageThatItIsShownIn)
{
    const QString desktop = QFontInfo(QGuiApplication::font()).family();
    for (const AppLanguage language : {AppLanguage::traditionalChinese, AppLanguage::japanese, AppLanguage::english}) {
        present(language);
        const QStringList expected = FontFamilies::forInterface(desktop, textLanguage(language));
        EXPECT_EQ(dialog.findChild<QLabel *>(u"explanation"_s)->font().families(), expected);
        for (const QString &name : {u"enable"_s, u"cancel"_s}) {
            EXPECT_EQ(dialog.findChild<QPushButton *>(name)->font().families(), expected) << name.toStdString();
        }
    }
}

TEST_F(AccessibilityTrustDialogTest, EnablesOnlyWhatTheUserAgreedTo)
{
    present(AppLanguage::english);
    dialog.findChild<QPushButton *>(u"cancel"_s)->click();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(enabled, 0);
    present(AppLanguage::japanese);
    EXPECT_EQ(dialog.findChild<QPushButton *>(u"enable"_s)->text(), u"有効にする"_s);
    dialog.findChild<QPushButton *>(u"enable"_s)->click();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(enabled, 1);
}

} // namespace
} // namespace orvesa
