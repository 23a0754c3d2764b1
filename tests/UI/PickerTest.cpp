#include "UI/Picker.h"

#include "Core/Localization.h"
#include "UI/FontFamilies.h"
#include "UI/InterfaceFonts.h"

#include <gtest/gtest.h>

#include <QFontInfo>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

class PickerTest : public testing::Test {
protected:
    ~PickerTest() override { Localization::setCurrent(AppLanguage::english); }

    /// What the page does when the language of the interface changes.
    void show(AppLanguage language, const QStringList &names)
    {
        Localization::setCurrent(language);
        InterfaceFonts::follow(picker);
        picker.setChoices(names, 0);
    }

    [[nodiscard]] QStringList familiesOf(int choice) const
    {
        return picker.itemData(choice, Qt::FontRole).value<QFont>().families();
    }

    const QString desktop = QFontInfo(QGuiApplication::font()).family();
    Picker picker;
};

TEST_F(PickerTest, DrawsTheSameNamesInTheShapesOfAnotherInterface)
{
    const QStringList names{u"直骨令"_s, u"直す"_s};
    show(AppLanguage::traditionalChinese, names);
    EXPECT_EQ(familiesOf(0), FontFamilies::forInterface(desktop, TextLanguage::traditionalChinese));
    EXPECT_EQ(familiesOf(1), FontFamilies::forInterface(desktop, TextLanguage::japanese));
    show(AppLanguage::japanese, names);
    EXPECT_EQ(familiesOf(0), FontFamilies::forInterface(desktop, TextLanguage::japanese));
    EXPECT_EQ(picker.font().families(), FontFamilies::forInterface(desktop, TextLanguage::japanese));
}

TEST_F(PickerTest, LeavesAnOpenListAloneWhenTheNamesAreTheSame)
{
    show(AppLanguage::english, {u"one"_s, u"two"_s});
    int resets = 0;
    QObject::connect(picker.model(), &QAbstractItemModel::rowsRemoved, &picker, [&resets] { ++resets; });
    show(AppLanguage::japanese, {u"one"_s, u"two"_s});
    EXPECT_EQ(resets, 0);
    show(AppLanguage::japanese, {u"one"_s, u"three"_s});
    EXPECT_EQ(resets, 1);
}

} // namespace
} // namespace orvesa
