#include "UI/AccessibilityTrustDialog.h"

#include "Core/Localization.h"
#include "UI/InterfaceFonts.h"
#include "UI/PlainLabel.h"
#include "UI/Style.h"
#include "UI/WindowKeys.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {

constexpr int explanationWidth = 400;

struct Texts {
    QString explanation;
    QString enable;
};

/// The question exists only on desktops where the program itself has to ask it.
Texts texts(AppLanguage language)
{
    switch (language) {
    case AppLanguage::traditionalChinese:
        return {u"Orvesa Translate 需要桌面的「輔助使用」介面，才能讀取您在其他應用程式中選取的文字，但此介面目前"
                u"已關閉。啟用後，已在執行的應用程式可能需要重新啟動才能讀取。"_s,
                u"啟用"_s};
    case AppLanguage::japanese:
        return {u"他のアプリで選択したテキストを読み取るには、デスクトップのアクセシビリティ機能が必要ですが、"
                u"現在オフになっています。有効にした後、起動済みのアプリは再起動が必要な場合があります。"_s,
                u"有効にする"_s};
    case AppLanguage::english:
        break;
    }
    return {
        u"To read the text that you select in other applications, Orvesa Translate needs the desktop’s accessibility "
        u"interface, which is switched off. After it is enabled, applications that already run may have to be restarted."_s,
        u"Enable"_s};
}

} // namespace

AccessibilityTrustDialog::AccessibilityTrustDialog(std::function<void()> onEnable)
{
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(QCoreApplication::applicationName());
    auto *column = new QVBoxLayout(this);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->setContentsMargins(2 * Style::contentMargin, 2 * Style::contentMargin, 2 * Style::contentMargin,
                               Style::contentMargin);
    column->setSpacing(Style::contentMargin);
    QLabel *explanation = makePlainLabel(Style::controlFont(), this);
    explanation->setObjectName(u"explanation"_s);
    explanation->setWordWrap(true);
    explanation->setFixedWidth(explanationWidth);
    column->addWidget(explanation);
    auto *buttons = new QDialogButtonBox(this);
    QPushButton *enable = buttons->addButton(QString(), QDialogButtonBox::AcceptRole);
    enable->setObjectName(u"enable"_s);
    QPushButton *cancel = buttons->addButton(QString(), QDialogButtonBox::RejectRole);
    cancel->setObjectName(u"cancel"_s);
    column->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    WindowKeys::add(*this, [this] { reject(); });
    connect(this, &QDialog::accepted, this, [onEnable = std::move(onEnable)] { onEnable(); });
}

void AccessibilityTrustDialog::present()
{
    const Texts shown = texts(Localization::current());
    findChild<QLabel *>(u"explanation"_s)->setText(shown.explanation);
    findChild<QPushButton *>(u"enable"_s)->setText(shown.enable);
    findChild<QPushButton *>(u"cancel"_s)->setText(Localization::string(L10nKey::btnCancel));
    InterfaceFonts::follow(*this);
    show();
    raise();
}

} // namespace orvesa
