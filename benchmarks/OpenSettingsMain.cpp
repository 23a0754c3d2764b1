// Opens the settings window, or a window of as many plain widgets, twice; prints both times and the number of widgets.
//
//     orvesa-open-settings settings | floor WIDGETS
//
// A time is that from the request until the window has been painted, in milliseconds.

#include "App/Settings/SettingsView.h"
#include "App/Settings/SettingsWindowController.h"
#include "Core/HotKeyRecordingState.h"
#include "Core/KeychainService.h"
#include "Core/SettingsStore.h"
#include "fakes/FakeAccessibilityTrust.h"
#include "fakes/FakeKeyMonitor.h"
#include "fakes/FakeKeyStore.h"
#include "fakes/FakePreferredLanguages.h"
#include "fakes/FakeUserDefaults.h"
#include "fakes/FakeWorkspace.h"

#include "AI/AIProviderSource.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QTextStream>
#include <QVBoxLayout>

#include <functional>
#include <memory>

using namespace orvesa;
using namespace Qt::StringLiterals;

namespace {

constexpr double nanosecondsPerMillisecond = 1e6;

/// Services that nobody asks for: no page is opened that would.
class NoProviders final : public AIProviderSource {
public:
    [[nodiscard]] std::unique_ptr<AIProvider> provider(AIProviderType) const override { return nullptr; }
    void preconnect(AIProviderType) const override {}
};

/// Notes when a window was painted for the first time since it was asked.
class PaintWatch final : public QObject {
public:
    explicit PaintWatch(QWidget &widget) { widget.installEventFilter(this); }
    [[nodiscard]] bool isPainted() const { return m_isPainted; }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        m_isPainted = m_isPainted || event->type() == QEvent::Paint;
        return false;
    }

private:
    bool m_isPainted = false;
};

/// Until the widget, which is part of what was just shown, is painted.
double shown(QWidget &widget, const QElapsedTimer &timer)
{
    const PaintWatch watch(widget);
    while (!watch.isPainted()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return static_cast<double>(timer.nsecsElapsed()) / nanosecondsPerMillisecond;
}

void print(double first, double second, const QWidget &window)
{
    QTextStream(stdout) << first << ' ' << second << ' ' << window.findChildren<QWidget *>().size() << '\n';
}

void hide(QWidget &window)
{
    window.hide();
    QCoreApplication::processEvents();
}

int openSettings()
{
    FakeUserDefaults defaults;
    FakePreferredLanguages languages;
    SettingsStore settings(defaults, languages);
    FakeKeyStore keyStore;
    const KeychainService keychain(keyStore, u"service"_s, {});
    const NoProviders providers;
    const FakeAccessibilityTrust trust;
    HotKeyRecordingState recording;
    FakeKeyMonitor keyMonitor;
    FakeWorkspace workspace;
    QElapsedTimer timer;
    timer.start();
    SettingsWindowController controller({settings, keychain, providers, trust, recording, keyMonitor, workspace});
    controller.showWindow();
    const double first = shown(controller.view(), timer);
    hide(controller.window());
    timer.restart();
    controller.showWindow();
    print(first, shown(controller.view(), timer), controller.window());
    return 0;
}

/// The same kinds of widgets as the settings window's, as they come, in as many layouts.
std::unique_ptr<QMainWindow> plainWindow(int widgets)
{
    auto window = std::make_unique<QMainWindow>();
    auto *view = new QWidget;
    auto *row = new QHBoxLayout(view);
    auto *sidebar = new QVBoxLayout;
    row->addLayout(sidebar);
    for (const QString &section : {u"General"_s, u"Shortcuts"_s, u"Prompts"_s, u"Providers"_s}) {
        sidebar->addWidget(new QPushButton(section));
    }
    auto *scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    auto *page = new QWidget;
    auto *column = new QVBoxLayout(page);
    for (int picker = 0; picker < 4; ++picker) {
        auto *combo = new QComboBox;
        combo->addItems({u"One"_s, u"Two"_s, u"Three"_s, u"Four"_s});
        column->addWidget(combo);
    }
    auto *themes = new QHBoxLayout;
    for (int theme = 0; theme < 5; ++theme) {
        themes->addWidget(new QRadioButton(u"Theme"_s));
    }
    column->addLayout(themes);
    column->addWidget(new QCheckBox(u"Thinking"_s));
    scroll->setWidget(page);
    row->addWidget(scroll);
    window->setCentralWidget(view);
    while (window->findChildren<QWidget *>().size() < widgets) {
        column->addWidget(new QLabel(u"A caption or a note"_s));
    }
    window->setFixedSize(SettingsView::viewWidth, SettingsView::viewHeight);
    return window;
}

int openFloor(int widgets)
{
    QElapsedTimer timer;
    timer.start();
    const std::unique_ptr<QMainWindow> window = plainWindow(widgets);
    window->show();
    const double first = shown(*window->centralWidget(), timer);
    hide(*window);
    timer.restart();
    window->show();
    print(first, shown(*window->centralWidget(), timer), *window);
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    return arguments.value(1) == "floor"_L1 ? openFloor(arguments.value(2).toInt()) : openSettings();
}
